// The rows for AVX-512, held in registers: by hand where Highway has no
// instruction for it (leading zeros, one lane to all, all by one lane).
// Results are a bit for each row; what is said of rows without a suffix means
// nothing.

#if defined(PALVOR_ORDER_ROWS_AVX512_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ROWS_AVX512_INL_H_
#undef PALVOR_ORDER_ROWS_AVX512_INL_H_
#else
#define PALVOR_ORDER_ROWS_AVX512_INL_H_
#endif

#include <hwy/highway.h>

#include <cstdint>
#include <type_traits>

#include "palvor/order/row_tables.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_AVX512

// A group of numbers: four, or eight. Half a register is sooner done with.
template <int kCount>
struct NumberGroup {
  using Tag = hn::FixedTag<int64_t, kCount>;
  using Lanes = hn::Vec<Tag>;
  static constexpr uint32_t kAll = (1U << kCount) - 1;

  static HWY_INLINE Lanes all(int64_t a) { return hn::Set(Tag(), a); }
  static HWY_INLINE Lanes allFirst(Lanes a) {
    if constexpr (kCount == 4) {
      return Lanes{_mm256_broadcastq_epi64(_mm256_castsi256_si128(a.raw))};
    } else {
      return Lanes{_mm512_broadcastq_epi64(_mm512_castsi512_si128(a.raw))};
    }
  }

  static HWY_INLINE uint32_t less(Lanes a, Lanes b) { return hn::Lt(a, b).raw; }
  static HWY_INLINE uint32_t equal(Lanes a, Lanes b) {
    return hn::Eq(a, b).raw;
  }
  static HWY_INLINE uint32_t test(Lanes a, Lanes b) {
    return hn::TestBit(a, b).raw;
  }
  // Those of b at some places, those of a elsewhere.
  static HWY_INLINE Lanes choose(Lanes a, uint32_t places, Lanes b) {
    hn::Mask<Tag> mask;
    mask.raw = static_cast<decltype(mask.raw)>(places);
    return hn::IfThenElse(mask, b, a);
  }

  // Where a and b start alike, in bits, `kTo` bits from the right.
  template <int kTo>
  static HWY_INLINE Lanes shared(Lanes a, Lanes b) {
    const Lanes differing = hn::Xor(a, b);
    if constexpr (kCount == 4) {
      return hn::ShiftLeft<kTo>(Lanes{_mm256_lzcnt_epi64(differing.raw)});
    } else {
      return hn::ShiftLeft<kTo>(Lanes{_mm512_lzcnt_epi64(differing.raw)});
    }
  }
  // Each number from the one behind it, the last one from `next`.
  static HWY_INLINE Lanes up(Lanes a, Lanes next) {
    if constexpr (kCount == 4) {
      return Lanes{_mm256_alignr_epi64(next.raw, a.raw, 1)};
    } else {
      return Lanes{_mm512_alignr_epi64(next.raw, a.raw, 1)};
    }
  }
};

template <int kRoom>  // 4, or a multiple of 8 streams
class Rows {
 public:
  using Bits = RowBits<kRoom>;

  explicit Rows(RowTables& tables) : tables_(tables) {}

  // From the tables, and back.
  HWY_INLINE void load() {
    for (int g = 0; g < kGroups; g++) {
      keys_[g] = hn::Load(Tag(), tables_.keys + kLanes * g);
      states_[g] = hn::Load(Tag(), tables_.states + kLanes * g);
    }
  }
  HWY_INLINE void store() const {
    for (int g = 0; g < kGroups; g++) {
      hn::Store(keys_[g], Tag(), tables_.keys + kLanes * g);
      hn::Store(states_[g], Tag(), tables_.states + kLanes * g);
    }
  }

  HWY_INLINE int64_t firstKey() const { return hn::GetLane(keys_[0]); }
  HWY_INLINE int64_t firstState() const { return hn::GetLane(states_[0]); }
  HWY_INLINE int64_t secondKey() const { return hn::GetLane(keysUp(0)); }
  HWY_INLINE int64_t secondState() const {
    return hn::GetLane(Group::up(states_[0], states_[0]));
  }

