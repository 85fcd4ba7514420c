// What the vector code of order/ and text/ adds to Highway. Compiled once for
// each target.

#if defined(PALVOR_SIMD_VECTORS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_SIMD_VECTORS_INL_H_
#undef PALVOR_SIMD_VECTORS_INL_H_
#else
#define PALVOR_SIMD_VECTORS_INL_H_
#endif

#include <hwy/highway.h>

#include <cstdint>
#include <cstring>

// Whether the target has vectors at all, and whether they are those of AVX-512.
#undef PALVOR_HAS_VECTORS
#undef PALVOR_HAS_AVX512
#define PALVOR_HAS_VECTORS \
  (HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR)
#define PALVOR_HAS_AVX512 (HWY_TARGET == HWY_AVX3_DL)

// Instead of HWY_BEFORE_NAMESPACE: leading zeros are counted by an instruction,
// which every processor has that Highway takes for one of these.
// PALVOR_ATTR says the same of a lambda.
#undef PALVOR_TARGET
#undef PALVOR_ATTR
#undef PALVOR_BEFORE_NAMESPACE
#if PALVOR_HAS_AVX512
#define PALVOR_TARGET HWY_TARGET_STR ",lzcnt,avx512cd"
#elif HWY_TARGET == HWY_AVX2
#define PALVOR_TARGET HWY_TARGET_STR ",lzcnt"
#endif
#if defined(PALVOR_TARGET)
#define PALVOR_BEFORE_NAMESPACE() HWY_PUSH_ATTRIBUTES(PALVOR_TARGET)
#define PALVOR_ATTR __attribute__((target(PALVOR_TARGET)))
#else
#define PALVOR_BEFORE_NAMESPACE() HWY_BEFORE_NAMESPACE()
#define PALVOR_ATTR HWY_ATTR
#endif

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if PALVOR_HAS_VECTORS

#if PALVOR_HAS_AVX512
// The bits of a mask register in one of the others. In mask registers g++ 12
// can lose, when it shifts them, that the bits of lanes that are not there are
// 0.
HWY_INLINE uint64_t outOfMasks(uint64_t bits) {
  asm("" : "+r"(bits));
  return bits;
}
#endif

// A mask as a bit for each lane, of which there may be 64. By hand where the
// bits would otherwise go through memory, and be waited for.
template <class Tag, class Mask>
HWY_INLINE uint64_t bitsOf(Tag tag, Mask mask) {
#if PALVOR_HAS_AVX512
  static_cast<void>(tag);
  return outOfMasks(mask.raw);
#elif HWY_TARGET == HWY_AVX2
  const __m256i lanes = hn::VecFromMask(tag, mask).raw;
  using Lane = hn::TFromD<Tag>;
  int bits;
  if constexpr (sizeof(Lane) == 1) {
    bits = _mm256_movemask_epi8(lanes);
  } else if constexpr (sizeof(Lane) == 4) {
    bits = _mm256_movemask_ps(_mm256_castsi256_ps(lanes));
  } else {
    bits = _mm256_movemask_pd(_mm256_castsi256_pd(lanes));
  }
  return static_cast<uint32_t>(bits);
#else
  uint8_t bytes[8] = {};
  hn::StoreMaskBits(tag, mask, bytes);
  uint64_t bits;
  std::memcpy(&bits, bytes, sizeof bits);
  return bits;
#endif
}

using Words = hn::ScalableTag<uint32_t>;
constexpr int kWordLanes = HWY_MAX_BYTES / 4;

// The 32 bits that begin `shift` (0 to 31) bits behind the start of each word;
// `next` holds the words behind.
template <class Vector>
HWY_INLINE Vector slicesOf(Vector words, Vector next, int shift) {
#if PALVOR_HAS_AVX512
  return Vector{
      _mm512_shldv_epi32(words.raw, next.raw, _mm512_set1_epi32(shift))};
#else
  // In two steps, since a shift by 32 is not defined.
  return hn::Or(hn::ShiftLeftSame(words, shift),
                hn::ShiftRight<1>(hn::ShiftRightSame(next, 31 - shift)));
#endif
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_SIMD_VECTORS_INL_H_
