// The steps of merge/excerpts.h for processors with AVX2. Included by
// merge/few_streams.cpp alone.

inline __m256i eightWords(const uint32_t* words) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

// Words `shift` bits on from the first `kExcerptWords`. Reads one word more.
[[gnu::always_inline]] inline void cutWords(uint32_t* cut,
                                            const unsigned* words,
                                            unsigned shift) {
  const __m128i left = _mm_cvtsi32_si128(static_cast<int>(shift));
  const __m128i right = _mm_cvtsi32_si128(32 - static_cast<int>(shift));
  for (int w = 0; w < kExcerptWords; w += 8) {
    _mm256_store_si256(
        reinterpret_cast<__m256i*>(cut + w),
        _mm256_or_si256(_mm256_sll_epi32(eightWords(words + w), left),
                        _mm256_srl_epi32(eightWords(words + w + 1), right)));
  }
}

// The first word in which two excerpts differ, or kExcerptWords.
[[gnu::always_inline]] inline int firstDifference(const uint32_t* a,
                                                  const uint32_t* b) {
  const auto equal = [&](int w) {
    const __m256i lanes =
        _mm256_cmpeq_epi32(eightWords(a + w), eightWords(b + w));
    return static_cast<uint64_t>(
        static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(lanes))));
  };
  uint64_t early = 0;
  uint64_t late = 0;
  for (int w = 0; w < 64; w += 8) {
    early |= equal(w) << w;
    late |= equal(64 + w) << w;
  }
  return early != ~uint64_t{0} ? std::countr_one(early)
                               : 64 + std::countr_one(late);
}
