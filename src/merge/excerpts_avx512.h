// The steps of merge/excerpts.h for processors with AVX-512. Included by
// merge/few_streams.cpp alone.

// Words `shift` bits on from the first `kExcerptWords`. Reads one word more.
[[gnu::always_inline]] inline void cutWords(uint32_t* cut,
                                            const unsigned* words,
                                            unsigned shift) {
  const __m512i bits = _mm512_set1_epi32(static_cast<int>(shift));
  for (int w = 0; w < kExcerptWords; w += 16) {
    _mm512_store_si512(
        cut + w, _mm512_shldv_epi32(_mm512_loadu_si512(words + w),
                                    _mm512_loadu_si512(words + w + 1), bits));
  }
}

// The first word in which two excerpts differ, or kExcerptWords.
[[gnu::always_inline]] inline int firstDifference(const uint32_t* a,
                                                  const uint32_t* b) {
  uint64_t early = 0;
  uint64_t late = 0;
  for (int w = 0; w < 64; w += 16) {
    early |= static_cast<uint64_t>(_mm512_cmpneq_epi32_mask(
                 _mm512_load_si512(a + w), _mm512_load_si512(b + w)))
             << w;
    late |= static_cast<uint64_t>(_mm512_cmpneq_epi32_mask(
                _mm512_load_si512(a + 64 + w), _mm512_load_si512(b + 64 + w)))
            << w;
  }
  return early != 0 ? std::countr_zero(early) : 64 + std::countr_zero(late);
}
