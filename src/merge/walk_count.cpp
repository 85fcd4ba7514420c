#include "merge/walk_count.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "sources/compare.h"
#include "support/processor.h"

#if defined(PALVOR_HAS_VERSIONS)
#include <immintrin.h>
#endif

namespace {

int countOneByOne(WalkCount& count, const Block& block, int end, int bits,
                  int common) {
  for (int index = end - 1; index >= block.begin; index--) {
    const int stored = lcpBits(block.entry[index]);
    if (stored > common) continue;
    countComparison(count, block, index, bits, stored, common);
    common = stored;
  }
  return common;
}

#if defined(PALVOR_HAS_VERSIONS)

PALVOR_AVX512_BEGIN

constexpr int kSixteen = 16;

// Each lane's least lane at or behind it.
inline __m512i leastBehind(__m512i lanes) {
  const __m512i most = _mm512_set1_epi32(std::numeric_limits<int>::max());
  lanes = _mm512_min_epi32(lanes, _mm512_alignr_epi32(most, lanes, 1));
  lanes = _mm512_min_epi32(lanes, _mm512_alignr_epi32(most, lanes, 2));
  lanes = _mm512_min_epi32(lanes, _mm512_alignr_epi32(most, lanes, 4));
  return _mm512_min_epi32(lanes, _mm512_alignr_epi32(most, lanes, 8));
}

int countBySixteen(WalkCount& count, const Block& block, int end, int bits,
                   int common) {
  const __m512i most = _mm512_set1_epi32(std::numeric_limits<int>::max());
  const __m512i n64 = _mm512_set1_epi32(64);
  const __m512i own = _mm512_set1_epi32(bits);
  __m512i words = _mm512_setzero_si512();
  for (int from = (end - 1) & -kSixteen; from > block.begin - kSixteen;
       from -= kSixteen) {
    const __mmask16 used = static_cast<__mmask16>(
        _bzhi_u32(0xFFFF, static_cast<unsigned>(std::min(end - from, 16))) &
        (0xFFFFU << std::max(block.begin - from, 0)));
    const __m512i entries = _mm512_load_si512(block.entry + from);
    const __m512i stored =
        _mm512_mask_srli_epi32(most, used, entries, 1);
    const __m512i sofar = _mm512_set1_epi32(common);
    if (_mm512_cmple_epi32_mask(stored, sofar) == 0) continue;

    const __m512i least = leastBehind(stored);
    const __m512i found =
        _mm512_min_epi32(_mm512_alignr_epi32(most, least, 1), sofar);
    const __mmask16 compared = _mm512_cmple_epi32_mask(stored, found);
    const __mmask16 unchanged = _mm512_mask_cmpeq_epi32_mask(
        compared, entries, _mm512_load_si512(block.own + from));
    count.comparisons += std::popcount(compared);
    count.unchanged += std::popcount(unchanged);
    common = std::min(
        common, _mm_cvtsi128_si32(_mm512_castsi512_si128(least)));

    const __mmask16 found64 = _mm512_mask_cmpge_epi32_mask(compared, found, n64);
    if (found64 == 0) {
      count.settled += std::popcount(compared);
      continue;
    }
    const __mmask16 more = _mm512_mask_cmpge_epi32_mask(
        found64, _mm512_sub_epi32(found, stored), n64);
    count.found64 += std::popcount(found64);
    count.found64More += std::popcount(more);
    const __m512i shorter =
        _mm512_min_epi32(own, _mm512_load_si512(block.bits + from));
    // Long ones, or what is known is more than the prefix words.
    const __mmask16 read =
        found64 & (_mm512_cmpge_epi32_mask(stored, n64) |
                   _mm512_cmpgt_epi32_mask(shorter, n64));
    count.settled += std::popcount(compared) - std::popcount(read);
    const __m512i known = _mm512_max_epi32(stored, n64);
    const __m512i start = _mm512_slli_epi32(_mm512_load_si512(block.pos + from), 1);
    const __m512i skip = _mm512_sub_epi32(
        known, _mm512_and_si512(_mm512_add_epi32(known, start),
                                _mm512_set1_epi32(31)));
    const __m512i last = _mm512_min_epi32(
        found, _mm512_sub_epi32(shorter, _mm512_set1_epi32(1)));
    const __m512i examined = _mm512_max_epi32(
        _mm512_add_epi32(_mm512_srai_epi32(_mm512_sub_epi32(last, skip), 5),
                         _mm512_set1_epi32(1)),
        _mm512_setzero_si512());
    words = _mm512_mask_add_epi32(words, read, words, examined);
  }
  count.words += _mm512_reduce_add_epi32(words);
  return common;
}

PALVOR_END

#endif  // PALVOR_HAS_VERSIONS

auto fastest() {
#if defined(PALVOR_HAS_VERSIONS)
  if (processor() == Processor::kAvx512) return &countBySixteen;
#endif
  return &countOneByOne;
}

}  // namespace

void countComparison(WalkCount& count, const Block& block, int index, int bits,
                     int known, int common) {
  count.comparisons++;
  count.unchanged += block.entry[index] == block.own[index] ? 1 : 0;
  if (common < 64) {
    count.settled++;
    return;
  }
  count.found64++;
  count.found64More += common >= known + 64 ? 1 : 0;
  const int shorter = std::min(bits, block.bits[index]);
  if (isSettledByPrefix(shorter, known, common)) {
    count.settled++;
  } else {
    count.words += wordsExamined(block.pos[index], shorter, known, common);
  }
}

int (*const countInBlock)(WalkCount& count, const Block& block, int end,
                          int bits, int common) = fastest();
