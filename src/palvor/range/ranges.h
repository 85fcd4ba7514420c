// The merged order in ranges, which are merged apart: by several threads, or on
// several machines.

#ifndef PALVOR_RANGE_RANGES_H_
#define PALVOR_RANGE_RANGES_H_

#include <cstdint>
#include <span>
#include <vector>

#include "palvor/range/merge_range.h"
#include "palvor/stream/stream_files.h"
#include "palvor/text/collection.h"

namespace palvor {

// The ranges between cuts (palvor/range/cuts.h), which must ascend: range i has
// the suffixes of keys from cut i - 1 up to below cut i, the first one those
// below the first cut, the last one those that are left. Merged each by itself
// (MergeOptions::range) and put together, with `entry` for the LCP entry of
// each range's first suffix, they are, byte for byte, what one merge by the
// merge list writes.
//
// Slices are found by halving, and of the strings only what is needed for the
// seams is read: to find what comes last before a cut and first behind it, and
// the order of equal suffixes behind it. Only for these are arrays read from a
// cut backwards, as far as they hold equal suffixes
// (palvor/range/entry_order.h).
//
// Arrays that are not in order give some slices that cover them. Fails if an
// array cannot be read, or a record beside a cut names an input or a position
// that is not there.
std::vector<MergeRange> cutRanges(const StreamFiles& files,
                                  const Collection& text,
                                  std::span<const uint64_t> keys);

// The suffixes of each of these ranges. Needs no strings, and tests no record.
std::vector<int64_t> countSuffixes(const StreamFiles& files,
                                   std::span<const uint64_t> cuts);

}  // namespace palvor

#endif  // PALVOR_RANGE_RANGES_H_
