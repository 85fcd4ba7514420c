// The rows for vectors of any kind but AVX-512: a few numbers at a time, in
// their tables. Results are a bit for each row; what is said of rows without a
// suffix means nothing.

#if defined(PALVOR_ORDER_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ROWS_INL_H_
#undef PALVOR_ORDER_ROWS_INL_H_
#else
#define PALVOR_ORDER_ROWS_INL_H_
#endif

#include <hwy/highway.h>

#include <bit>
#include <cstdint>

#include "palvor/order/row_tables.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS && !PALVOR_HAS_AVX512

template <int kRoom>  // 4, or a multiple of 8 streams
class Rows {
 public:
  using Bits = RowBits<kRoom>;

  explicit Rows(RowTables& tables) : tables_(tables) {}

  HWY_INLINE void load() {}
  HWY_INLINE void store() const {}
  HWY_INLINE int64_t firstKey() const { return tables_.keys[0]; }
  HWY_INLINE int64_t firstState() const { return tables_.states[0]; }
  HWY_INLINE int64_t secondKey() const { return tables_.keys[1]; }
  HWY_INLINE int64_t secondState() const { return tables_.states[1]; }

  // Whose keys are below, or equal to, this one.
  HWY_INLINE Bits below(int64_t key) const {
    return rowsWhere([&](int g)
                         PALVOR_ATTR { return hn::Lt(keysAt(g), all(key)); });
  }
  HWY_INLINE Bits equal(int64_t key) const {
    return rowsWhere([&](int g)
                         PALVOR_ATTR { return hn::Eq(keysAt(g), all(key)); });
  }

  // Whose keys share more bits with this one than their stored lengths say:
  // that many and one. No key shares 64.
  HWY_INLINE Bits sharing(int64_t key) const {
    return rowsWhere([&](int g) PALVOR_ATTR {
      const Lanes lengths = shifted<kCommonShift>(statesAt(g));
      // With a length above 63 no bit is left to differ, but 63 of them are
      // never all that two keys share.
      const Lanes leading =
          hn::Shl(all(-1), hn::Sub(all(63), hn::Min(lengths, all(63))));
      return hn::Eq(hn::And(hn::Xor(keysAt(g), all(key)), leading), all(0));
    });
  }

  // Whose suffixes are short, and this key begins with them.
  HWY_INLINE Bits beginnings(int64_t key) const {
    return rowsWhere([&](int g) PALVOR_ATTR {
      const Lanes length =
          hn::And(shifted<kLengthShift>(statesAt(g)), all(kLong));
      const Lanes leading =
          hn::Shl(all(-1), hn::Sub(all(64), hn::Min(length, all(64))));
      const Lanes differing = hn::And(hn::Xor(keysAt(g), all(key)), leading);
      return hn::And(hn::Eq(differing, all(0)), hn::Lt(length, all(64)));
    });
  }

  // Whose entries are their suffixes' own.
  HWY_INLINE Bits unchanged() const {
    return rowsWhere([&](int g) PALVOR_ATTR {
      return hn::TestBit(statesAt(g), all(kUnchanged));
    });
  }

  // Moves the head to the row of its new key, which is above the last one and
  // equals no other, so that it tells the entries. `suffixBits` go into its
  // state.
  HWY_INLINE void moveByKey(int64_t key, int64_t suffixBits) {
    const Bits lower = below(key);
    const int row = std::popcount(lower) - 1;
    const Bits changed = sharing(key) & (lower + 1);
    const LcpEntry own = entryOfKeys(tables_.keys[0], key);
    const LcpEntry entry = entryOfKeys(tables_.keys[row], key);
    const int64_t unchangedBit = entry == own ? kUnchanged : 0;
    const int64_t state = makeState(entry, suffixBits) | unchangedBit;
    const int64_t behind = makeState(entryOfKeys(tables_.keys[row + 1], key),
                                     tables_.states[row + 1] & kSuffixBits);
    moveNumbers(tables_.states, row, state, changed != 0 ? row + 1 : kRoom,
                behind);
    moveNumbers(tables_.keys, row, key, kRoom, 0);
  }