  // Whose keys are below, or equal to, this one.
  HWY_INLINE Bits below(int64_t key) const {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      rows |= rowsOf(g, Group::less(keys_[g], Group::all(key)));
    }
    return rows;
  }
  HWY_INLINE Bits equal(int64_t key) const {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      rows |= rowsOf(g, Group::equal(keys_[g], Group::all(key)));
    }
    return rows;
  }

  // Whose keys share more bits with this one than their stored lengths say.
  HWY_INLINE Bits sharing(int64_t key) const {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      const Lanes bits =
          Group::template shared<kCommonShift>(keys_[g], Group::all(key));
      rows |= rowsOf(g, Group::less(states_[g], bits));
    }
    return rows;
  }

  // Whose suffixes are short, and this key begins with them.
  HWY_INLINE Bits beginnings(int64_t key) const {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      const Lanes bits =
          Group::template shared<kLengthShift>(keys_[g], Group::all(key));
      const Lanes length =
          hn::And(states_[g], Group::all(kLong << kLengthShift));
      rows |= rowsOf(g, ~Group::less(bits, length) & Group::kAll);
    }
    return rows;
  }

  // Whose entries are their suffixes' own.
  HWY_INLINE Bits unchanged() const {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      rows |= rowsOf(g, Group::test(states_[g], Group::all(kUnchanged)));
    }
    return rows;
  }

  // Moves the head to the row of its new key, which is above the last one and
  // equals no other, so that it tells the entries. `suffixBits` go into its
  // state.
  HWY_INLINE void moveByKey(int64_t key, int64_t suffixBits) {
    const Lanes wanted = Group::all(key);
    Lanes own{};
    for (int g = 0; g < kGroups; g++) {
      const bool last = g + 1 == kGroups;
      const Lanes bits = Group::template shared<kCommonShift>(keys_[g], wanted);
      const Lanes entries = hn::Or(bits, Group::all(makeState(1, 0)));
      if (g == 0) own = Group::allFirst(entries);
      // What it would be in each row, and what each would be behind it.
      Lanes moved = hn::Or(entries, Group::all(suffixBits));
      moved = Group::choose(moved, Group::equal(entries, own),
                            hn::Or(moved, Group::all(kUnchanged)));
      const Lanes behind =
          hn::OrAnd(entries, states_[g], Group::all(kSuffixBits));

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
      keys_[g] = hn::Min(up, hn::Max(keys_[g], wanted));
    }
  }

  // Moves the head behind the `passed`, with its new key and state.
  HWY_INLINE void move(Bits passed, int64_t key, int64_t state) {
    const Bits row = passed + 1;
    for (int g = 0; g < kGroups; g++) {
      const int next = g + 1 == kGroups ? g : g + 1;
      keys_[g] = choose(keys_[g], passed, g, Group::up(keys_[g], keys_[next]));
      keys_[g] = choose(keys_[g], row, g, Group::all(key));
      states_[g] =
          choose(states_[g], passed, g, Group::up(states_[g], states_[next]));
      states_[g] = choose(states_[g], row, g, Group::all(state));
    }
  }
  // The same, and the suffix in the row `changed`, if any, has another state.
  HWY_INLINE void move(Bits passed, int64_t key, int64_t state, Bits changed,
                       int64_t changedState) {
    move(passed, key, state);
    for (int g = 0; g < kGroups; g++) {
      states_[g] = choose(states_[g], changed, g, Group::all(changedState));
    }
  }

  // Sets a bit of some states.
  HWY_INLINE void mark(Bits rows, int64_t bit) {
    for (int g = 0; g < kGroups; g++) {
      states_[g] =
          choose(states_[g], rows, g, hn::Or(states_[g], Group::all(bit)));
    }
  }

  // The state of a row.
  HWY_INLINE int64_t stateAt(int row) const {
    for (int g = 0; g < kGroups; g++) {
      hn::Store(states_[g], Tag(), tables_.states + kLanes * g);
    }
    return tables_.states[row];
  }

 private:
  static constexpr int kLanes = kRoom <= 4 ? 4 : 8;
  static constexpr int kGroups = kRoom / kLanes;
  using Group = NumberGroup<kLanes>;
  using Tag = typename Group::Tag;
  using Lanes = typename Group::Lanes;

  static HWY_INLINE Lanes choose(Lanes a, Bits rows, int g, Lanes b) {
    return Group::choose(a, static_cast<uint32_t>(rows >> (kLanes * g)), b);
  }

  // The rows of some lanes of a group.
  static HWY_INLINE Bits rowsOf(int g, uint32_t lanes) {
    return static_cast<Bits>(outOfMasks(lanes)) << (kLanes * g);
  }

  // Each key of a group from the row behind it.
  HWY_INLINE Lanes keysUp(int g) const {
    return Group::up(keys_[g],
                     g + 1 == kGroups ? Group::all(kLargestKey) : keys_[g + 1]);
  }

  RowTables& tables_;
  Lanes keys_[kGroups];
  Lanes states_[kGroups];
};

#endif  // PALVOR_HAS_AVX512

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ROWS_AVX512_INL_H_
