// Where two stretches of packed string part.

#ifndef PALVOR_SOURCES_FIRST_DIFFERENCE_H_
#define PALVOR_SOURCES_FIRST_DIFFERENCE_H_

#include <cstdint>

// A stretch of a packed string, read in slices of 32 bits that need not be
// aligned to its words.
struct Stretch {
  Stretch(const unsigned* string, unsigned start)
      : words(string + (start >> 5)), shift(start & 31) {}

  // Slice w. Reads words w and w + 1.
  uint32_t slice(int w) const {
    const uint64_t pair = static_cast<uint64_t>(words[w]) << 32 | words[w + 1];
    return static_cast<uint32_t>(pair << shift >> 32);
  }

  const unsigned* words;
  unsigned shift;  // bits of the first word before the stretch
};

// The first of the slices `from` to `to` - 1 in which two stretches differ, or
// `to`, which must be above `from`, if there is none. Every slice must begin
// before the end of its string's data, so that the trailer is the last word
// read.
extern int (*const firstDifference)(Stretch a, Stretch b, int from, int to);

#endif  // PALVOR_SOURCES_FIRST_DIFFERENCE_H_
