// Which k-mers of a string are looked at when like text is looked for.
//
// Positions are chosen by what stands there, so that two copies of a text are
// looked at in the same places, wherever they stand: those where GAA or GAC
// stands, one in 32 of unrelated text, which a few operations on a word find
// for 30 positions at once. Where there is none for long, as in a run of one
// character, every 61st position is taken.

#ifndef PALVOR_TEXT_SAMPLED_KMERS_H_
#define PALVOR_TEXT_SAMPLED_KMERS_H_

#include <bit>
#include <cstdint>

#include "palvor/text/packed_string.h"

namespace palvor {

inline constexpr uint32_t kKmer = 24;  // characters

// How many characters must follow a k-mer's first one in its string: its own,
// and what is read at once with it.
inline constexpr uint32_t kKmerReach = 32;

// A number whose upper bits depend on all bits of this one.
inline uint64_t mixed(uint64_t number) {
  const uint64_t spread = number * 0x9E3779B97F4A7C15U;
  return (spread ^ spread >> 32) * 0xD6E8FEB86659FD93U;
}

// A mixture of the characters of the k-mer at a position, behind which its
// string has kKmerReach characters.
inline uint64_t kmerHash(const PackedString& string, uint32_t position) {
  return mixed(manyCharacters(string, position) >> (64 - 2 * kKmer));
}

// The first position from `from` on that is looked at, below `end`, or `end`.
// Behind `end` the string must have kKmerReach characters.
inline uint32_t nextSampled(const PackedString& string, uint32_t from,
                            uint32_t end) {
  constexpr uint64_t kFirstBits = 0xAAAAAAAAAAAAAAAA;
  // Of the last two characters it is not known what follows.
  constexpr uint64_t kWindow = ~uint64_t{0xF};
  for (uint32_t window = 0; window < 2; window++, from += 30) {
    if (from >= end) return end;
    const uint64_t characters = manyCharacters(string, from);
    const uint64_t first = characters & kFirstBits;
    const uint64_t second = characters << 1 & kFirstBits;
    const uint64_t found = first & ~second &                 // G
                           ~(first << 2) & ~(second << 2) &  // A
                           ~(first << 4) & kWindow;          // A or C
    if (found != 0) {
      const auto distance = static_cast<uint32_t>(std::countl_zero(found)) / 2;
      return from + distance < end ? from + distance : end;
    }
  }
  return from < end ? from : end;
}

}  // namespace palvor

#endif  // PALVOR_TEXT_SAMPLED_KMERS_H_
