#include "sources/first_difference.h"

#include <algorithm>
#include <bit>

#include "support/intrinsics.h"
#include "support/processor.h"

namespace {

// The 64 bits of slices w and w + 1. Reads words w to w + 2.
inline uint64_t twoSlices(Stretch stretch, int w) {
  const unsigned* words = stretch.words + w;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return pair << stretch.shift |
         static_cast<uint64_t>(words[2]) << stretch.shift >> 32;
}

int differenceByPairs(Stretch a, Stretch b, int from, int to) {
  int w = from;
  for (; w + 1 < to; w += 2) {
    const uint64_t difference = twoSlices(a, w) ^ twoSlices(b, w);
    if (difference != 0) return w + (difference >> 32 == 0 ? 1 : 0);
  }
  return w < to && a.slice(w) == b.slice(w) ? to : w;
}

#if defined(PALVOR_HAS_VERSIONS)

PALVOR_AVX2_BEGIN

constexpr int kEight = 8;

inline __m256i eightSlices(Stretch stretch, int w, __m256i lanes) {
  const int* words = reinterpret_cast<const int*>(stretch.words + w);
  const __m128i left = _mm_cvtsi32_si128(static_cast<int>(stretch.shift));
  const __m128i right = _mm_cvtsi32_si128(32 - static_cast<int>(stretch.shift));
  return _mm256_or_si256(
      _mm256_sll_epi32(_mm256_maskload_epi32(words, lanes), left),
      _mm256_srl_epi32(_mm256_maskload_epi32(words + 1, lanes), right));
}

int differenceByEight(Stretch a, Stretch b, int from, int to) {
  const __m256i numbers = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  for (int w = from; w < to; w += kEight) {
    const __m256i lanes =
        _mm256_cmpgt_epi32(_mm256_set1_epi32(to - w), numbers);
    const __m256i equal =
        _mm256_cmpeq_epi32(eightSlices(a, w, lanes), eightSlices(b, w, lanes));
    const auto found =
        static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(equal)));
    if (found != 0xFF) return w + std::countr_one(found);
  }
  return to;
}

PALVOR_END
PALVOR_AVX512_BEGIN

constexpr int kSixteen = 16;

// Slices w to w + 15.
inline __m512i sixteenSlices(Stretch stretch, int w) {
  const unsigned* words = stretch.words + w;
  return _mm512_shldv_epi32(_mm512_loadu_si512(words),
                            _mm512_loadu_si512(words + 1),
                            _mm512_set1_epi32(static_cast<int>(stretch.shift)));
}

// Those of them that `lanes` names. What lies behind the string is not read.
inline __m512i someSlices(Stretch stretch, int w, __mmask16 lanes) {
  const unsigned* words = stretch.words + w;
  return _mm512_shldv_epi32(_mm512_maskz_loadu_epi32(lanes, words),
                            _mm512_maskz_loadu_epi32(lanes, words + 1),
                            _mm512_set1_epi32(static_cast<int>(stretch.shift)));
}

int differenceBySixteen(Stretch a, Stretch b, int from, int to) {
  int w = from;
  for (; w + kSixteen <= to; w += kSixteen) {
    const __mmask16 found =
        _mm512_cmpneq_epi32_mask(sixteenSlices(a, w), sixteenSlices(b, w));
    if (found != 0) return w + std::countr_zero(found);
  }
  if (w == to) return to;
  const auto lanes = static_cast<__mmask16>((1U << (to - w)) - 1);
  const __mmask16 found = _mm512_cmpneq_epi32_mask(someSlices(a, w, lanes),
                                                   someSlices(b, w, lanes));
  return found != 0 ? w + std::countr_zero(found) : to;
}

PALVOR_END

#endif  // PALVOR_HAS_VERSIONS

auto fastest() {
#if defined(PALVOR_HAS_VERSIONS)
  if (processor() == Processor::kAvx512) return &differenceBySixteen;
  if (processor() == Processor::kAvx2) return &differenceByEight;
#endif
  return &differenceByPairs;
}

}  // namespace

int (*const firstDifference)(Stretch a, Stretch b, int from,
                             int to) = fastest();
