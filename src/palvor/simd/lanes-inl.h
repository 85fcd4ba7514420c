// Numbers in the lanes of vectors: for each the least of those behind it.
// Compiled once for each target that has vectors.

#if defined(PALVOR_SIMD_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_SIMD_LANES_INL_H_
#undef PALVOR_SIMD_LANES_INL_H_
#else
#define PALVOR_SIMD_LANES_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

// What lanes without a number hold.
constexpr int kMostInt = std::numeric_limits<int>::max();
constexpr int kMostByte = 255;

// 32-bit numbers.
using IntTag = hn::ScalableTag<int32_t>;
using Ints = hn::Vec<IntTag>;
constexpr int kIntLanes = static_cast<int>(hn::MaxLanes(IntTag()));

HWY_INLINE Ints allInts(int number) { return hn::Set(IntTag(), number); }

// The sum of all lanes, which can be more than fits into one.
HWY_INLINE int64_t sumOf(Ints numbers) {
  const IntTag tag;
  const hn::Half<IntTag> half;
  const hn::Repartition<int64_t, IntTag> wide;
  return hn::GetLane(hn::SumOfLanes(
      wide, hn::Add(hn::PromoteTo(wide, hn::LowerHalf(half, numbers)),
                    hn::PromoteTo(wide, hn::UpperHalf(half, numbers)))));
}

// For each lane the one that many lanes behind it, or kMostInt.
template <int kBy>
HWY_INLINE Ints intsUp(Ints ints) {
#if PALVOR_HAS_AVX512
  return Ints{_mm512_alignr_epi32(allInts(kMostInt).raw, ints.raw, kBy)};
#else
  const IntTag tag;
  const auto from = hn::And(hn::Iota(tag, kBy), allInts(kIntLanes - 1));
  return hn::IfThenElse(
      hn::FirstN(tag, kIntLanes - kBy),
      hn::TableLookupLanes(ints, hn::IndicesFromVec(tag, from)),
      allInts(kMostInt));
#endif
}

// For each lane the least of it and those behind it.
template <int kBy = 1>
HWY_INLINE Ints leastIntsBehind(Ints ints) {
  const Ints least = hn::Min(ints, intsUp<kBy>(ints));
  if constexpr (2 * kBy < kIntLanes) {
    return leastIntsBehind<2 * kBy>(least);
  } else {
    return least;
  }
}

// Numbers of 8 bits, without a sign, in blocks of 16 lanes.
using ByteTag = hn::ScalableTag<uint8_t>;
using Bytes = hn::Vec<ByteTag>;
constexpr int kByteLanes = static_cast<int>(hn::MaxLanes(ByteTag()));
constexpr int kByteBlocks = kByteLanes / 16;

HWY_INLINE Bytes allBytes(int number) {
  return hn::Set(ByteTag(), static_cast<uint8_t>(number));
}

// With kMostByte in lanes that do not belong to the first `count`, 1 or more.
HWY_INLINE Bytes beginningOf(Bytes bytes, int count) {
  const ByteTag tag;
  const auto within =
      hn::FirstN(tag, static_cast<size_t>(std::min(count, kByteLanes)));
  return hn::IfThenElse(within, bytes, allBytes(kMostByte));
}

// For each lane the one that many lanes behind it in its block, or kMostByte.
template <int kBy>
HWY_INLINE Bytes bytesUpInBlock(Bytes bytes) {
  return hn::CombineShiftRightBytes<kBy>(ByteTag(), allBytes(kMostByte), bytes);
}

// For each lane the one that many blocks behind it, or kMostByte.
template <int kBy>
HWY_INLINE Bytes bytesUpByBlocks(Bytes bytes) {
  if constexpr (kBy >= kByteBlocks) {
    return allBytes(kMostByte);
  } else {
#if PALVOR_HAS_AVX512
    return Bytes{
        _mm512_alignr_epi64(allBytes(kMostByte).raw, bytes.raw, 2 * kBy)};
#else
    const IntTag tag;
    const auto from = hn::And(hn::Iota(tag, 4 * kBy), allInts(kIntLanes - 1));
    const auto moved = hn::TableLookupLanes(hn::BitCast(tag, bytes),
                                            hn::IndicesFromVec(tag, from));
    return hn::BitCast(
        ByteTag(), hn::IfThenElse(hn::FirstN(tag, kIntLanes - 4 * kBy), moved,
                                  allInts(-1)));
#endif
  }
}

// For each lane the next one; kMostByte for the last.
HWY_INLINE Bytes bytesBehind(Bytes bytes) {
  return hn::CombineShiftRightBytes<1>(ByteTag(), bytesUpByBlocks<1>(bytes),
                                       bytes);
}

template <int kBy = 1>
HWY_INLINE Bytes leastOfBlocksBehind(Bytes bytes) {
  if constexpr (kBy + 1 < kByteBlocks) {
    return leastOfBlocksBehind<2 * kBy>(
        hn::Min(bytes, bytesUpByBlocks<kBy>(bytes)));
  } else {
    return bytes;
  }
}

// For each lane the least of it and those behind it.
HWY_INLINE Bytes leastBytesBehind(Bytes bytes) {
  Bytes least = hn::Min(bytes, bytesUpInBlock<1>(bytes));
  least = hn::Min(least, bytesUpInBlock<2>(least));
  least = hn::Min(least, bytesUpInBlock<4>(least));
  least = hn::Min(least, bytesUpInBlock<8>(least));
  const Bytes ofBlock = hn::TableLookupBytes(least, hn::Zero(ByteTag()));
  return hn::Min(least, leastOfBlocksBehind(bytesUpByBlocks<1>(ofBlock)));
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_SIMD_LANES_INL_H_
