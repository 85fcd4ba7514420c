// A piece of a suffix array.

#ifndef PALVOR_STREAM_SLICE_H_
#define PALVOR_STREAM_SLICE_H_

#include <cstdint>

namespace palvor {

// Records `first` to `first` + `count` - 1 of the array's file.
struct Slice {
  int64_t first = 0;
  int64_t count = 0;
};

// All of an array, however long it is: a file holds fewer records.
inline constexpr Slice kWholeArray = {0, int64_t{1} << 32};

}  // namespace palvor

#endif  // PALVOR_STREAM_SLICE_H_
