// Suffixes that come to others of their prefix words, and wait with them for
// their order (palvor/order/tied_rows-inl.h). Compiled once for each target
// that has vectors.

#if defined(PALVOR_ORDER_TIED_ARRIVALS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_TIED_ARRIVALS_INL_H_
#undef PALVOR_ORDER_TIED_ARRIVALS_INL_H_
#else
#define PALVOR_ORDER_TIED_ARRIVALS_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/order/front.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_tables.h"
#include "palvor/order/row_walk-inl.h"
#include "palvor/order/tied_rows-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

template <int kRoom>
class TiedArrivals {
 public:
  using Bits = RowBits<kRoom>;

  // `cursors` are those of all streams. All of them must outlive it.
  TiedArrivals(Front& front, RowTables& rows, RowCursor* cursors,
               TiedRows<kRoom>& tiedRows)
      : cost_(front.cost),
        strings_(front.text().data()),
        rows_(rows),
        cursors_(cursors),
        tiedRows_(tiedRows) {}

  // Whether suffixes may begin to wait from now on. Not if entries are read,
  // which may claim what the strings do not say.
  void allow(bool mayBegin) { mayBegin_ = mayBegin; }

  // Moves the head's stream k behind those of its key, the rows `equal`, where
  // it waits for its order, if they do so themselves, or there is only one.
  // False if it can't wait: then nothing is done, but that these may have been
  // settled. What a walk does on its way to them, the keys tell.
  //   own  its entry, as keys tell it: its key is above the last one
  HWY_INLINE bool wait(Rows<kRoom>& rows, int k, int64_t key, LcpEntry own,
                       Bits equal, Walked& counted);

  // Strains that leave together mostly come together, too. So the next to
  // leave, as many as have the key of the one that left last, and are followed
  // in their streams by suffixes of the key of the one that has just come to
  // wait, do so at once: what keys tell of each is the same. Takes them to
  // `suffixes`, and their entries, unless null, to `entries`, `room` at most.
  // Returns how many. The rows are in their tables.
  HWY_NOINLINE int followAlike(int64_t key, Suffix* suffixes, LcpEntry* entries,
                               int room);

 private:
  static constexpr int64_t stateOf(int k) {
    return makeState(kTiedEntry, kTied | kLong << kLengthShift | k);
  }

  // The rows that a walk compares with a suffix of this key on its way to the
  // first one that has it.
  static HWY_INLINE Bits comparedBefore(const Rows<kRoom>& rows, int64_t key,
                                        int first) {
    return rows.sharing(key) & rowsBelow<kRoom>(first) & ~Bits{1};
  }

  Cost& cost_;
  const PackedString* strings_;
  RowTables& rows_;
  RowCursor* cursors_;
  TiedRows<kRoom>& tiedRows_;
  bool mayBegin_ = false;
};

template <int kRoom>
HWY_INLINE bool TiedArrivals<kRoom>::wait(Rows<kRoom>& rows, int k, int64_t key,
                                          LcpEntry own, Bits equal,
                                          Walked& counted) {
  const int first = std::countr_zero(equal);
  const int end = first + std::popcount(equal);
  const int64_t state = rows.stateAt(first);
  if ((state & kTied) == 0) {
    if (end > first + 1 || !mayBegin_) return false;
    rows.mark(Bits{1} << first, kTied);
  }
  const LcpEntry entry = entryOf(state);
  cursors_[k].own = own;
  if ((own == entry) != ((state & kUnchanged) != 0)) {
    rows.store();
    const bool known = tiedRows_.knowsFirst(k, first, end - first);
    rows.load();
    if (!known) return false;
  }
  tiedRows_.come(k, entry, end == rows_.count);
  counted.compare(rows, comparedBefore(rows, key, first));
  counted.settled++;  // the own entry
  counted.positions += first;
  rows.move(rowsBelow<kRoom>(end - 1), key, stateOf(k));
  return true;
}

template <int kRoom>
HWY_NOINLINE int TiedArrivals<kRoom>::followAlike(int64_t key, Suffix* suffixes,
                                                  LcpEntry* entries, int room) {
  const int64_t lastKey = rows_.keys[0];
  Rows<kRoom> rows(rows_);
  rows.load();
  const Bits equal = rows.equal(key) & rowsBelow<kRoom>(rows_.count);
  const int first = std::countr_zero(equal);
  const int end = first + std::popcount(equal);
  const LcpEntry own = entryOfKeys(lastKey, key);
  const LcpEntry outside = entryOf(rows_.states[first]);
  const bool isUnchanged = (rows_.states[first] & kUnchanged) != 0;
  // Each of them might be the first, then (TiedRows::knowsFirst).
  if ((own == outside) != isUnchanged) return 0;
  Walked each;
  each.settled = 1;  // the own entry
  each.compare(rows, comparedBefore(rows, key, first));

  int count = 0;
  int64_t states[kRoom];
  for (; count < room && rows_.keys[count] == lastKey; count++) {
    const int64_t state = rows_.states[count];
    const int k = streamOf(state);
    RowCursor& cursor = cursors_[k];
    const Suffix* const next = cursor.current + 1;
    if (cursor.upcomingKey != key || next >= cursor.lastTested) break;
    if (strings_[inputNumber(*next)].bits - 2 * next->pos < 64) break;
    if (entries != nullptr) entries[count] = entryOf(state);
    suffixes[count] = *cursor.current;
    cursor.current = next;
    cursor.upcomingKey = prefixKey(next[1]);
    cursor.own = own;
    tiedRows_.come(k, outside, end == rows_.count);
    states[count] = stateOf(k);
  }

  const auto replace = [&](int64_t* numbers) {
    std::copy(numbers + count, numbers + end, numbers);
    return numbers + end - count;
  };
  std::fill_n(replace(rows_.keys), count, key);
  std::copy_n(states, count, replace(rows_.states));

  each.addTo(cost_, count);
  // One row less to pass each time.
  cost_.positions += count * first - count * (count - 1) / 2;
  return count;
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_TIED_ARRIVALS_INL_H_
