// The rows of merge/few_streams.cpp, which alone includes this, for processors
// with AVX2: four keys and eight entries at a time. Results are a bit for each
// place; what is said of places without a suffix means nothing.

template <int kRoom>  // 4, 8 or 16 streams
struct Rows {
  static constexpr long kKeys = 4;  // in a group
  static constexpr long kEntries = 8;
  static constexpr int kKeyGroups = kRoom / 4;
  static constexpr int kEntryGroups = (kRoom + 7) / 8;

  static __m256i* keysAt(int group) {
    return reinterpret_cast<__m256i*>(listedKeys + kKeys * group);
  }
  static __m256i* entriesAt(int group) {
    return reinterpret_cast<__m256i*>(listedEntries + kEntries * group);
  }

  // The places of a group of keys whose lanes are all ones.
  static uint32_t placesOf(int group, __m256i lanes) {
    const int found = _mm256_movemask_pd(_mm256_castsi256_pd(lanes));
    return static_cast<uint32_t>(found) << (4 * group);
  }

  // Whose keys are below, or equal to, this one.
  static uint32_t below(int64_t key) {
    const __m256i wanted = _mm256_set1_epi64x(key);
    uint32_t places = 0;
    for (int g = 0; g < kKeyGroups; g++) {
      places |= placesOf(g, _mm256_cmpgt_epi64(wanted, *keysAt(g)));
    }
    return places;
  }

  static uint32_t equal(int64_t key) {
    const __m256i wanted = _mm256_set1_epi64x(key);
    uint32_t places = 0;
    for (int g = 0; g < kKeyGroups; g++) {
      places |= placesOf(g, _mm256_cmpeq_epi64(wanted, *keysAt(g)));
    }
    return places;
  }

  // Whose keys share more bits with this one than their stored lengths say:
  // that many and one. No key shares 64.
  static uint32_t sharing(int64_t key) {
    const __m256i wanted = _mm256_set1_epi64x(key);
    const __m256i ones = _mm256_set1_epi64x(-1);
    const __m128i most = _mm_set1_epi32(63);
    uint32_t places = 0;
    for (int g = 0; g < kKeyGroups; g++) {
      const __m128i entries = _mm_load_si128(
          reinterpret_cast<const __m128i*>(listedEntries + kKeys * g));
      const __m128i others =
          _mm_sub_epi32(most, _mm_min_epi32(most, _mm_srli_epi32(entries, 1)));
      const __m256i leading =
          _mm256_sllv_epi64(ones, _mm256_cvtepi32_epi64(others));
      const __m256i difference =
          _mm256_and_si256(_mm256_xor_si256(*keysAt(g), wanted), leading);
      places |=
          placesOf(g, _mm256_cmpeq_epi64(difference, _mm256_setzero_si256()));
    }
    return places;
  }

  static void move(const Move& move) {
    moveKeys(std::popcount(move.passed), move.key);
    moveEntries(std::popcount(move.passed), move);
  }

  static void moveKeys(int place, int64_t key) {
    const __m256i all = _mm256_set1_epi64x(key);
    const __m256i target = _mm256_set1_epi64x(place);
    __m256i places = _mm256_setr_epi64x(0, 1, 2, 3);
    __m256i keys = *keysAt(0);
    for (int g = 0; g < kKeyGroups; g++) {
      const __m256i next = g + 1 < kKeyGroups ? *keysAt(g + 1) : keys;
      // Each from the lane behind it, the last one from the next group.
      const __m256i up =
          _mm256_permute4x64_epi64(_mm256_blend_epi32(keys, next, 0x03), 0x39);
      const __m256i passed =
          _mm256_blendv_epi8(keys, up, _mm256_cmpgt_epi64(target, places));
      *keysAt(g) =
          _mm256_blendv_epi8(passed, all, _mm256_cmpeq_epi64(target, places));
      places = _mm256_add_epi64(places, _mm256_set1_epi64x(4));
      keys = next;
    }
  }

  static void moveEntries(int place, const Move& move) {
    const __m256i entry = _mm256_set1_epi32(static_cast<int>(move.entry));
    const __m256i nextEntry =
        _mm256_set1_epi32(static_cast<int>(move.nextEntry));
    const __m256i target = _mm256_set1_epi32(place);
    const __m256i changed =
        _mm256_set1_epi32(move.changed != 0 ? place + 1 : -1);
    const __m256i lanesBehind = _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 0);
    __m256i places = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    __m256i entries = *entriesAt(0);
    for (int g = 0; g < kEntryGroups; g++) {
      const __m256i next = g + 1 < kEntryGroups ? *entriesAt(g + 1) : entries;
      const __m256i up = _mm256_permutevar8x32_epi32(
          _mm256_blend_epi32(entries, next, 0x01), lanesBehind);
      __m256i moved =
          _mm256_blendv_epi8(entries, up, _mm256_cmpgt_epi32(target, places));
      moved =
          _mm256_blendv_epi8(moved, entry, _mm256_cmpeq_epi32(target, places));
      *entriesAt(g) = _mm256_blendv_epi8(moved, nextEntry,
                                         _mm256_cmpeq_epi32(changed, places));
      places = _mm256_add_epi32(places, _mm256_set1_epi32(8));
      entries = next;
    }
  }
};
