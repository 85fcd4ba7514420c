// Two suffixes compared by their stretches.

#ifndef PALVOR_TEXT_STRETCH_COMPARISON_H_
#define PALVOR_TEXT_STRETCH_COMPARISON_H_

#include <cstdint>
#include <span>

#include "palvor/text/packed_string.h"
#include "palvor/text/stretch_walk.h"
#include "palvor/text/stretches.h"

namespace palvor {

// A suffix by its place; positions are in characters.
struct SuffixPlace {
  uint32_t input;
  uint32_t position;
};

// Compares two suffixes, of which `known` characters are known to be shared;
// both have as many. Looks at stretches alone, at a few of them, and says up to
// where the suffixes agree if that does not tell: then the strings have to be
// read from there on. Suffixes without anchors are not known.
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
