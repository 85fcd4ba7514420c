// Several numbers at a time, each in a lane, for processors with AVX-512.
// merge/lanes_avx2.h has the same functions for fewer lanes. Both are included
// by merge/blocks.cpp and merge/walk_count.cpp alone, each in a namespace of
// its own, before the code that is written once for all lanes.

// What lanes without a number hold.
constexpr int kMostInt = std::numeric_limits<int>::max();
constexpr int kMostByte = 255;

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

// Numbers of 8 bits, without a sign.
struct Bytes {
  static constexpr int kLanes = 64;
  __m512i lanes;

  static Bytes load(const uint8_t* numbers) {
    return {_mm512_load_si512(numbers)};
  }
  static Bytes all(int number) {
    return {_mm512_set1_epi8(static_cast<char>(number))};
  }

  // With kMostByte in lanes that do not belong to the first `count`, 1 or more.
  Bytes beginning(int count) const {
    const auto most = static_cast<uint32_t>(std::min(count, kLanes));
    return {_mm512_mask_mov_epi8(all(kMostByte).lanes,
                                 _bzhi_u64(~uint64_t{0}, most), lanes)};
  }
  int first() const {
    return _mm_cvtsi128_si32(_mm512_castsi512_si128(lanes)) & 0xFF;
  }
  // For each lane the next one; kMostByte for the last.
  Bytes behind() const {
    const __m512i next = _mm512_alignr_epi64(all(kMostByte).lanes, lanes, 2);
    return {_mm512_alignr_epi8(next, lanes, 1)};
  }
  // For each lane the one that many lanes behind it in its quarter, or
  // kMostByte.
  template <int kBy>
  Bytes upInQuarter() const {
    return {_mm512_alignr_epi8(all(kMostByte).lanes, lanes, kBy)};
  }
  // As far as that many quarters behind.
  template <int kBy>
  Bytes upByQuarters() const {
    return {_mm512_alignr_epi64(all(kMostByte).lanes, lanes, 2 * kBy)};
  }
};

inline Bytes min(Bytes a, Bytes b) {
  return {_mm512_min_epu8(a.lanes, b.lanes)};
}
inline uint64_t isAtMost(Bytes a, Bytes b) {
  return _mm512_cmple_epu8_mask(a.lanes, b.lanes);
}
// For each lane the least of it and those behind it.
inline Bytes leastBehind(Bytes bytes) {
  Bytes least = min(bytes, bytes.upInQuarter<1>());
  least = min(least, least.upInQuarter<2>());
  least = min(least, least.upInQuarter<4>());
  least = min(least, least.upInQuarter<8>());
  const Bytes ofQuarter = {
      _mm512_shuffle_epi8(least.lanes, _mm512_setzero_si512())};
  Bytes ofNext = ofQuarter.upByQuarters<1>();
  ofNext = min(ofNext, ofNext.upByQuarters<1>());
  ofNext = min(ofNext, ofNext.upByQuarters<2>());
  return min(least, ofNext);
}

// Which of kKeysAtOnce keys are below one; a bit for each.
constexpr int kKeysAtOnce = 32;
inline uint64_t keysBelow(const int64_t* keys, int64_t key) {
  const __m512i wanted = _mm512_set1_epi64(key);
  const auto eight = [=](int from) -> uint64_t {
    return _mm512_cmplt_epi64_mask(_mm512_loadu_si512(keys + from), wanted);
  };
  return eight(0) | eight(8) << 8 | eight(16) << 16 | eight(24) << 24;
}
