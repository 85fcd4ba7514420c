#include "sources/compare_strings.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "run/options.h"
#include "sources/long_matches.h"
#include "sources/strings.h"
#include "support/intrinsics.h"
#include "support/processor.h"

constinit double tngb = 0;

namespace {

// A stretch of a packed string, read in slices of 32 bits that need not be
// aligned to its words.
struct Stretch {
  Stretch(const unsigned* string, unsigned start)
      : words(string + (start >> 5)), shift(start & 31) {}

  const unsigned* words;
  unsigned shift;  // bits of the first word before the stretch
};

// The 64 bits of slices w and w + 1. Reads words w to w + 2.
[[gnu::always_inline]] inline uint64_t twoSlices(Stretch stretch, int w) {
  const unsigned* words = stretch.words + w;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return pair << stretch.shift |
         static_cast<uint64_t>(words[2]) << stretch.shift >> 32;
}

// Slice w. Reads words w and w + 1.
[[gnu::always_inline]] inline uint32_t slice(Stretch stretch, int w) {
  const unsigned* words = stretch.words + w;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return static_cast<uint32_t>(pair << stretch.shift >> 32);
}

// Where two stretches part.
struct Parting {
  int bit;  // the first that differs; only if one does
  bool differ;
  bool after;  // the first stretch has the 1 there
};

// Of two slices w that differ.
[[gnu::always_inline]] inline Parting partingOf(uint32_t a, uint32_t b, int w) {
  return {32 * w + std::countl_zero(a ^ b), true, a > b};
}

// Slices compared before the long matches are asked: a shorter match is read
// sooner than looked up.
constexpr int kPatience = 128;

// Every version of partSlices compares the slices `from` to `to` - 1 of two
// stretches, of which there must be one. Each slice must begin before the end
// of its string's data, so that the trailer is the last word read. Those for
// particular processors take the first stretch to begin with a word.

namespace any {

Parting partSlices(Stretch a, Stretch b, int from, int to) {
  int w = from;
  for (; w + 1 < to; w += 2) {
    const uint64_t x = twoSlices(a, w);
    const uint64_t y = twoSlices(b, w);
    if (x != y) return {32 * w + std::countl_zero(x ^ y), true, x > y};
  }
  if (w == to || slice(a, w) == slice(b, w)) return {};
  return partingOf(slice(a, w), slice(b, w), w);
}

#include "sources/compare_strings_steps.h"

}  // namespace any

#if defined(PALVOR_HAS_VERSIONS)

PALVOR_AVX2_BEGIN
namespace avx2 {

inline __m256i eightWords(Stretch stretch, int w, __m256i lanes) {
  return _mm256_maskload_epi32(reinterpret_cast<const int*>(stretch.words + w),
                               lanes);
}

inline __m256i eightSlices(Stretch stretch, int w, __m256i lanes) {
  const int* words = reinterpret_cast<const int*>(stretch.words + w);
  const __m128i left = _mm_cvtsi32_si128(static_cast<int>(stretch.shift));
  const __m128i right = _mm_cvtsi32_si128(32 - static_cast<int>(stretch.shift));
  return _mm256_or_si256(
      _mm256_sll_epi32(_mm256_maskload_epi32(words, lanes), left),
      _mm256_srl_epi32(_mm256_maskload_epi32(words + 1, lanes), right));
}

inline Parting partSlices(Stretch a, Stretch b, int from, int to) {
  const __m256i numbers = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  for (int w = from; w < to; w += 8) {
    // What lies behind the string is not read.
    const __m256i lanes =
        _mm256_cmpgt_epi32(_mm256_set1_epi32(to - w), numbers);
    const __m256i equal =
        _mm256_cmpeq_epi32(eightWords(a, w, lanes), eightSlices(b, w, lanes));
    const auto found =
        static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(equal))) ^
        0xFF;
    if (found != 0) {
      const int differing = w + std::countr_zero(found);
      return partingOf(slice(a, differing), slice(b, differing), differing);
    }
  }
  return {};
}

#include "sources/compare_strings_steps.h"  // NOLINT(readability-duplicate-include)

}  // namespace avx2
PALVOR_END

PALVOR_AVX512_BEGIN
namespace avx512 {

inline __m512i sixteenSlices(Stretch stretch, int w, __mmask16 lanes) {
  const unsigned* words = stretch.words + w;
  return _mm512_shldv_epi32(_mm512_maskz_loadu_epi32(lanes, words),
                            _mm512_maskz_loadu_epi32(lanes, words + 1),
                            _mm512_set1_epi32(static_cast<int>(stretch.shift)));
}

inline uint32_t laneOf(__m512i numbers, __mmask16 lane) {
  return static_cast<uint32_t>(_mm_cvtsi128_si32(
      _mm512_castsi512_si128(_mm512_maskz_compress_epi32(lane, numbers))));
}

inline Parting partSlices(Stretch a, Stretch b, int from, int to) {
  for (int w = from; w < to; w += 16) {
    // What lies behind the string is not read.
    const auto lanes = static_cast<__mmask16>(
        _bzhi_u32(0xFFFF, static_cast<unsigned>(std::min(to - w, 16))));
    const __m512i x = _mm512_maskz_loadu_epi32(lanes, a.words + w);
    const __m512i y = sixteenSlices(b, w, lanes);
    const __mmask16 found = _mm512_cmpneq_epi32_mask(x, y);
    if (found != 0) {
      return partingOf(laneOf(x, found), laneOf(y, found),
                       w + std::countr_zero(found));
    }
  }
  return {};
}

#include "sources/compare_strings_steps.h"  // NOLINT(readability-duplicate-include)

}  // namespace avx512
PALVOR_END

#endif  // PALVOR_HAS_VERSIONS

auto fastest() {
#if defined(PALVOR_HAS_VERSIONS)
  if (processor() == Processor::kAvx512) return &avx512::compareBehind;
  if (processor() == Processor::kAvx2) return &avx2::compareBehind;
#endif
  return &any::compareBehind;
}

}  // namespace

Comparison (*const compareStrings)(const Suffix& a, const Suffix& b,
                                   int known) = fastest();

Comparison compareWholeStrings(const Suffix& a, const Suffix& b) {
  return any::compareFrom(a, b, 0);
}
