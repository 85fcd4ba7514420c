// Walks of the rows (palvor/order/key_rows.h): what keys tell of them, and
// those that compare suffix by suffix, where prefix words don't tell a suffix's
// row. Compiled once for each target that has vectors.

#if defined(PALVOR_ORDER_ROW_WALK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ROW_WALK_INL_H_
#undef PALVOR_ORDER_ROW_WALK_INL_H_
#else
#define PALVOR_ORDER_ROW_WALK_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/order/cost.h"
#include "palvor/order/front.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_tables.h"
#include "palvor/order/rows-inl.h"
#include "palvor/order/rows_avx512-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

// What walks have done that keys tell, gathered in registers.
struct Walked {
  int64_t comparisons = 0;
  int64_t unchanged = 0;
  int64_t positions = 0;
  int64_t settled = 0;

  // Some rows were compared.
  template <int kRoom>
  HWY_INLINE void compare(const Rows<kRoom>& rows, RowBits<kRoom> compared) {
    const int count = std::popcount(compared);
    comparisons += count;
    settled += count;
    unchanged += std::popcount(compared & rows.unchanged());
  }

  // So many walks have each done this.
  void addTo(Cost& cost, int walks = 1) const {
    cost.comparisons += walks * comparisons;
    cost.unchanged += walks * unchanged;
    cost.positions += walks * positions;
    cost.settled += walks * settled;
  }
};

template <int kRoom>
class RowWalk {
 public:
  using Bits = RowBits<kRoom>;

  // `cursors` are those of all streams. All of them must outlive it.
  RowWalk(Front& front, RowTables& rows, const RowCursor* cursors)
      : front_(front), rows_(rows), cursors_(cursors) {}

  // The state of a listed suffix with this entry.
  HWY_INLINE int64_t stateOf(LcpEntry entry, int64_t suffixBits) const {
    const bool unchanged = entry == cursors_[streamOf(suffixBits)].own;
    return makeState(entry, suffixBits) | (unchanged ? kUnchanged : 0);
  }

  // Finds the head's row by a walk of all others, and counts it. `own` is its
  // new suffix's entry with the suffix emitted last.
  RowMove find(int k, const Suffix& suffix, LcpEntry own);

  // The same for a long suffix that begins with no listed one, and whose key
  // others have: only of those, since keys tell the rest. The rows are in their
  // tables, too.
  HWY_INLINE RowMove findAmongEqualKeys(const Rows<kRoom>& rows, int k,
                                        const Suffix& suffix, LcpEntry own);

  // Walks rows with stream k's suffix from where a move goes, up to `end`, and
  // moves it on. Counts the comparisons, but not the positions.
  void walk(int k, const Suffix& suffix, int end, RowMove& move);

 private:
  Front& front_;
  RowTables& rows_;
  const RowCursor* cursors_;
};

template <int kRoom>
HWY_NOINLINE void RowWalk<kRoom>::walk(int k, const Suffix& suffix, int end,
                                       RowMove& move) {
  Cost& cost = front_.cost;
  int shared = lcpBits(move.entry);
  for (int& row = move.row; row < end; row++) {
    const int64_t state = rows_.states[row];
    const LcpEntry stored = entryOf(state);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    const int i = streamOf(state);
    const Comparison found =
        front_.compare(i, *cursors_[i].current, k, suffix, shared);
    cost.add(found);
    cost.addListed(shared, found.common, (state & kUnchanged) != 0);
    const LcpEntry entry = entryOf(found);
    if (found.after()) {
      move.entry = stored;
      move.changes = true;
      move.nextEntry = entry;
      break;
    }
    move.entry = entry;
    shared = found.common;
  }
}

template <int kRoom>
RowMove RowWalk<kRoom>::find(int k, const Suffix& suffix, LcpEntry own) {
  RowMove move;
  move.entry = own;
  walk(k, suffix, rows_.count, move);
  front_.cost.positions += std::min(move.row, rows_.count - 1);
  return move;
}

template <int kRoom>
HWY_INLINE RowMove RowWalk<kRoom>::findAmongEqualKeys(const Rows<kRoom>& rows,
                                                      int k,
                                                      const Suffix& suffix,
                                                      LcpEntry own) {
  const int64_t key = prefixKey(suffix);
  const Bits all = rowsBelow<kRoom>(rows_.count) & ~Bits{1};
  const Bits below = rows.below(key) & all;
  Walked counted;
  counted.compare(rows, static_cast<Bits>(rows.sharing(key) & below));

  RowMove move;
  move.row = std::popcount(below) + 1;
  move.entry = move.row > 1 ? entryOfKeys(rows_.keys[move.row - 1], key) : own;
  walk(k, suffix, move.row + std::popcount(rows.equal(key) & all), move);
  counted.positions = std::min(move.row, rows_.count - 1);
  counted.addTo(front_.cost);
  return move;
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ROW_WALK_INL_H_
