// Suffix tree partitions of ranges: each range begins a tree of its own, and
// when all are made their files and dividers are numbered through.

#ifndef PALVOR_KIT_MERGE_RANGE_TREES_H_
#define PALVOR_KIT_MERGE_RANGE_TREES_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kit/merge/range_merger.h"

namespace kit {

class RangeTrees {
 public:
  // For the trees <output>_<t>.stree and <output>.stdiv of so many ranges.
  //   nodes  records of a tree, 2 or more
  RangeTrees(const RangeMerger& merger, size_t ranges, int nodes);

  // Removes what was written and has no name yet.
  ~RangeTrees();
  RangeTrees(const RangeTrees&) = delete;
  RangeTrees& operator=(const RangeTrees&) = delete;

  // Makes the trees of a range, under names of their own. Threads may do so
  // side by side. `advance` is told the suffixes that are done, now and then.
  void make(size_t range, std::shared_ptr<const palvor::MergeRange> slices,
            const MemoryShares& shares,
            const std::function<void(uint64_t)>& advance);

  // Gives all trees their numbers and names, and writes the dividers.
  void commit();

 private:
  std::string treePath(size_t range, int tree) const;
  std::string dividersPath(size_t range) const;

  const RangeMerger& merger_;
  int nodes_;
  std::vector<int> trees_;  // of each range, made so far
  bool committed_ = false;
};

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_RANGE_TREES_H_
