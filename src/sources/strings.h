// The packed input strings, all in memory for the whole run: the comparison
// reads characters at any position of any input.

#ifndef PALVOR_SOURCES_STRINGS_H_
#define PALVOR_SOURCES_STRINGS_H_

#include <cstdint>

#include "run/values.h"
#include "sources/suffix.h"

// Per input, its stored words (sources/packing.h): data words and the trailer.
// Read-only; written by loadBinaryStrings alone.
extern unsigned** binaryString;

// Loads every input's .stbin file, by reading it or, with `usemmap`, by
// mapping it. Needs `ninputs`, `blengths` and `stringPrefix`. A file that
// cannot be opened, is too short or, when read, has no zero trailer ends the
// run; so does a binary length of 2^31 bits or more. Bytes after the trailer
// are ignored. What is read counts as memory used, what is mapped does not.
void loadBinaryStrings();

// A suffix's length in bits. Its input number must be below `ninputs`.
inline int remainingBits(const Suffix& suffix) {
  return static_cast<int>(blengths[inputNumber(suffix)] - 2 * suffix.pos);
}

// Whether a suffix's prefix words say more than there is of it.
inline bool prefixGoesOn(const Suffix& suffix) {
  const int bits = remainingBits(suffix);
  if (bits >= 64) return false;
  const uint64_t words =
      static_cast<uint64_t>(suffix.prefix0) << 32 | suffix.prefix1;
  return words << bits != 0;
}

#endif  // PALVOR_SOURCES_STRINGS_H_
