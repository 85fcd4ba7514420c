// Two suffixes compared by their stretches.

#ifndef PALVOR_TEXT_STRETCH_COMPARISON_H_
#define PALVOR_TEXT_STRETCH_COMPARISON_H_

#include <cstdint>
#include <span>

#include "palvor/text/packed_string.h"
#include "palvor/text/stretches.h"

namespace palvor {

// A suffix by its place; positions are in characters.
struct SuffixPlace {
  uint32_t input;
  uint32_t position;
};

// What is known of two suffixes.
struct StretchParting {
  uint32_t bits;  // bits that they share: all of them if known, else at least
  bool known;     // whether the rest is true; otherwise it means nothing
  int order;      // below 0: the first one sorts first; 0: they are equal
};

// Looks at stretches alone, and stops where two stretches at the same place
// have different anchors: then an even number of bits are known to be shared,
// and the strings have to be read from there on. `known` characters, 0 or more,
// are known to be shared and are not looked at; both suffixes have as many.
StretchParting followStretches(const Stretches& stretches,
                               std::span<const PackedString> strings,
                               SuffixPlace a, SuffixPlace b, uint32_t known);

// The same, but always known: where anchors differ, strings are read, up to
// where stretches may help again. Suffixes without anchors are read.
StretchParting compareByStretches(const Stretches& stretches,
                                  std::span<const PackedString> strings,
                                  SuffixPlace a, SuffixPlace b, uint32_t known);

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_COMPARISON_H_
