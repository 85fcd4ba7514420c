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
// taken from there on. They depend on nothing but the record: they can be had
// for all records of a buffer at once, long before these are merged.
//
//   anchorsAt, for axisPosition(input, pos + 32), or kNowhere if the string
//   takes no part, or the suffix has no more than 32 characters.
//
// (Where few prefix words are equal, as with genomes of two species, that is
// wasted: then anchorAt, when it is needed, for the new suffix and those that
// are listed with its prefix words and have none yet.)
//
// Beside the prefix keys, rows hold per listed suffix
//
//   anchors  64 bits: its anchor's position; where it has none, a number that
//            no other has, such as 2^32 + its stream
//   seconds  64 bits: its second key
//
// which move with it, or stand by stream and are gathered where prefix keys are
// equal. A new suffix s with prefix key w, anchor a and second key k finds its
// place so:
//
//   1. equal = places with prefix key w. None: as ever.
//   2. known = places of `equal` with anchor a, and among them
//      lower = places whose second key is below k. If known = equal, as for
//      nearly all of strains, s goes behind all with prefix keys below w and
//      behind `lower`: a popcount. Of the neighbours there, those with prefix
//      key w share 64 + commonBits(k, k') bits with s, which the entries say;
//      firstbit is 0 if that is the shorter suffix's length, else 1. L is a
//      field of the keys, so that vectors can take min(L, L') for all places at
//      once: right wherever the L differ.
//   3. A place with the key k itself: if equalIfAlike(k), the suffixes are
//      equal, share all their bits, and s goes behind it, as equal suffixes
//      leave in the order in which they came. Otherwise it is compared.
//   4. If `equal` holds others, the known places bound the range in which s can
//      go, and tell its common prefixes with both ends; within it the list is
//      walked as ever, by stored common prefixes, and what has to be compared
//      is compared: by followStretches, which tells up to where the two agree
//      if it can't tell more, and then by the strings from there on, with what
//      is remembered of long matches; or by compareByStretches, which does both
//      without a memory.
//
// What a comparison by words would have examined follows from the common prefix
// alone, so that counts stay what they are.

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

  // Asks for what a look-up of the anchor there reads first.
  void prefetchAnchor(uint32_t axisPosition) const {
    __builtin_prefetch(blocks_.data() + axisPosition / kBlock, 0, 2);
  }

  // Asks for what commonBits reads of suffixes with this key.
  void prefetchCommonBits(uint64_t key) const { ranks_.ask(keyRank(key)); }

  // Those of many suffixes, in any order: each takes two look-ups, which are
  // asked for long before they are needed. `anchors` and `keys` have room for
  // one each. A position that is Axis::kNowhere gets itself and the key 0.
  void anchorsAt(std::span<const uint32_t> axisPositions, uint32_t* anchors,
                 uint64_t* keys) const;

  // The common prefix, in bits, of two suffixes of equal anchors and different
  // keys.
  uint32_t commonBits(uint64_t a, uint64_t b) const {
    if (partBeforeRanks(a, b)) return commonBitsBeforeRanks(a, b);
    return bitsBeforeRanks(a) + ranks_.commonBits(keyRank(a), keyRank(b));
  }

  // Whether two suffixes of equal anchors that both have this key are equal. If
  // not, they share bitsBeforeRanks(key) bits at least.
  bool equalIfAlike(uint64_t key) const {
    return keySymbol(key) == kEndOfString || ranks_.known(keyRank(key));
  }

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
