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

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "palvor/io/huge_pages.h"
#include "palvor/text/axis.h"
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

  // The same in three steps, so that what each reads can be asked for long
  // before: for many suffixes, all of them take the first step, then the next.
  // A position that is Axis::kNowhere ends as itself.
  void prefetchBlock(uint32_t axisPosition) const {
    __builtin_prefetch(blocks_.data() + blockOf(axisPosition), 0, kNearby);
  }
  // Returns what anchorFrom wants.
  uint32_t prefetchStretch(uint32_t axisPosition) const {
    const uint32_t number = blocks_[blockOf(axisPosition)];
    const Stretch* const stretch = stretches_.data() + number;
    __builtin_prefetch(stretch, 0, kNearby);
    __builtin_prefetch(stretch + kNextLine, 0, kNearby);
    return number;
  }
  Anchor anchorFrom(uint32_t number, uint32_t axisPosition) const {
    // What is nowhere is looked up, too, which costs less than a branch.
    const uint32_t inside = std::min(axisPosition, last_);
    const Stretch* stretch = stretches_.data() + number;
    // Few blocks have more than two starts, and a branch for these would often
    // be mispredicted. The end mark can't be passed.
    stretch += stretch[1].start <= inside ? 1 : 0;
    stretch += stretch[1].start <= inside ? 1 : 0;
    while (stretch[1].start <= inside) stretch++;
    const uint32_t position = stretch->anchor + (inside - stretch->start);
    return {axisPosition == Axis::kNowhere ? Axis::kNowhere : position,
            secondKey(stretch->end - inside, stretch->parting)};
  }

  // Asks for what commonBits reads of suffixes with this key.
  void prefetchCommonBits(uint64_t key) const { ranks_.ask(keyRank(key)); }

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
  // The next stretches may lie in the next line of the cache.
  static constexpr uint32_t kNextLine = 3;
  // Into the second cache: the first one has few lines on their way at a time.
  static constexpr int kNearby = 2;

  uint32_t blockOf(uint32_t axisPosition) const {
    return std::min(axisPosition, last_) / kBlock;
  }

  Anchor anchorIn(uint32_t number, uint32_t axisPosition) const {
    const Stretch& stretch = stretches_[number];
    return {stretch.anchor + (axisPosition - stretch.start),
            secondKey(stretch.end - axisPosition, stretch.parting)};
  }

  std::vector<uint32_t> bases_;  // per input, on the axis; or kNowhere
  HugeTable<uint32_t> blocks_;   // per block, the stretch that it begins in
  HugeTable<Stretch> stretches_;
  StretchRanks ranks_;
  uint32_t last_ = 0;  // the end of the last stretch, on the axis
};

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCHES_H_
