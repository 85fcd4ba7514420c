// The groups of numbers that the rows of merge/rows_avx512.h consist of.
// Included by merge/few_streams.cpp alone.

// Four numbers, or eight. Half a register is sooner done with.
struct Four {
  using Lanes = __m256i;
  static constexpr int kLanes = 4;
  static constexpr uint32_t kAll = 0xF;
  static Lanes load(const int64_t* p) {
    return _mm256_load_si256(reinterpret_cast<const Lanes*>(p));
  }
  static void store(int64_t* p, Lanes a) {
    _mm256_store_si256(reinterpret_cast<Lanes*>(p), a);
  }
  static Lanes all(int64_t a) { return _mm256_set1_epi64x(a); }
  static int64_t first(Lanes a) {
    return _mm_cvtsi128_si64(_mm256_castsi256_si128(a));
  }
  static Lanes allFirst(Lanes a) {
    return _mm256_broadcastq_epi64(_mm256_castsi256_si128(a));
  }
  static uint32_t less(Lanes a, Lanes b) {
    return _mm256_cmplt_epi64_mask(a, b);
  }
  static uint32_t equal(Lanes a, Lanes b) {
    return _mm256_cmpeq_epi64_mask(a, b);
  }
  static uint32_t test(Lanes a, Lanes b) {
    return _mm256_test_epi64_mask(a, b);
  }
  static Lanes least(Lanes a, Lanes b) { return _mm256_min_epi64(a, b); }
  static Lanes most(Lanes a, Lanes b) { return _mm256_max_epi64(a, b); }
  static Lanes either(Lanes a, Lanes b) { return _mm256_or_si256(a, b); }
  static Lanes both(Lanes a, Lanes b) { return _mm256_and_si256(a, b); }
  // Where a and b start alike, in bits, `to` bits from the right.
  template <int to>
  static Lanes shared(Lanes a, Lanes b) {
    return _mm256_slli_epi64(_mm256_lzcnt_epi64(_mm256_xor_si256(a, b)), to);
  }
  // Each number from the one behind it, the last one from `next`.
  static Lanes up(Lanes a, Lanes next) {
    return _mm256_alignr_epi64(next, a, 1);
  }
  static Lanes choose(Lanes a, uint32_t places, Lanes b) {
    return _mm256_mask_mov_epi64(a, static_cast<__mmask8>(places), b);
  }
  // (a & b) | c.
  static Lanes andOr(Lanes a, Lanes b, Lanes c) {
    return _mm256_ternarylogic_epi64(a, b, c, 0xEA);
  }
};

struct Eight {
  using Lanes = __m512i;
  static constexpr int kLanes = 8;
  static constexpr uint32_t kAll = 0xFF;
  static Lanes load(const int64_t* p) { return _mm512_load_si512(p); }
  static void store(int64_t* p, Lanes a) { _mm512_store_si512(p, a); }
  static Lanes all(int64_t a) { return _mm512_set1_epi64(a); }
  static int64_t first(Lanes a) {
    return _mm_cvtsi128_si64(_mm512_castsi512_si128(a));
  }
  static Lanes allFirst(Lanes a) {
    return _mm512_broadcastq_epi64(_mm512_castsi512_si128(a));
  }
  static uint32_t less(Lanes a, Lanes b) {
    return _mm512_cmplt_epi64_mask(a, b);
  }
  static uint32_t equal(Lanes a, Lanes b) {
    return _mm512_cmpeq_epi64_mask(a, b);
  }
  static uint32_t test(Lanes a, Lanes b) {
    return _mm512_test_epi64_mask(a, b);
  }
  static Lanes least(Lanes a, Lanes b) { return _mm512_min_epi64(a, b); }
  static Lanes most(Lanes a, Lanes b) { return _mm512_max_epi64(a, b); }
  static Lanes either(Lanes a, Lanes b) { return _mm512_or_si512(a, b); }
  static Lanes both(Lanes a, Lanes b) { return _mm512_and_si512(a, b); }
  template <int to>
  static Lanes shared(Lanes a, Lanes b) {
    return _mm512_slli_epi64(_mm512_lzcnt_epi64(_mm512_xor_si512(a, b)), to);
  }
  static Lanes up(Lanes a, Lanes next) {
    return _mm512_alignr_epi64(next, a, 1);
  }
  static Lanes choose(Lanes a, uint32_t places, Lanes b) {
    return _mm512_mask_mov_epi64(a, static_cast<__mmask8>(places), b);
  }
  static Lanes andOr(Lanes a, Lanes b, Lanes c) {
    return _mm512_ternarylogic_epi64(a, b, c, 0xEA);
  }
};
