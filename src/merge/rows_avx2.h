// The rows of merge/few_streams.cpp, which alone includes this, for processors
// with AVX2: four numbers at a time, in their tables. Results are a bit for
// each place; what is said of places without a suffix means nothing.

template <int kRoom>  // 4, or a multiple of 8 streams
struct Rows {
  using Places = PlacesOf<kRoom>;

  // All places before one, which may be the end.
  static Places placesBelow(int place) {
    return place == 0 ? 0 : static_cast<Places>(~uint64_t{0} >> (64 - place));
  }

  void load() {}
  void store() const {}
  static int64_t firstKey() { return listedKeys[0]; }
  static int64_t firstState() { return listedStates[0]; }
  static int64_t secondKey() { return listedKeys[1]; }
  static int64_t secondState() { return listedStates[1]; }

  // Whose keys are below, or equal to, this one.
  static Places below(int64_t key) {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      places |= placesOf(g, _mm256_cmpgt_epi64(all(key), at(listedKeys, g)));
    }
    return places;
  }
  static Places equal(int64_t key) {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      places |= placesOf(g, _mm256_cmpeq_epi64(all(key), at(listedKeys, g)));
    }
    return places;
  }

  // Whose keys share more bits with this one than their stored lengths say:
  // that many and one. No key shares 64.
  static Places sharing(int64_t key) {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      const __m256i lengths =
          _mm256_srli_epi64(at(listedStates, g), kCommonShift);
      // With a length above 63 no bit is left to differ, but 63 of them are
      // never all that two keys share.
      const __m256i leading = _mm256_sllv_epi64(
          all(-1), _mm256_sub_epi64(all(63), least(lengths, all(63))));
      const __m256i difference = _mm256_and_si256(
          _mm256_xor_si256(at(listedKeys, g), all(key)), leading);
      places |=
          placesOf(g, _mm256_cmpeq_epi64(difference, _mm256_setzero_si256()));
    }
    return places;
  }

  // Whose suffixes are short, and this key begins with them.
  static Places beginnings(int64_t key) {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      const __m256i length = _mm256_and_si256(
          _mm256_srli_epi64(at(listedStates, g), kLengthShift), all(kLong));
      const __m256i leading =
          _mm256_sllv_epi64(all(-1), _mm256_sub_epi64(all(64), length));
      const __m256i difference = _mm256_and_si256(
          _mm256_xor_si256(at(listedKeys, g), all(key)), leading);
      places |= placesOf(
          g, _mm256_and_si256(
                 _mm256_cmpeq_epi64(difference, _mm256_setzero_si256()),
                 _mm256_cmpgt_epi64(all(64), length)));
    }
    return places;
  }

  // Whose entries are what LOCP holds.
  static Places unchanged() {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      // To the sign.
      places |= placesOf(g, _mm256_slli_epi64(at(listedStates, g), 32));
    }
    return places;
  }

  // Moves the head to the place of its new key, which is above the last one and
  // equals no other, so that it tells the entries. `suffixBits` go into its
  // state.
  static void moveByKey(int64_t key, int64_t suffixBits) {
    const Places lower = below(key);
    const int place = std::popcount(lower) - 1;
    const Places changed = sharing(key) & (lower + 1);
    const LcpEntry own = entryOfKeys(listedKeys[0], key);
    const LcpEntry entry = entryOfKeys(listedKeys[place], key);
    const int64_t unchanged = entry == own ? kUnchanged : 0;
    const int64_t state = makeState(entry, suffixBits) | unchanged;
    const int64_t behind = makeState(entryOfKeys(listedKeys[place + 1], key),
                                     listedStates[place + 1] & kSuffixBits);
    moveRow(listedStates, place, state, changed != 0 ? place + 1 : kRoom,
            behind);
    moveRow(listedKeys, place, key, kRoom, 0);
  }

  // Moves the head behind the `passed`, with its new key and state. The suffix
  // at the place `changed`, if any, has another state, too.
  static void move(Places passed, int64_t key, int64_t state, Places changed,
                   int64_t changedState) {
    const int place = std::popcount(passed);
    moveRow(listedKeys, place, key, kRoom, 0);
    moveRow(listedStates, place, state, changed != 0 ? place + 1 : kRoom,
            changedState);
  }

 private:
  static constexpr long kLanes = 4;
  static constexpr int kGroups = kRoom / 4;

  static __m256i all(int64_t number) { return _mm256_set1_epi64x(number); }
  static __m256i least(__m256i a, __m256i b) {
    return _mm256_blendv_epi8(a, b, _mm256_cmpgt_epi64(a, b));
  }
  static __m256i* groupOf(int64_t* row, int group) {
    return reinterpret_cast<__m256i*>(row + kLanes * group);
  }
  static __m256i at(int64_t* row, int group) {
    return _mm256_load_si256(groupOf(row, group));
  }

  // The places of a group of lanes that are negative.
  static Places placesOf(int group, __m256i lanes) {
    const int found = _mm256_movemask_pd(_mm256_castsi256_pd(lanes));
    return static_cast<Places>(found) << (4 * group);
  }

  // Moves the numbers before a place up by one, and puts one there, and another
  // one at the place `changed`, if that is below kRoom.
  [[gnu::always_inline]] static void moveRow(int64_t* row, int place,
                                             int64_t number, int changed,
                                             int64_t changedNumber) {
    __m256i places = _mm256_setr_epi64x(0, 1, 2, 3);
    __m256i numbers = at(row, 0);
    for (int g = 0; g < kGroups; g++) {
      const __m256i next = g + 1 < kGroups ? at(row, g + 1) : numbers;
      // Each from the lane behind it, the last one from the next group.
      const __m256i up = _mm256_permute4x64_epi64(
          _mm256_blend_epi32(numbers, next, 0x03), 0x39);
      __m256i moved = _mm256_blendv_epi8(
          numbers, up, _mm256_cmpgt_epi64(all(place), places));
      moved = _mm256_blendv_epi8(moved, all(number),
                                 _mm256_cmpeq_epi64(all(place), places));
      moved = _mm256_blendv_epi8(moved, all(changedNumber),
                                 _mm256_cmpeq_epi64(all(changed), places));
      _mm256_store_si256(groupOf(row, g), moved);
      places = _mm256_add_epi64(places, all(4));
      numbers = next;
    }
  }
};
