// The rows of merge/few_streams.cpp, which alone includes this, for processors
// with AVX-512: eight keys and sixteen entries at a time. Results are a bit for
// each place; what is said of places without a suffix means nothing.

template <int kRoom>  // 8 or 16 streams
struct Rows {
  static constexpr bool kTwo = kRoom > 8;
  static constexpr long kKeys = 8;  // in a group

  static __m512i keysOf(int group) {
    return _mm512_load_si512(listedKeys + kKeys * group);
  }

  // The stored lengths.
  static __m512i lengths() {
    return _mm512_srli_epi32(_mm512_load_si512(listedEntries), 1);
  }

  // Whose keys are below, or equal to, this one.
  static uint32_t below(int64_t key) {
    const __m512i wanted = _mm512_set1_epi64(key);
    const uint32_t first = _mm512_cmplt_epi64_mask(keysOf(0), wanted);
    if constexpr (!kTwo) return first;
    const uint32_t second = _mm512_cmplt_epi64_mask(keysOf(1), wanted);
    return first | second << 8;
  }

  static uint32_t equal(int64_t key) {
    const __m512i wanted = _mm512_set1_epi64(key);
    const uint32_t first = _mm512_cmpeq_epi64_mask(keysOf(0), wanted);
    if constexpr (!kTwo) return first;
    const uint32_t second = _mm512_cmpeq_epi64_mask(keysOf(1), wanted);
    return first | second << 8;
  }

  // Whose keys share more bits with this one than their stored lengths say.
  static uint32_t sharing(int64_t key) {
    const __m512i wanted = _mm512_set1_epi64(key);
    const auto sharedBits = [wanted](int group) {
      return _mm512_cvtepi64_epi32(
          _mm512_lzcnt_epi64(_mm512_xor_si512(keysOf(group), wanted)));
    };
    __m512i shared = _mm512_castsi256_si512(sharedBits(0));
    if constexpr (kTwo) shared = _mm512_inserti64x4(shared, sharedBits(1), 1);
    return _mm512_cmpgt_epi32_mask(shared, lengths());
  }

  static void move(const Move& move) {
    const uint32_t place = move.passed + 1;
    const __m512i key = _mm512_set1_epi64(move.key);
    for (int g = 0; g < (kTwo ? 2 : 1); g++) {
      const __m512i keys = keysOf(g);
      const __m512i next = kTwo && g == 0 ? keysOf(1) : keys;
      const __m512i up = _mm512_mask_alignr_epi64(
          keys, static_cast<__mmask8>(move.passed >> 8 * g), next, keys, 1);
      _mm512_store_si512(listedKeys + kKeys * g,
                         _mm512_mask_mov_epi64(
                             up, static_cast<__mmask8>(place >> 8 * g), key));
    }

    __m512i entries = _mm512_load_si512(listedEntries);
    entries = _mm512_mask_alignr_epi32(
        entries, static_cast<__mmask16>(move.passed), entries, entries, 1);
    entries = _mm512_mask_set1_epi32(entries, static_cast<__mmask16>(place),
                                     static_cast<int>(move.entry));
    entries =
        _mm512_mask_set1_epi32(entries, static_cast<__mmask16>(move.changed),
                               static_cast<int>(move.nextEntry));
    _mm512_store_si512(listedEntries, entries);
  }
};

// Half a register is enough for four streams, and sooner done with.
template <>
struct Rows<4> {
  static __m256i keys() {
    return _mm256_load_si256(reinterpret_cast<const __m256i*>(listedKeys));
  }
  static __m128i entries() {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(listedEntries));
  }
  static uint32_t below(int64_t key) {
    return _mm256_cmplt_epi64_mask(keys(), _mm256_set1_epi64x(key));
  }
  static uint32_t equal(int64_t key) {
    return _mm256_cmpeq_epi64_mask(keys(), _mm256_set1_epi64x(key));
  }
  static uint32_t sharing(int64_t key) {
    return _mm_cmpgt_epi32_mask(
        _mm256_cvtepi64_epi32(_mm256_lzcnt_epi64(
            _mm256_xor_si256(keys(), _mm256_set1_epi64x(key)))),
        _mm_srli_epi32(entries(), 1));
  }
  static void move(const Move& move) {
    const auto passed = static_cast<__mmask8>(move.passed);
    const auto place = static_cast<__mmask8>(move.passed + 1);
    const __m256i old = keys();
    __m256i moved = _mm256_mask_alignr_epi64(old, passed, old, old, 1);
    moved = _mm256_mask_set1_epi64(moved, place, move.key);
    _mm256_store_si256(reinterpret_cast<__m256i*>(listedKeys), moved);
    __m128i e = entries();
    e = _mm_mask_alignr_epi32(e, passed, e, e, 1);
    e = _mm_mask_set1_epi32(e, place, static_cast<int>(move.entry));
    e = _mm_mask_set1_epi32(e, static_cast<__mmask8>(move.changed),
                            static_cast<int>(move.nextEntry));
    _mm_store_si128(reinterpret_cast<__m128i*>(listedEntries), e);
  }
};
