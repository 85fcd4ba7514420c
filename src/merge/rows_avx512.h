// The rows of merge/few_streams.cpp, which alone includes this, for processors
// with AVX-512: groups of numbers (merge/groups_avx512.h), held in registers.
// Results are a bit for each place; what is said of places without a suffix
// means nothing.

template <int kRoom>  // 4, or a multiple of 8 streams
class Rows {
 public:
  using Places = PlacesOf<kRoom>;

  // All places before one, which may be the end.
  static Places placesBelow(int place) {
    return place == 0 ? 0 : static_cast<Places>(~uint64_t{0} >> (64 - place));
  }

  // From the tables, and back.
  void load() {
    for (int g = 0; g < kGroups; g++) {
      keys_[g] = Group::load(listedKeys + kLanes * g);
      states_[g] = Group::load(listedStates + kLanes * g);
    }
  }
  void store() const {
    for (int g = 0; g < kGroups; g++) {
      Group::store(listedKeys + kLanes * g, keys_[g]);
      Group::store(listedStates + kLanes * g, states_[g]);
    }
  }

  int64_t firstKey() const { return Group::first(keys_[0]); }
  int64_t firstState() const { return Group::first(states_[0]); }
  int64_t secondKey() const { return Group::first(keysUp(0)); }
  int64_t secondState() const {
    return Group::first(Group::up(states_[0], states_[0]));
  }

  // Whose keys are below, or equal to, this one.
  Places below(int64_t key) const {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      places |= placesOf(g, Group::less(keys_[g], Group::all(key)));
    }
    return places;
  }
  Places equal(int64_t key) const {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      places |= placesOf(g, Group::equal(keys_[g], Group::all(key)));
    }
    return places;
  }

  // Whose keys share more bits with this one than their stored lengths say.
  Places sharing(int64_t key) const {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      const Lanes bits =
          Group::template shared<kCommonShift>(keys_[g], Group::all(key));
      places |= placesOf(g, Group::less(states_[g], bits));
    }
    return places;
  }

  // Whose suffixes are short, and this key begins with them.
  Places beginnings(int64_t key) const {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      const Lanes bits =
          Group::template shared<kLengthShift>(keys_[g], Group::all(key));
      const Lanes length =
          Group::both(states_[g], Group::all(kLong << kLengthShift));
      places |= placesOf(g, ~Group::less(bits, length) & Group::kAll);
    }
    return places;
  }

  // Whose entries are what LOCP holds.
  Places unchanged() const {
    Places places = 0;
    for (int g = 0; g < kGroups; g++) {
      places |= placesOf(g, Group::test(states_[g], Group::all(kUnchanged)));
    }
    return places;
  }

  // Moves the head to the place of its new key, which is above the last one and
  // equals no other, so that it tells the entries. `suffixBits` go into its
  // state.
  void moveByKey(int64_t key, int64_t suffixBits) {
    const Lanes wanted = Group::all(key);
    Lanes own{};
    for (int g = 0; g < kGroups; g++) {
      const bool last = g + 1 == kGroups;
      const Lanes bits = Group::template shared<kCommonShift>(keys_[g], wanted);
      const Lanes entries = Group::either(bits, Group::all(makeState(1, 0)));
      if (g == 0) own = Group::allFirst(entries);
      // What it would be at each place, and what each would be behind it.
      Lanes moved = Group::either(entries, Group::all(suffixBits));
      moved = Group::choose(moved, Group::equal(entries, own),
                            Group::either(moved, Group::all(kUnchanged)));
      const Lanes behind =
          Group::andOr(states_[g], Group::all(kSuffixBits), entries);

      const Lanes up = keysUp(g);
      const uint32_t below = Group::less(keys_[g], wanted);
      const uint32_t passed = Group::less(up, wanted);
      const uint32_t changed = Group::less(states_[g], bits) & ~below;
      Lanes states = Group::choose(states_[g], changed, behind);
      states = Group::choose(states, below, moved);
      states_[g] = Group::choose(
          states, passed,
          Group::up(states_[g], last ? states_[g] : states_[g + 1]));
      // All of them are in order.
      keys_[g] = Group::least(up, Group::most(keys_[g], wanted));
    }
  }

  // Moves the head behind the `passed`, with its new key and state. The suffix
  // at the place `changed`, if any, has another state, too.
  void move(Places passed, int64_t key, int64_t state, Places changed,
            int64_t changedState) {
    const Places place = passed + 1;
    for (int g = 0; g < kGroups; g++) {
      const int next = g + 1 == kGroups ? g : g + 1;
      const long from = kLanes * g;
      keys_[g] = Group::choose(keys_[g], static_cast<uint32_t>(passed >> from),
                               Group::up(keys_[g], keys_[next]));
      keys_[g] = Group::choose(keys_[g], static_cast<uint32_t>(place >> from),
                               Group::all(key));
      states_[g] =
          Group::choose(states_[g], static_cast<uint32_t>(passed >> from),
                        Group::up(states_[g], states_[next]));
      states_[g] = Group::choose(
          states_[g], static_cast<uint32_t>(place >> from), Group::all(state));
      states_[g] =
          Group::choose(states_[g], static_cast<uint32_t>(changed >> from),
                        Group::all(changedState));
    }
  }

 private:
  using Group = std::conditional_t<kRoom <= 4, Four, Eight>;
  using Lanes = typename Group::Lanes;
  static constexpr long kLanes = Group::kLanes;
  static constexpr int kGroups = kRoom / Group::kLanes;

  // The places of some lanes of a group.
  static Places placesOf(int g, uint32_t lanes) {
    return static_cast<Places>(lanes) << kLanes * g;
  }

  // Each key of a group from the place behind it.
  Lanes keysUp(int g) const {
    return Group::up(keys_[g],
                     g + 1 == kGroups ? Group::all(kLargestKey) : keys_[g + 1]);
  }

  Lanes keys_[kGroups];
  Lanes states_[kGroups];
};
