// Rows of equal prefix words, put into order all at once by their anchors.
// Compiled once for each target that has vectors.
//
// Strains stand at the same place of their text most of the time: then the
// listed suffixes of a group of streams have one key. Where each of them goes
// in that group matters when the first of them is to leave, and not before. So
// they stand there as they came, until then.
//
// Suffixes of equal anchors are ordered by their second keys
// (palvor/text/stretches.h), and what neighbours share follows from these. What
// a walk of the list would have done each time that one came is counted
// afterwards (palvor/order/tied_walks-inl.h).

#if defined(PALVOR_ORDER_TIED_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_TIED_ROWS_INL_H_
#undef PALVOR_ORDER_TIED_ROWS_INL_H_
#else
#define PALVOR_ORDER_TIED_ROWS_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/order/front.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_tables.h"
#include "palvor/order/row_walk-inl.h"
#include "palvor/order/tied_walks-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

template <int kRoom>
class TiedRows {
 public:
  // `cursors` are those of all streams. All of them must outlive it.
  TiedRows(Front& front, RowTables& rows, const RowCursor* cursors,
           RowWalk<kRoom>& walk)
      : cost_(front.cost),
        anchorsAhead_(front.compare.anchors),
        text_(front.text()),
        rows_(rows),
        cursors_(cursors),
        walk_(walk) {}

  // Stream k's suffix comes to the others of its key, that wait for their
  // order.
  //   outside  the entry that is stored with the first of them
  //   isLast   whether no other row is behind them
  HWY_INLINE void come(int k, LcpEntry outside, bool isLast) {
    arrivals_[k] = {outside, isLast};
  }

  // Sees to it that the first of some rows, which wait with stream k's suffix,
  // says of its entry whether it is the own one of that which will be the
  // first. If it can't be told which that is, the rows are settled, and it is
  // false.
  bool knowsFirst(int k, int first, int count);

  // Puts those of one key that wait for it into order, from the row `first` on.
  // Counts what a walk would have done each time that one came, but for what
  // keys tell.
  void settle(int first);
  // All that wait.
  void settleAll();
  // What is left to count.
  void finish() { walks_.flush(cost_); }

 private:
  // What is known of a suffix that stands among others as it came.
  struct Arrival {
    LcpEntry outside;
    bool isLast;
  };

  static constexpr int kLeastShared = AnchorsAhead::kLeastShared;

  using Tag = hn::CappedTag<uint64_t, 8>;
  static constexpr int kLanes = static_cast<int>(hn::MaxLanes(Tag()));

  // A bit for each row, from the first one on.
  struct Others {
    uint64_t below = 0;
    uint64_t alike = 0;
  };

  int lookUp(int first, int count);
  int settleByAnchors(int first, int count);
  void settleByComparing(int first, int row);
  int firstOf(int first, int count, int k);
  HWY_INLINE Others othersOf(int r, int count) const;
  HWY_INLINE LcpEntry entryOfNeighbours(int i) const;

  Cost& cost_;
  AnchorsAhead& anchorsAhead_;
  const Collection& text_;
  RowTables& rows_;
  const RowCursor* cursors_;
  RowWalk<kRoom>& walk_;
  Arrival arrivals_[kMostRows] = {};

  // Of those that were looked up, as they came.
  uint32_t anchor_ = Axis::kNowhere;
  alignas(64) uint64_t keys_[kRoom + kLanes];
  // In order.
  struct Placed {
    uint64_t key;
    int stream;
    int bits;  // its length
  };
  Placed placed_[kRoom];
  LcpEntry entries_[kRoom];  // with the one before
  TiedWalks walks_;
};

// Looks up the second keys of rows that have the same anchor. How many do, from
// the first one on.
template <int kRoom>
int TiedRows<kRoom>::lookUp(int first, int count) {
  anchor_ = Axis::kNowhere;
  for (int r = 0; r < count; r++) {
    const int k = streamOf(rows_.states[first + r]);
    const Anchor anchor = anchorsAhead_.of(k, *cursors_[k].current);
    if (r == 0) anchor_ = anchor.position;
    if (anchor.position != anchor_ || anchor_ == Axis::kNowhere) return r;
    keys_[r] = anchor.key;
  }
  return count;
}

// Which of `count` keys are below, or equal to, one.
template <int kRoom>
HWY_INLINE typename TiedRows<kRoom>::Others TiedRows<kRoom>::othersOf(
    int r, int count) const {
  const Tag tag;
  const auto key = hn::Set(tag, keys_[r]);
  Others found;
  for (int g = 0; g < count; g += kLanes) {
    const auto keys = hn::Load(tag, keys_ + g);
    found.below |= bitsOf(tag, hn::Lt(keys, key)) << g;
    found.alike |= bitsOf(tag, hn::Eq(keys, key)) << g;
  }
  const uint64_t all = ~uint64_t{0} >> (64 - count);
  return {found.below & all, found.alike & all};
}

// The entry of one in order with the one before.
template <int kRoom>
HWY_INLINE LcpEntry TiedRows<kRoom>::entryOfNeighbours(int i) const {
  const Placed& a = placed_[i - 1];
  const Placed& b = placed_[i];
  const int shorter = std::min(a.bits, b.bits);
  const int common = anchorsAhead_.sharedBits(a.key, b.key, shorter);
  return fittingEntry(common, common < shorter);
}

