// Long matches between the input strings, remembered.
//
// Where two strains agree over a million characters, suffixes that begin in
// that match are compared a million times, each time over a match one character
// shorter; reading it anew every time would take quadratic time. So the
// comparison remembers what it found equal, and passes over it when it comes by
// again. A match is told by its two inputs, by how far they are shifted against
// each other, and by the block of the first input in which it was met:
//
//   input 3      ....CGATTACAGATTACAGATTACATT....     the same 22 characters,
//   input 8   ....AAGATTACAGATTACAGATTACAG....        3 positions further left
//
// The table is fixed, and a later match takes an earlier one's place: what is
// remembered costs or saves time, and changes no result.

#ifndef PALVOR_SOURCES_LONG_MATCHES_H_
#define PALVOR_SOURCES_LONG_MATCHES_H_

#include <cstdint>

// A place in the input strings: an input, and a bit of its packed string.
struct BitPlace {
  uint32_t input;
  uint32_t bit;
};

// How many bits from two places on are remembered to be equal; 0 if nothing is
// known.
uint32_t knownMatch(BitPlace a, BitPlace b);

// Remembers that `bits` bits from two places on are equal, of which the first
// `read` had to be read. All of them must lie in both strings.
void rememberMatch(BitPlace a, BitPlace b, uint32_t bits, uint32_t read);

#endif  // PALVOR_SOURCES_LONG_MATCHES_H_
