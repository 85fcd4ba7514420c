// The ordering of up to 64 streams: the listed suffixes as rows that are looked
// at as a whole, instead of a list that is walked.
//
// The prefix words of all listed suffixes stand side by side, in order, and one
// look at all of them tells how many sort before a new suffix: that is its
// row. The comparisons that a walk of the list (palvor/order/lcp_list.h) would
// have made follow from the stored lengths, so that all is counted as if it had
// walked: it compares a suffix where the new one shares more bits with it than
// its stored length says,
//
//   new suffix   GATTACA           stored length, in bits
//   listed       CCATCAT           -     differs at once: passed
//                GATCCCC           0     shares 6 bits with GATTACA: compared
//                GATTAAA           6     shares 11 bits: compared
//                TTTTTTT           0     shares 0 bits: not more, the walk ends
//
// Only among suffixes of equal prefix words is there something left to walk,
// and for suffixes that are shorter than these, or begin with one that is.

#ifndef PALVOR_ORDER_KEY_ROWS_H_
#define PALVOR_ORDER_KEY_ROWS_H_

#include <memory>

#include "palvor/order/front.h"
#include "palvor/order/lcp_list.h"
#include "palvor/order/row_tables.h"
#include "palvor/simd/target.h"

namespace palvor {

class KeyRows {
 public:
  virtual ~KeyRows() = default;
  KeyRows(const KeyRows&) = delete;
  KeyRows& operator=(const KeyRows&) = delete;

  bool isEmpty() const { return rows_.count == 0; }
  int head() const { return streamOf(rows_.states[0]); }
  LcpEntry headEntry() const { return entryOf(rows_.states[0]); }

  // Takes suffixes off the front, as long as the streams' buffers hold tested
  // records (and entries, where these are read, which the keys confirm) and
  // these are long, but `room` (1 or more) at most, to `suffixes`, and their
  // entries, unless null, to `entries`. Each is replaced by its stream's next.
  // Returns how many there are: fewer than `room` where the head must be
  // advanced alone, or order has broken (Front::ascends).
  virtual int merge(Suffix* suffixes, LcpEntry* entries, int room) = 0;

  // Moves the head to the row of its stream's new suffix, or takes it out if
  // the stream has ended, whatever comes behind it: the end of a buffer, a
  // short suffix, an entry that is not what the keys say.
  virtual void advanceHead() = 0;

  // Puts what is left into the list, which goes on with it.
  virtual void handOver() = 0;

 protected:
  KeyRows() = default;

  RowTables rows_;
};

// Whether there are few enough streams, and this processor has vectors.
bool canMergeByRows(const Front& front, Processor processor);

// Takes over the streams of a list. canMergeByRows must say so.
std::unique_ptr<KeyRows> makeKeyRows(Front& front, LcpList& list,
                                     Processor processor);

}  // namespace palvor

#endif  // PALVOR_ORDER_KEY_ROWS_H_
