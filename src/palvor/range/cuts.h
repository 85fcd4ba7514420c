// Where to cut the merged order into even ranges.
//
// A cut is a key, the first 32 characters of suffixes: it lies before all
// suffixes whose key is not below it. So suffixes of equal text are never
// parted, and a key that alone has more suffixes than a range should have stays
// in one.

#ifndef PALVOR_RANGE_CUTS_H_
#define PALVOR_RANGE_CUTS_H_

#include <cstdint>
#include <vector>

#include "palvor/stream/stream_files.h"

namespace palvor {

// At most `ranges` - 1 cuts, ascending, all different and above 0; fewer where
// keys have too many suffixes. They are chosen by a sample of each array, at
// even distances: 32 records for each range, but of all arrays no more than one
// record of 512, and of each 16 at least. With m samples of an array of n
// records, the suffixes before a cut are as many as there should be, give or
// take n / m for each array, and the suffixes of one key: where arrays are
// long, a range is within a 16th of its share.
//
// Looks at nothing but the prefix words of the sample. Fails if an array cannot
// be read.
std::vector<uint64_t> chooseCuts(const StreamFiles& files, int ranges);

}  // namespace palvor

#endif  // PALVOR_RANGE_CUTS_H_
