// All strings of a merge as stretches of one another, and the anchors of their
// suffixes.
//
// Strains are edited copies of one another. Once it is known along which
// earlier text each string runs (text/stretch.h), the common prefix and the
// order of most pairs of suffixes follow from integers, and no string is read:
// a suffix has an *anchor*, a position on the axis of all strings, and a
// *second key*, which orders all suffixes of that anchor (text/second_key.h).
//
// Everything here is true by the strings alone, whatever suffix arrays say.
//
// Strings that are like no other text, and those that find no room on the axis,
// are left out: their suffixes have no anchors.
//
// How a merge that knows the common prefixes of listed suffixes uses it. Equal
// prefix words say that two suffixes agree for 32 characters, so anchors are
// taken from there on, for all records of a buffer at once, long before they
// are merged: what a record's anchor is depends on nothing else.
//
//   anchorsAt, for axisPosition(input, pos + 32), or kNowhere if the string
//   takes no part, or the suffix has no more than 32 characters.
//
// Beside the prefix keys, rows hold per listed suffix
//
//   anchors  64 bits: its anchor's position; where it has none, a number above
//            2^32 that no other has, such as 2^32 + its stream
//   seconds  64 bits: its second key
//
// and both move with it. A new suffix s with prefix key w, anchor a and second
// key k finds its place so:
//
//   1. equal = places with prefix key w. None: as ever.
//   2. known = places of `equal` with anchor a. If known = equal, as for nine
//      of ten, its place is behind
//        below(w) | (known & places whose second key is below k)
//      which is a popcount. The entry with the one before, if it is known, and
//      that of the one behind, follow from the keys alone:
//        64 + commonBits(k, k')           if partBeforeRanks(k, k')
//        64 + commonBitsBehind(k, k')     otherwise
//      The firstbit is 0 if that is the shorter one's length, else 1. L is a
//      field of the key, so vectors can take min(L, L') for all places at once,
//      which is right wherever L differs.
//   3. A place with the key k itself: the suffixes are equal, if
//      ranked(k) or keySymbol(k) is an end, and s goes behind it, as equal
//      suffixes stand in the order in which the merge met them. Otherwise
//      compareByStretches decides.
//   4. If `equal` holds others, with other anchors, the known places still
//      bound the range in which s can go, and give the common prefix with its
//      two ends; those within it are walked as ever, by common prefixes, and
//      compared by compareByStretches or by the strings.

#ifndef PALVOR_TEXT_STRETCHES_H_
#define PALVOR_TEXT_STRETCHES_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "palvor/text/axis.h"
#include "palvor/text/huge_pages.h"
#include "palvor/text/second_key.h"
#include "palvor/text/stretch.h"
#include "palvor/text/stretch_ranks.h"

namespace palvor {

// Where a suffix is anchored.
struct Anchor {
  uint32_t position;  // on the axis
  uint64_t key;       // the second key
};

class Stretches {
 public:
  Stretches() = default;

  // Whether no string takes part.
  bool empty() const { return stretches_.empty(); }

  // Whether a string takes part.
  bool holds(uint32_t input) const {
    return !bases_.empty() && bases_[input] != Axis::kNowhere;
  }

  // A suffix's position on the axis; its string must take part. The position
  // may be the end of the string.
  uint32_t axisPosition(uint32_t input, uint32_t position) const {
    return bases_[input] + position;
  }

  // The number of the stretch that a position on the axis belongs to.
  uint32_t stretchAt(uint32_t axisPosition) const {
    uint32_t number = blocks_[axisPosition / kBlock];
    while (stretches_[number + 1].start <= axisPosition) number++;
    return number;
  }

  // The anchor of the suffix there.
  Anchor anchorAt(uint32_t axisPosition) const {
    return anchorIn(stretchAt(axisPosition), axisPosition);
  }

  // Those of many suffixes, in any order: each takes two look-ups, which are
  // asked for long before they are needed. `anchors` and `keys` have room for
  // one each. A position that is Axis::kNowhere gets itself and the key 0.
  void anchorsAt(std::span<const uint32_t> axisPositions, uint32_t* anchors,
                 uint64_t* keys) const;

  // The common prefix, in bits, of two suffixes of equal anchors whose keys
  // differ in their ranks alone.
  uint32_t commonBitsBehind(uint64_t a, uint64_t b) const {
    return (partingBits(a) & ~1U) + 2 +
           ranks_.commonBits(keyRank(a), keyRank(b));
  }

  // Whether suffixes of equal anchor and this key are equal, unless its symbol
  // is an end: then they always are.
  bool ranked(uint64_t key) const { return ranks_.known(keyRank(key)); }

  // Stretches by number, ascending on the axis. Behind the last one stands
  // an end mark, which starts at Axis::kNowhere.
  const Stretch& operator[](uint32_t number) const {
    return stretches_[number];
  }

  const Stretch* all() const { return stretches_.data(); }
  const StretchRanks& ranks() const { return ranks_; }

  // How many there are.
  size_t size() const { return stretches_.empty() ? 0 : stretches_.size() - 1; }

  // What it takes, in bytes.
  size_t memory() const;

 private:
  friend class StretchBuilder;

  static constexpr uint32_t kBlock = 64;  // positions

  Anchor anchorIn(uint32_t number, uint32_t axisPosition) const {
    const Stretch& stretch = stretches_[number];
    return {stretch.anchor + (axisPosition - stretch.start),
            secondKey(stretch.end - axisPosition, stretch.parting)};
  }

  std::vector<uint32_t> bases_;  // per input, on the axis; or kNowhere
  HugeTable<uint32_t> blocks_;   // per block, the stretch that it begins in
  HugeTable<Stretch> stretches_;
  StretchRanks ranks_;
};

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCHES_H_
