// A range of the merged order, which a merge of its own can make: for each
// stream the slice that belongs to it, and what there is to know of the order
// before it, so that the results of all ranges in turn are that of one merge.

#ifndef PALVOR_RANGE_MERGE_RANGE_H_
#define PALVOR_RANGE_MERGE_RANGE_H_

#include <cstdint>
#include <vector>

#include "palvor/format/lcp_entry.h"
#include "palvor/stream/slice.h"

namespace palvor {

struct MergeRange {
  std::vector<Slice> slices;  // per stream
  std::vector<int> order;     // all streams, as their first suffixes are taken:
                              // equal ones are merged in this order
  LcpEntry entry = 0;  // of the first suffix with the last one before the
                       // range; 0 if there is none

  // Suffixes of all slices.
  int64_t suffixes() const {
    int64_t sum = 0;
    for (const Slice& slice : slices) sum += slice.count;
    return sum;
  }
};

// Fails unless the range is one of so many streams, each of them once in the
// order, and its slices are such as an array can have.
void testFits(const MergeRange& range, int streams);

}  // namespace palvor

#endif  // PALVOR_RANGE_MERGE_RANGE_H_
