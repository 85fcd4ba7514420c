// All strings of a merge as stretches of one another, and the anchors of their
// suffixes.
//
// Strains are edited copies of one another. Once it is known along which
// earlier text each string runs (text/stretch.h), the common prefix and the
// order of most pairs of suffixes follow from integers, and no string is read:
// a suffix has an *anchor*, a position on the axis of all strings, and it is
// known exactly how far the suffix runs along the text there, and what it has
// then (text/second_key.h). Where two suffixes have the same anchor and part
// from it at the same place in the same way, the stretches behind that place
// go on (text/stretch_comparison.h).
//
// Everything here is true by the strings alone, whatever suffix arrays say.
//
// The axis: strings that take part lie on it from the longest to the shortest,
// each followed by one position for its end. Strings that are like no other
// text, and those that find no room on an axis of 2^32 positions, are left out:
// their suffixes have no anchors.

#ifndef PALVOR_TEXT_STRETCHES_H_
#define PALVOR_TEXT_STRETCHES_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "palvor/text/packed_string.h"
#include "palvor/text/second_key.h"
#include "palvor/text/stretch.h"

namespace palvor {

// Where a suffix is anchored. Two anchors with equal positions tell which of
// their suffixes sorts first, and their common prefix, unless both keys are
// equal (text/second_key.h).
struct Anchor {
  uint32_t position;  // on the axis
  uint64_t key;       // the second key
};

class Stretches {
 public:
  static constexpr uint32_t kNowhere = UINT32_MAX;

  Stretches() = default;

  // Whether no string takes part.
  bool empty() const { return stretches_.empty(); }

  // Whether a string takes part.
  bool holds(uint32_t input) const { return bases_[input] != kNowhere; }

  // A suffix's position on the axis; its string must take part. The position
  // may be the end of the string.
  uint32_t axisPosition(uint32_t input, uint32_t position) const {
    return bases_[input] + position;
  }

  // The number of the stretch that a position on the axis belongs to. Takes
  // two look-ups, for which the next two functions ask early.
  uint32_t stretchAt(uint32_t axisPosition) const {
    uint32_t number = blocks_[axisPosition / kBlock];
    while (stretches_[number + 1].start <= axisPosition) number++;
    return number;
  }
  [[gnu::always_inline]] void prefetchBlock(uint32_t axisPosition) const {
    __builtin_prefetch(&blocks_[axisPosition / kBlock]);
  }
  // Best asked for when the block has come, before the stretch is needed.
  [[gnu::always_inline]] void prefetchStretch(uint32_t axisPosition) const {
    __builtin_prefetch(&stretches_[blocks_[axisPosition / kBlock]]);
  }

  // The anchor of the suffix there.
  Anchor anchorAt(uint32_t axisPosition) const {
    const Stretch& stretch = stretches_[stretchAt(axisPosition)];
    return {stretch.anchor + (axisPosition - stretch.start),
            secondKey(stretch.end - axisPosition, stretch.symbols)};
  }

  // Stretches by number, ascending on the axis. Behind the last one stands one
  // more, which starts at kNowhere.
  const Stretch& operator[](uint32_t number) const {
    return stretches_[number];
  }

  // How many there are.
  size_t size() const { return stretches_.empty() ? 0 : stretches_.size() - 1; }

  // Per stretch, a number that it shares with all that have the same anchor,
  // extent, distance from start to end, and symbols, and with no others: their
  // text is the same up to where the next ones begin. Sixteen numbers behind
  // the last one may be read, too.
  const uint32_t* alike() const { return alike_.data(); }

  // What it takes, in bytes.
  size_t memory() const;

 private:
  friend class StretchBuilder;

  static constexpr uint32_t kBlock = 64;  // positions

  std::vector<uint32_t> bases_;   // per input; kNowhere: takes no part
  std::vector<uint32_t> blocks_;  // per block, the stretch that it begins in
  std::vector<Stretch> stretches_;
  std::vector<uint32_t> alike_;
};

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCHES_H_
