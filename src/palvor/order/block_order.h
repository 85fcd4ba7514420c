// The ordering of many streams: a suffix's place in the merge list found
// without walking it. The prefix words are searched for in blocks
// (palvor/order/key_blocks.h), and where several suffixes share them all, their
// strings.
//
// The comparisons that a walk of the list would have made are counted
// afterwards (palvor/order/walk_cost.h).

#ifndef PALVOR_ORDER_BLOCK_ORDER_H_
#define PALVOR_ORDER_BLOCK_ORDER_H_

#include <cstddef>
#include <optional>
#include <vector>

#include "palvor/order/front.h"
#include "palvor/order/key_blocks.h"
#include "palvor/order/lcp_list.h"
#include "palvor/order/walk_cost.h"
#include "palvor/simd/target.h"

namespace palvor {

class BlockOrder {
 public:
  // The most streams that a search is kept up for; more walk the list.
  static constexpr int kMostStreams = 1 << 17;

  // `list` goes on where prefix words can't be relied on; it must be empty.
  BlockOrder(Front& front, LcpList& list, Processor processor)
      : front_(front),
        list_(list),
        blocks_(front.streams.count(), processor),
        anchors_(static_cast<size_t>(front.streams.count())),
        walkCost_(walkCost(processor)) {}

  bool isEmpty() const { return blocks_.count() == 0; }
  int head() const { return blocks_.streamAt(blocks_.first()); }
  LcpEntry headEntry() const { return blocks_.entryAt(blocks_.first()); }

  // Puts a stream in whose suffix nothing is known of, and whose prefix words
  // end with it.
  void prime(int k) { insert(k, 0); }

  // Moves the head to the place of its stream's new suffix, or takes it out if
  // the stream has ended. If the streams are found not to ascend
  // (Front::ascends), all of them stand in the list afterwards.
  void advanceHead();

  // Puts the streams into the list, which goes on with them.
  void handOver();

 private:
  struct Arrival;
  struct Found;

  int sharedByKey(const Arrival& arrival, const Place& place) const;
  bool belongsBefore(const Arrival& arrival, const Place& place, int known,
                     int& shared);
  Found bisect(const Arrival& arrival, const Place& from, const Place& to,
               int shared);
  template <typename GoesBefore>
  Place halve(const Place& from, const Place& to, GoesBefore goesBefore) const;
  Found findAmongEqualKeys(const Arrival& arrival, const Place& from,
                           const Place& to);
  bool findByAnchors(const Arrival& arrival, const Place& from, const Place& to,
                     Found& found);
  const Anchor& anchorOf(int k);
  Found find(const Arrival& arrival);
  LcpEntry entryWith(const Arrival& arrival, const Place& place,
                     int shared) const;
  LcpEntry relate(const Arrival& arrival, Found found);
  void insert(int k, LcpEntry own);

  Front& front_;
  LcpList& list_;
  KeyBlocks blocks_;
  // Of each stream's suffix, if it is known.
  std::vector<std::optional<Anchor>> anchors_;
  WalkCost walkCost_;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_BLOCK_ORDER_H_
