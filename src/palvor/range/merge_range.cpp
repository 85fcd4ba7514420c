#include "palvor/range/merge_range.h"

#include <algorithm>

#include "palvor/error.h"

namespace palvor {

void testFits(const MergeRange& range, int streams) {
  const auto count = static_cast<size_t>(streams);
  if (range.slices.size() != count || range.order.size() != count) {
    fail("a range of %zu streams, but there are %d", range.slices.size(),
         streams);
  }
  std::vector<bool> isThere(count);
  for (const int k : range.order) {
    if (k < 0 || k >= streams || isThere[static_cast<size_t>(k)]) {
      fail("the order of a range's streams holds %d, or holds it twice", k);
    }
    isThere[static_cast<size_t>(k)] = true;
  }
  const auto isPossible = [](const Slice& slice) {
    return slice.first >= 0 && slice.count >= 0 &&
           slice.first + slice.count <= kWholeArray.count;
  };
  if (!std::ranges::all_of(range.slices, isPossible)) {
    fail("a range of slices that no array has");
  }
}

}  // namespace palvor
