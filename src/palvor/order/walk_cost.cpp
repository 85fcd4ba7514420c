#include "palvor/order/walk_cost.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/text/compare.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "palvor/order/walk_cost.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "palvor/simd/lanes-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {
namespace {

using Block = KeyBlocks::Block;

#if PALVOR_HAS_VECTORS

// A bit for each lane of a mask.
template <class Mask>
HWY_INLINE uint32_t bitsOfInts(Mask mask) {
  return static_cast<uint32_t>(bitsOf(IntTag(), mask));
}

// Adds what comparisons tell that found 64 bits or more, which are `found64`.
// Returns the words that each examined, in its lane.
template <class Mask>
HWY_INLINE Ints addLong(Cost& cost, const Block& block, int from, int bits,
                        Ints known, Ints found, Mask found64) {
  const IntTag tag;
  const Ints n63 = allInts(63);
  const Ints n64 = allInts(64);
  const Ints one = allInts(1);
  const Ints shorter = hn::Min(allInts(bits), hn::Load(tag, block.bits + from));
  cost.found64 += std::popcount(bitsOfInts(found64));
  cost.found64More += std::popcount(
      bitsOfInts(hn::And(found64, hn::Gt(hn::Sub(found, known), n63))));
  // As isSettledByKeys and wordsExamined (palvor/text/compare.h).
  const auto read =
      hn::And(found64, hn::Or(hn::Gt(known, n63), hn::Gt(shorter, n64)));
  cost.settled -= std::popcount(bitsOfInts(read));
  const Ints pos =
      hn::Load(tag, reinterpret_cast<const int32_t*>(block.pos) + from);
  const Ints start = hn::Max(known, n64);
  const Ints skip =
      hn::Sub(start, hn::And(hn::Add(start, hn::Add(pos, pos)), allInts(31)));
  const Ints last = hn::Min(found, hn::Sub(shorter, one));
  const Ints words = hn::Add(hn::ShiftRight<5>(hn::Sub(last, skip)), one);
  return hn::IfThenElseZero(read, hn::Max(words, allInts(0)));
}

// Adds comparisons with the suffixes of a block before index `end`, the last
// of which shares `common` bits with the new suffix. Returns what the suffix
// before the block shares with it.
HWY_INLINE int addOfBlock(Cost& cost, const Block& block, int end, int bits,
                          int common) {
  const IntTag tag;
  constexpr uint32_t kAllLanes = (uint32_t{1} << kIntLanes) - 1;
  Ints words = allInts(0);
  for (int from = (end - 1) & -kIntLanes; from > block.begin - kIntLanes;
       from -= kIntLanes) {
    const Ints entries =
        hn::Load(tag, reinterpret_cast<const int32_t*>(block.entry) + from);
    const Ints index = hn::Iota(tag, 0);
    const auto within = hn::And(hn::Lt(index, allInts(end - from)),
                                hn::Gt(index, allInts(block.begin - from - 1)));
    const Ints stored =
        hn::IfThenElse(within, hn::ShiftRight<1>(entries), allInts(kMostInt));
    const Ints entering = allInts(common);
    if (hn::AllTrue(tag, hn::Gt(stored, entering))) continue;

    const Ints least = leastIntsBehind(stored);
    const Ints found = hn::Min(intsUp<1>(least), entering);
    const auto passed = hn::Gt(stored, found);
    const uint32_t compared = kAllLanes & ~bitsOfInts(passed);
    const int comparisons = std::popcount(compared);
    cost.comparisons += comparisons;
    cost.settled += comparisons;
    cost.unchanged += std::popcount(
        compared &
        bitsOfInts(hn::Eq(
            entries, hn::Load(tag, reinterpret_cast<const int32_t*>(block.own) +
                                       from))));
    common = std::min(common, hn::GetLane(least));
    const auto found64 = hn::And(hn::Not(passed), hn::Gt(found, allInts(63)));
    if (!hn::AllFalse(tag, found64)) {
      words = hn::Add(words,
                      addLong(cost, block, from, bits, stored, found, found64));
    }
  }
  cost.words += sumOf(words);
  return common;
}

// Which of the lengths before index `end` are not above `common` nor those
// behind them; a bit for each lane of those that begin at index `from`. Lowers
// `common` to the least of these lanes.
HWY_INLINE uint64_t leastOf(const uint8_t* lengths, int from, int end,
                            int& common) {
  const ByteTag tag;
  const Bytes stored = beginningOf(hn::Load(tag, lengths + from), end - from);
  const Bytes least = leastBytesBehind(stored);
  const Bytes found = hn::Min(bytesBehind(least), allBytes(common));
  common = std::min<int>(common, hn::GetLane(least));
  return bitsOf(tag, hn::Eq(hn::Min(stored, found), stored));
}

// As addOfBlock, for less than 64 common bits. The prefix words settle all
// comparisons then.
HWY_INLINE int addShortOfBlock(Cost& cost, const Block& block, int end,
                               int common) {
  uint64_t compared = 0;
  for (int from = KeyBlocks::kRoom - kByteLanes; from >= 0;
       from -= kByteLanes) {
    if (kByteLanes < KeyBlocks::kRoom && from >= end) continue;
    compared |= leastOf(block.shortLength, from, end, common) << from;
  }
  compared &= ~uint64_t{0} << block.begin;
  const int comparisons = std::popcount(compared);
  cost.comparisons += comparisons;
  cost.settled += comparisons;
  cost.unchanged += std::popcount(compared & block.unchanged);
  return common;
}

// Adds comparisons with the suffixes of all blocks before a number, the last of
// which shares `common` bits, less than 64.
HWY_INLINE void addShortBefore(Cost& cost, const KeyBlocks& blocks, int number,
                               int common) {
  for (int from = (number - 1) & -kByteLanes; from >= 0; from -= kByteLanes) {
    int entering = common;
    uint64_t compared = leastOf(blocks.shortLeasts(), from, number, common);
    while (compared != 0) {
      const int lane = 63 - std::countl_zero(compared);
      const Block& block = blocks.block(from + lane);
      entering = addShortOfBlock(cost, block, block.end, entering);
      compared ^= uint64_t{1} << lane;
    }
  }
}

void addWalk(Cost& cost, const KeyBlocks& blocks, const Place& place, int bits,
             int common) {
  int number = place.block;
  int end = place.index;
  for (; number >= 0 && common > 63; number--) {
    if (number != place.block) end = blocks.block(number).end;
    if (blocks.leasts()[number] <= common) {
      common = addOfBlock(cost, blocks.block(number), end, bits, common);
    }
  }
  if (number == place.block) {
    common = addShortOfBlock(cost, blocks.block(number), end, common);
    number--;
  }
  addShortBefore(cost, blocks, number + 1, common);
}

#else

void addWalk(Cost& cost, const KeyBlocks& blocks, const Place& place, int bits,
             int common) {
  for (int number = place.block; number >= 0; number--) {
    if (blocks.leasts()[number] > common) continue;
    const Block& block = blocks.block(number);
    const int end = number == place.block ? place.index : block.end;
    for (int index = end - 1; index >= block.begin; index--) {
      const int stored = lcpBits(block.entry[index]);
      if (stored > common) continue;
      addComparison(cost, block, index, bits, stored, common);
      common = stored;
    }
  }
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace palvor {
void addComparison(Cost& cost, const KeyBlocks::Block& block, int index,
                   int bits, int known, int common) {
  cost.addListed(known, common, block.entry[index] == block.own[index]);
  const int shorter = std::min(bits, block.bits[index]);
  if (isSettledByKeys(shorter, known, common)) {
    cost.settled++;
  } else {
    cost.words += wordsExamined(block.pos[index], shorter, known, common);
  }
}

WalkCost walkCost(Processor processor) {
  return choose(PALVOR_VERSIONS(addWalk), processor);
}

}  // namespace palvor

#endif  // HWY_ONCE
