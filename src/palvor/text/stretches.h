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
// How merges use it. Equal prefix words say that two suffixes agree for 32
// characters, so they are anchored at a position behind their first ones. An
// anchor depends on nothing but the record: it can be had long before the
// record is merged, in steps that each ask for what the next one reads
// (order/anchors_ahead.h). Of suffixes with equal prefix words and equal
// anchors
//
//   - the order is that of their second keys, and what neighbours share follows
//     from these: commonBits. So a group is sorted by one integer each
//     (order/tied_rows-inl.h), or searched by halves (order/block_order.h);
//   - those of the same key are equal if equalIfAlike says so, and leave in the
//     order in which they came. If not, followStretches
//     (text/stretch_comparison.h) goes on from where they are known to agree.
//
// Where anchors differ the strings are read.
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