// Puts `count` rows, 2 or more, into order as far as anchors tell that. Returns
// how many rows are in order now, from the first one on: 1 or more.
template <int kRoom>
int TiedRows<kRoom>::settleByAnchors(int first, int count) {
  const int settled = lookUp(first, count);
  if (settled < 2) return 1;
  int64_t* const states = rows_.states + first;
  walks_.begin(settled, cost_);
  for (int r = 0; r < settled; r++) {
    // Behind those that are equal, as they came earlier.
    const Others others = othersOf(r, settled);
    const uint64_t earlier = others.alike & ((uint64_t{1} << r) - 1);
    if (earlier != 0 && !anchorsAhead_.stretches().equalIfAlike(keys_[r])) {
      return 1;
    }
    const int rank = std::popcount(others.below) + std::popcount(earlier);
    const int k = streamOf(states[r]);
    const Suffix& suffix = *cursors_[k].current;
    placed_[rank] = {keys_[r], k, text_.remainingBits(suffix)};
    walks_.put(rank, {r, suffix.pos, cursors_[k].own, arrivals_[k].outside,
                      arrivals_[k].isLast});
  }
  for (int i = 1; i < settled; i++) {
    entries_[i] = entryOfNeighbours(i);
    if (lcpBits(entries_[i]) < kLeastShared) return 1;
    walks_.putEntry(i, entries_[i]);
  }
  walks_.end(settled);

  const int start = placed_[0].stream;
  const LcpEntry entry = entryOf(states[0]);
  states[0] = makeState(entry, kLong << kLengthShift | start) |
              (entry == cursors_[start].own ? kUnchanged : 0);
  for (int i = 1; i < settled; i++) {
    // Its own entry told another key.
    states[i] =
        makeState(entries_[i], kLong << kLengthShift | placed_[i].stream);
  }
  return settled;
}

// Which stream's suffix is the first in order of those that stand in `count`
// rows as they came, and one of stream k that comes now. -1 if anchors don't
// tell.
template <int kRoom>
int TiedRows<kRoom>::firstOf(int first, int count, int k) {
  const Anchor anchor = anchorsAhead_.of(k, *cursors_[k].current);
  if (lookUp(first, count) < count) return -1;
  if (anchor.position != anchor_) return -1;
  keys_[count] = anchor.key;
  const uint64_t* const least = std::min_element(keys_, keys_ + count + 1);
  const auto r = static_cast<int>(least - keys_);
  const bool isAlone = std::popcount(othersOf(r, count + 1).alike) == 1;
  if (!isAlone && !anchorsAhead_.stretches().equalIfAlike(*least)) return -1;
  return r == count ? k : streamOf(rows_.states[first + r]);
}

template <int kRoom>
HWY_NOINLINE bool TiedRows<kRoom>::knowsFirst(int k, int first, int count) {
  int64_t& state = rows_.states[first];
  const LcpEntry entry = entryOf(state);
  if ((cursors_[k].own == entry) == ((state & kUnchanged) != 0)) return true;
  const int i = firstOf(first, count, k);
  if (i < 0) {
    settle(first);
    return false;
  }
  state &= ~kUnchanged;
  if (cursors_[i].own == entry) state |= kUnchanged;
  return true;
}

template <int kRoom>
HWY_NOINLINE void TiedRows<kRoom>::settle(int first) {
  int end = first + 1;
  while (end < rows_.count && rows_.keys[end] == rows_.keys[first]) end++;
  rows_.states[first] &= ~kTied;
  int row = first + settleByAnchors(first, end - first);
  for (; row < end; row++) settleByComparing(first, row);
}

// Puts the suffix of a row, which came when those from `first` on, which have
// its key and are in order, were there, among these.
template <int kRoom>
void TiedRows<kRoom>::settleByComparing(int first, int row) {
  int64_t* const states = rows_.states;
  const int k = streamOf(states[row]);
  const auto putEntry = [&](int i, LcpEntry entry) {
    states[i] = walk_.stateOf(entry, states[i] & (kSuffixBits & ~kTied));
  };
  // It may be another one now.
  const LcpEntry outside = entryOf(states[first]);
  putEntry(first, arrivals_[k].outside);
  RowMove move;
  move.row = first;
  move.entry = arrivals_[k].outside;
  walk_.walk(k, *cursors_[k].current, row, move);
  cost_.positions += move.row - first;
  if (arrivals_[k].isLast && move.row == row) cost_.positions--;

  const int64_t suffixBits = states[row];
  std::copy_backward(states + move.row, states + row, states + row + 1);
  states[move.row] = suffixBits;
  putEntry(move.row, move.entry);
  if (move.changes) putEntry(move.row + 1, move.nextEntry);
  putEntry(first, outside);
}

template <int kRoom>
void TiedRows<kRoom>::settleAll() {
  for (int row = 0; row < rows_.count; row++) {
    if ((rows_.states[row] & kTied) != 0) settle(row);
  }
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_TIED_ROWS_INL_H_
