// Several numbers at a time for processors with AVX2 (merge/lanes_avx512.h).

constexpr int kMostInt = std::numeric_limits<int>::max();
constexpr int kMostByte = 255;

struct Ints {
  static constexpr int kLanes = 8;
  __m256i lanes;

  static Ints load(const void* numbers) {
    return {_mm256_load_si256(static_cast<const __m256i*>(numbers))};
  }
  static Ints all(int number) { return {_mm256_set1_epi32(number)}; }
  static Ints choose(uint32_t which, Ints a, Ints b) {
    const __m256i bits = _mm256_setr_epi32(1, 2, 4, 8, 16, 32, 64, 128);
    const __m256i chosen = _mm256_cmpeq_epi32(
        _mm256_and_si256(all(static_cast<int>(which)).lanes, bits), bits);
    return {_mm256_blendv_epi8(b.lanes, a.lanes, chosen)};
  }

  int first() const { return _mm_cvtsi128_si32(_mm256_castsi256_si128(lanes)); }
  int sum() const {
    __m128i sums = _mm_add_epi32(_mm256_castsi256_si128(lanes),
                                 _mm256_extracti128_si256(lanes, 1));
    sums = _mm_add_epi32(sums, _mm_shuffle_epi32(sums, 0x4E));
    sums = _mm_add_epi32(sums, _mm_shuffle_epi32(sums, 0xB1));
    return _mm_cvtsi128_si32(sums);
  }
  template <int kBits>
  Ints shiftedRight() const {
    return {_mm256_srai_epi32(lanes, kBits)};
  }
  Ints behind() const { return up<1>(); }

  static uint32_t bitsOf(__m256i allOnes) {
    return static_cast<uint32_t>(
        _mm256_movemask_ps(_mm256_castsi256_ps(allOnes)));
  }
  template <int kBy>
  Ints up() const {
    // The upper half, and behind it the largest number.
    const __m256i next =
        _mm256_permute2x128_si256(lanes, all(kMostInt).lanes, 0x21);
    if constexpr (kBy == 4) return {next};
    return {_mm256_alignr_epi8(next, lanes, 4 * (kBy % 4))};
  }
};

inline Ints min(Ints a, Ints b) { return {_mm256_min_epi32(a.lanes, b.lanes)}; }
inline Ints max(Ints a, Ints b) { return {_mm256_max_epi32(a.lanes, b.lanes)}; }
inline Ints operator+(Ints a, Ints b) {
  return {_mm256_add_epi32(a.lanes, b.lanes)};
}
inline Ints operator-(Ints a, Ints b) {
  return {_mm256_sub_epi32(a.lanes, b.lanes)};
}
inline Ints operator&(Ints a, Ints b) {
  return {_mm256_and_si256(a.lanes, b.lanes)};
}
inline uint32_t isAbove(Ints a, Ints b) {
  return Ints::bitsOf(_mm256_cmpgt_epi32(a.lanes, b.lanes));
}
inline uint32_t isEqual(Ints a, Ints b) {
  return Ints::bitsOf(_mm256_cmpeq_epi32(a.lanes, b.lanes));
}

inline Ints leastBehind(Ints ints) {
  Ints least = min(ints, ints.up<1>());
  least = min(least, least.up<2>());
  return min(least, least.up<4>());
}

struct Bytes {
  static constexpr int kLanes = 32;
  __m256i lanes;

  static Bytes load(const uint8_t* numbers) {
    return {_mm256_load_si256(reinterpret_cast<const __m256i*>(numbers))};
  }
  static Bytes all(int number) {
    return {_mm256_set1_epi8(static_cast<char>(number))};
  }

  Bytes beginning(int count) const {
    const __m256i numbers = _mm256_setr_epi8(
        0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19,
        20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31);
    const __m256i last = all(std::min(count, kLanes) - 1).lanes;
    return {_mm256_or_si256(lanes, _mm256_cmpgt_epi8(numbers, last))};
  }
  int first() const {
    return _mm_cvtsi128_si32(_mm256_castsi256_si128(lanes)) & 0xFF;
  }
  Bytes upByHalf() const {
    return {_mm256_permute2x128_si256(lanes, all(kMostByte).lanes, 0x21)};
  }
  Bytes behind() const {
    return {_mm256_alignr_epi8(upByHalf().lanes, lanes, 1)};
  }
  template <int kBy>
  Bytes upInHalf() const {
    return {_mm256_alignr_epi8(all(kMostByte).lanes, lanes, kBy)};
  }
};

inline Bytes min(Bytes a, Bytes b) {
  return {_mm256_min_epu8(a.lanes, b.lanes)};
}
inline uint64_t isAtMost(Bytes a, Bytes b) {
  const __m256i isLeast = _mm256_cmpeq_epi8(min(a, b).lanes, a.lanes);
  return static_cast<uint32_t>(_mm256_movemask_epi8(isLeast));
}
inline Bytes leastBehind(Bytes bytes) {
  Bytes least = min(bytes, bytes.upInHalf<1>());
  least = min(least, least.upInHalf<2>());
  least = min(least, least.upInHalf<4>());
  least = min(least, least.upInHalf<8>());
  const Bytes ofHalf = {
      _mm256_shuffle_epi8(least.lanes, _mm256_setzero_si256())};
  return min(least, ofHalf.upByHalf());
}

constexpr int kKeysAtOnce = 16;
inline uint64_t keysBelow(const int64_t* keys, int64_t key) {
  const __m256i wanted = _mm256_set1_epi64x(key);
  const auto four = [=](int from) {
    const __m256i below = _mm256_cmpgt_epi64(
        wanted,
        _mm256_loadu_si256(reinterpret_cast<const __m256i*>(keys + from)));
    return static_cast<uint32_t>(
        _mm256_movemask_pd(_mm256_castsi256_pd(below)));
  };
  return four(0) | four(4) << 4 | four(8) << 8 | four(12) << 12;
}
