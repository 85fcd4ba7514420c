// Walks of the rows (palvor/order/key_rows.h) that compare suffix by suffix:
// where prefix words don't tell a suffix's row. Compiled once for each target
// that has vectors.

#if defined(PALVOR_ORDER_ROW_WALK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ROW_WALK_INL_H_
#undef PALVOR_ORDER_ROW_WALK_INL_H_
#else
#define PALVOR_ORDER_ROW_WALK_INL_H_
#endif

#include <hwy/highway.h>

#include <cstdint>

#include "palvor/order/front.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_tables.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

template <int kRoom>
class RowWalk {
 public:
  using Bits = RowBits<kRoom>;

  // `cursors` are those of all streams. All of them must outlive it.
  RowWalk(Front& front, const RowTables& rows, const RowCursor* cursors)
      : front_(front), rows_(rows), cursors_(cursors) {}

  // The state of a listed suffix with this entry.
  HWY_INLINE int64_t stateOf(LcpEntry entry, int64_t suffixBits) const {
    const bool unchanged = entry == cursors_[streamOf(suffixBits)].own;
    return makeState(entry, suffixBits) | (unchanged ? kUnchanged : 0);
  }

  // Finds the head's row by a walk of all others, and counts it. `own` is its
  // new suffix's entry with the suffix emitted last.
  RowMove find(int k, const Suffix& suffix, LcpEntry own);

  // Walks the rows that have the key of stream k's suffix, from where a move
  // goes up to `end`, and moves it on. Returns those that were compared, which
  // are not counted yet.
  Bits compareEqualKeys(int k, const Suffix& suffix, int end, RowMove& move);

 private:
  Front& front_;
  const RowTables& rows_;
  const RowCursor* cursors_;
};

template <int kRoom>
HWY_INLINE typename RowWalk<kRoom>::Bits RowWalk<kRoom>::compareEqualKeys(
    int k, const Suffix& suffix, int end, RowMove& move) {
  Cost& cost = front_.cost;
  Bits compared = 0;
  int shared = lcpBits(move.entry);
  for (int& row = move.row; row < end; row++) {
    const LcpEntry stored = entryOf(rows_.states[row]);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    compared |= Bits{1} << row;
    const int i = streamOf(rows_.states[row]);
    const Comparison found =
        front_.compare(i, *cursors_[i].current, k, suffix, shared);
    cost.add(found);
    cost.found64 += found.common >= 64 ? 1 : 0;
    cost.found64More += found.common >= shared + 64 ? 1 : 0;
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
  return compared;
}

template <int kRoom>
HWY_NOINLINE RowMove RowWalk<kRoom>::find(int k, const Suffix& suffix,
                                          LcpEntry own) {
  RowMove move;
  move.entry = own;
  int shared = lcpBits(own);
  for (; move.row < rows_.count; move.row++) {
    front_.cost.positions++;
    const LcpEntry stored = entryOf(rows_.states[move.row]);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    const int i = streamOf(rows_.states[move.row]);
    const Comparison found =
        front_.compare(i, *cursors_[i].current, k, suffix, shared);
    front_.cost.add(found);
    front_.cost.addListed(shared, found.common, cursors_[i].own == stored);
    const LcpEntry between = entryOf(found);
    if (found.after()) {
      move.changes = true;
      move.nextEntry = between;
      move.entry = stored;
      return move;
    }
    move.entry = between;
    shared = found.common;
  }
  return move;
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ROW_WALK_INL_H_
