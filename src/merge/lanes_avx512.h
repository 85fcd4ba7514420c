// Several numbers at a time, each in a lane, for processors with AVX-512.
// merge/lanes_avx2.h has the same functions for fewer lanes. Both are included
// by merge/walk_count.cpp alone, each in a namespace of its own, before the
// code that is written once for all lanes.

// 32-bit numbers. Bit i of a result, or of `which`, stands for lane i.
struct Ints {
  static constexpr int kLanes = 16;
  __m512i lanes;

  // From an address that is a multiple of the lanes' size.
  static Ints load(const void* numbers) { return {_mm512_load_si512(numbers)}; }
  static Ints all(int number) { return {_mm512_set1_epi32(number)}; }
  // The lanes of a where the bit is set, else those of b.
  static Ints choose(uint32_t which, Ints a, Ints b) {
    return {
        _mm512_mask_mov_epi32(b.lanes, static_cast<__mmask16>(which), a.lanes)};
  }

  int first() const { return _mm_cvtsi128_si32(_mm512_castsi512_si128(lanes)); }
  int sum() const { return _mm512_reduce_add_epi32(lanes); }
  // The sign is kept.
  template <int kBits>
  Ints shiftedRight() const {
    return {_mm512_srai_epi32(lanes, kBits)};
  }
  // For each lane the next one; kMostInt for the last.
  Ints behind() const { return up<1>(); }

  // For each lane the one that many lanes behind it, or kMostInt.
  template <int kBy>
  Ints up() const {
    return {_mm512_alignr_epi32(all(kMostInt).lanes, lanes, kBy)};
  }
};

inline Ints min(Ints a, Ints b) { return {_mm512_min_epi32(a.lanes, b.lanes)}; }
inline Ints max(Ints a, Ints b) { return {_mm512_max_epi32(a.lanes, b.lanes)}; }
// Sums and differences wrap around.
inline Ints operator+(Ints a, Ints b) {
  return {_mm512_add_epi32(a.lanes, b.lanes)};
}
inline Ints operator-(Ints a, Ints b) {
  return {_mm512_sub_epi32(a.lanes, b.lanes)};
}
inline Ints operator&(Ints a, Ints b) {
  return {_mm512_and_si512(a.lanes, b.lanes)};
}
inline uint32_t isAbove(Ints a, Ints b) {
  return _mm512_cmpgt_epi32_mask(a.lanes, b.lanes);
}
inline uint32_t isEqual(Ints a, Ints b) {
  return _mm512_cmpeq_epi32_mask(a.lanes, b.lanes);
}

// For each lane the least of it and those behind it.
inline Ints leastBehind(Ints ints) {
  Ints least = min(ints, ints.up<1>());
  least = min(least, least.up<2>());
  least = min(least, least.up<4>());
  return min(least, least.up<8>());
}