  // Moves the head behind the `passed`, with its new key and state.
  HWY_INLINE void move(Bits passed, int64_t key, int64_t state) {
    move(passed, key, state, 0, 0);
  }
  // The same, and the suffix in the row `changed`, if any, has another state.
  HWY_INLINE void move(Bits passed, int64_t key, int64_t state, Bits changed,
                       int64_t changedState) {
    const int row = std::popcount(passed);
    moveNumbers(tables_.keys, row, key, kRoom, 0);
    moveNumbers(tables_.states, row, state, changed != 0 ? row + 1 : kRoom,
                changedState);
  }

  // Sets a bit of some states.
  HWY_INLINE void mark(Bits rows, int64_t bit) {
    for (; rows != 0; rows &= rows - 1) {
      tables_.states[std::countr_zero(rows)] |= bit;
    }
  }

  // The state of a row.
  HWY_INLINE int64_t stateAt(int row) const { return tables_.states[row]; }

 private:
  using Tag = hn::CappedTag<int64_t, 4>;
  using Lanes = hn::Vec<Tag>;
  static constexpr int kLanes = static_cast<int>(hn::MaxLanes(Tag()));
  static constexpr int kGroups = kRoom / kLanes;

  static HWY_INLINE Lanes all(int64_t number) { return hn::Set(Tag(), number); }
  HWY_INLINE Lanes keysAt(int g) const {
    return hn::Load(Tag(), tables_.keys + kLanes * g);
  }
  HWY_INLINE Lanes statesAt(int g) const {
    return hn::Load(Tag(), tables_.states + kLanes * g);
  }

  // To the right; none is negative.
  template <int kBits>
  static HWY_INLINE Lanes shifted(Lanes numbers) {
    const hn::RebindToUnsigned<Tag> tag;
    return hn::BitCast(Tag(), hn::ShiftRight<kBits>(hn::BitCast(tag, numbers)));
  }

  // The rows of which a group's mask tells that it is so.
  template <class MaskOf>
  static HWY_INLINE Bits rowsWhere(MaskOf maskOf) {
    Bits rows = 0;
    for (int g = 0; g < kGroups; g++) {
      rows |= static_cast<Bits>(bitsOf(Tag(), maskOf(g))) << (kLanes * g);
    }
    return rows;
  }

  // Each number from the lane behind it, the last one from the next group.
  static HWY_INLINE Lanes upFrom(Lanes numbers, Lanes next) {
    const Tag tag;
    if constexpr (kLanes == 2) {
      return hn::CombineShiftRightBytes<8>(tag, next, numbers);
    } else {
      return hn::CombineShiftRightBytes<8>(
          tag, hn::ConcatLowerUpper(tag, next, numbers), numbers);
    }
  }

  // Moves the numbers before a row up by one, and puts one there, and another
  // one in the row `changed`, if that is below kRoom.
  static HWY_INLINE void moveNumbers(int64_t* table, int row, int64_t number,
                                     int changed, int64_t changedNumber) {
    const Tag tag;
    Lanes rows = hn::Iota(tag, 0);
    Lanes numbers = hn::Load(tag, table);
    for (int g = 0; g < kGroups; g++) {
      const Lanes next =
          g + 1 < kGroups ? hn::Load(tag, table + kLanes * (g + 1)) : numbers;
      Lanes moved = hn::IfThenElse(hn::Lt(rows, all(row)),
                                   upFrom(numbers, next), numbers);
      moved = hn::IfThenElse(hn::Eq(rows, all(row)), all(number), moved);
      moved =
          hn::IfThenElse(hn::Eq(rows, all(changed)), all(changedNumber), moved);
      hn::Store(moved, tag, table + kLanes * g);
      rows = hn::Add(rows, all(kLanes));
      numbers = next;
    }
  }

  RowTables& tables_;
};

#endif  // PALVOR_HAS_VECTORS && !PALVOR_HAS_AVX512

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ROWS_INL_H_
