// The hot path: the merge of up to 64 streams by rows
// (palvor/order/key_rows.h). Compiled once for each target that has vectors.

#if defined(PALVOR_ORDER_ROW_MERGE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ROW_MERGE_INL_H_
#undef PALVOR_ORDER_ROW_MERGE_INL_H_
#else
#define PALVOR_ORDER_ROW_MERGE_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/order/key_rows.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_walk-inl.h"
#include "palvor/order/rows-inl.h"
#include "palvor/order/rows_avx512-inl.h"
#include "palvor/order/tied_arrivals-inl.h"
#include "palvor/order/tied_rows-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

template <int kRoom>
class RowMerge final : public KeyRows {
 public:
  RowMerge(Front& front, LcpList& list)
      : front_(front),
        list_(list),
        walk_(front, rows_, cursors_),
        tiedRows_(front, rows_, cursors_, walk_),
        arrivals_(front, rows_, cursors_, tiedRows_) {
    allowWaiting();
    takeUp();
  }

  int merge(Suffix* suffixes, LcpEntry* entries, int room) override {
    if (mayHoldShort_) {
      // It may soon hold none.
      lookForShort();
      return mergeRows<true>(suffixes, entries, std::min(room, kRowsWithShort));
    }
    const int count = mergeRows<false>(suffixes, entries, room);
    merged_ += count;
    if (merged_ >= kUntilAdapted) {
      front_.compare.adapt(met_, merged_);
      allowWaiting();
      met_ = merged_ = 0;
    }
    return count;
  }

  void advanceHead() override;
  void handOver() override;

 private:
  using Bits = RowBits<kRoom>;

  // Words of a string that are asked for early.
  static constexpr int kWordsAhead = 2 * kCacheLineWords;

  // Until it is looked again whether there are short suffixes.
  static constexpr int kRowsWithShort = 256;

  // Suffixes until it is looked again whether many meet others, or more.
  static constexpr int kUntilAdapted = 16384;

  void allowWaiting() {
    arrivals_.allow(!front_.readsEntries() && !front_.compare.readsStrings());
  }
  void takeUp();
  void syncStreams();
  HWY_INLINE void lookAhead(int k);
  HWY_INLINE int64_t takeKey(int k);
  void lookForShort() {
    mayHoldShort_ =
        std::any_of(rows_.states, rows_.states + rows_.count, isShort);
  }

  // Comparisons that a long suffix's own entry takes, if its prefix words tell
  // it.
  HWY_INLINE int ownComparisons() const {
    return front_.readsEntries() ? 0 : 1;
  }

  HWY_INLINE int moveTo(Rows<kRoom>& rows, const RowMove& move, int64_t key,
                        int64_t suffixBits);
  static HWY_INLINE void moveByKey(Rows<kRoom>& rows, Bits walked, int k,
                                   int64_t key, Walked& counted);
  HWY_NOINLINE int moveAmongEqualKeys(int k, int64_t key, LcpEntry own);
  HWY_NOINLINE void moveHead(int k);
  template <bool kShort>
  HWY_NOINLINE int mergeRows(Suffix* suffixes, LcpEntry* entries, int room);

  Front& front_;
  LcpList& list_;
  RowCursor cursors_[kMostRows] = {};
  // Whether a listed suffix may be shorter than 64 bits.
  bool mayHoldShort_ = false;
  RowWalk<kRoom> walk_;
  TiedRows<kRoom> tiedRows_;
  TiedArrivals<kRoom> arrivals_;
  // Of the suffixes merged last, those that met others of their keys.
  int64_t met_ = 0;
  int64_t merged_ = 0;
};

// Takes the hot path. Without `kShort` no listed suffix may be short.
//
// What comes next waits for what came last: the stream for the key of its
// suffix, the key for the stream. So the rows stay in registers where keys tell
// everything, and nothing is called there.
template <int kRoom>
template <bool kShort>
int RowMerge<kRoom>::mergeRows(Suffix* suffixes, LcpEntry* entries, int room) {
  const Collection& text = front_.text();
  const PackedString* const strings = text.data();
  Rows<kRoom> rows(rows_);
  rows.load();
  const Bits walked = rowsBelow<kRoom>(rows_.count - 1);
  const Bits listed = rowsBelow<kRoom>(rows_.count);
  const bool read = front_.readsEntries();
  const bool readsStrings = front_.compare.readsStrings();
  Walked counted;
  int keysToldOwn = 0;
  int met = 0;
  int k = streamOf(rows.firstState());
  int n = 0;
  for (; n < room; n++) {
    if ((rows.firstState() & kTied) != 0) {
      rows.store();
      tiedRows_.settle(0);
      rows.load();
      k = streamOf(rows.firstState());
    }
    RowCursor& cursor = cursors_[k];
    const Suffix* const current = cursor.current;
    const Suffix* const next = current + 1;
    const int64_t key = cursor.upcomingKey;
    const int64_t lastKey = rows.firstKey();
    if (next >= cursor.lastTested) break;
    if (strings[inputNumber(*next)].bits - 2 * next->pos < 64) break;
    if (kShort && rows.beginnings(key) != 0) break;
    const LcpEntry own = entryOfKeys(lastKey, key);
    if (read && (lastKey >= key || !front_.entries[k].takeExpected(own))) break;
    const LcpEntry entry = entryOf(rows.firstState());
    if (entries != nullptr) entries[n] = entry;
    suffixes[n] = *current;
    if (readsStrings && lcpBits(entry) >= 64 &&
        next + kRecordsAhead <= cursor.lastTested) {
      prefetchStrings(text, next[kRecordsAhead], kWordsAhead);
    }
    cursor.current = next;
    cursor.upcomingKey = prefixKey(next[1]);
    const Bits equal = rows.equal(key) & listed;
    if (lastKey >= key || equal != 0) {
      const int following = streamOf(rows.secondState());
      if (lastKey < key && arrivals_.wait(rows, k, key, own, equal, counted)) {
        met++;
        k = following;
        if (rows.firstKey() == lastKey && cursors_[k].upcomingKey == key) {
          rows.store();
          const int count = arrivals_.followAlike(
              key, suffixes + n + 1,
              entries == nullptr ? nullptr : entries + n + 1, room - n - 1);
          rows.load();
          n += count;
          met += count;
          k = streamOf(rows.firstState());
        }
        continue;
      }
      rows.store();
      k = moveAmongEqualKeys(k, key, own);
      rows.load();
      if (!front_.ascends) {
        n++;
        break;
      }
      continue;
    }
    cursor.own = own;
    keysToldOwn++;
    // The stream to come next is known before the rows are.
    const int passed = -static_cast<int>(rows.secondKey() < key);
    const int stream = k;
    k ^= (k ^ streamOf(rows.secondState())) & passed;
    moveByKey(rows, walked, stream, key, counted);
  }
  rows.store();
  if ((rows_.states[0] & kTied) != 0) tiedRows_.settle(0);
  met_ += met;
  counted.settled += int64_t{keysToldOwn} * ownComparisons();
  counted.addTo(front_.cost);
  syncStreams();
  return n;
}

// Moves the head to the row of its new suffix, which is long, and parts from
// all listed ones within the prefix words, so that these tell everything.
// `walked` are all rows but the last: a walk looks at as many of these as there
// are keys below the new one, the last key included.
template <int kRoom>
HWY_INLINE void RowMerge<kRoom>::moveByKey(Rows<kRoom>& rows, Bits walked,
                                           int k, int64_t key,
                                           Walked& counted) {
  const Bits below = rows.below(key);
  // Rows without a suffix are not to be counted.
  const Bits passed = below & walked;
  counted.compare(rows, static_cast<Bits>(rows.sharing(key) & passed << 1));
  counted.positions += std::popcount(passed);
  rows.moveByKey(key, kLong << kLengthShift | k);
}

// Moves the head's stream k to the row of its new suffix, which is long and
// begins with no listed one, but whose key is not above the last one or equals
// another. `own` is the entry that the keys tell. The rows are in their tables.
// Returns the stream that comes next. Apart from the hot path, which needs all
// registers.
template <int kRoom>
int RowMerge<kRoom>::moveAmongEqualKeys(int k, int64_t key, LcpEntry own) {
  met_++;
  RowCursor& cursor = cursors_[k];
  Rows<kRoom> rows(rows_);
  rows.load();
  if (rows_.keys[0] < key) {
    front_.cost.settled += ownComparisons();
  } else {
    front_.streams[k].advanceTo(cursor.current);
    own = front_.ownEntry(k);
    if (!front_.ascends) tiedRows_.settleAll();
  }
  cursor.own = own;
  const RowMove move =
      front_.ascends ? walk_.findAmongEqualKeys(rows, k, *cursor.current, own)
                     : walk_.find(k, *cursor.current, own);
  const int next = moveTo(rows, move, key, kLong << kLengthShift | k);
  rows.store();
  return next;
}

// Moves the head, with its new key. The rows are in their tables, too. Returns
// the stream that comes next.
template <int kRoom>
HWY_INLINE int RowMerge<kRoom>::moveTo(Rows<kRoom>& rows, const RowMove& move,
                                       int64_t key, int64_t suffixBits) {
  const int row = move.row;
  const int64_t behind = rows_.states[row] & kSuffixBits;
  const int next = streamOf(row > 1 ? rows_.states[1] : suffixBits);
  rows.load();
  rows.move(
      rowsBelow<kRoom>(row - 1), key, walk_.stateOf(move.entry, suffixBits),
      move.changes ? Bits{1} << row : 0, walk_.stateOf(move.nextEntry, behind));
  return next;
}

// Moves the head's stream k to the row of its new suffix. The rows are in their
// tables.
template <int kRoom>
void RowMerge<kRoom>::moveHead(int k) {
  const Suffix& suffix = *cursors_[k].current;
  const int64_t key = takeKey(k);
  const int64_t lastKey = rows_.keys[0];
  const int length = front_.text().remainingBits(suffix);
  Rows<kRoom> rows(rows_);
  rows.load();
  // It begins with no listed one, so that no length but its own matters.
  const bool clear =
      length >= 64 && (!mayHoldShort_ || rows.beginnings(key) == 0);
  const Bits equal = rows.equal(key) & rowsBelow<kRoom>(rows_.count);
  LcpEntry own = entryOfKeys(lastKey, key);
  bool settled = clear && lastKey < key;
  Walked counted;
  if (settled && equal != 0) {
    if (arrivals_.wait(rows, k, key, own, equal, counted)) {
      met_++;
      counted.addTo(front_.cost);
      rows.store();
      return;
    }
    settled = false;
  }
  if (front_.readsEntries() || !settled) {
    const LcpEntry byKeys = own;
    own = front_.ownEntry(k);
    settled = settled && own == byKeys;
  }
  cursors_[k].own = own;
  if (settled) {
    moveByKey(rows, rowsBelow<kRoom>(rows_.count - 1), k, key, counted);
    counted.settled += ownComparisons();
    counted.addTo(front_.cost);
  } else {
    tiedRows_.settleAll();
    rows.load();
    const RowMove move = clear && front_.ascends
                             ? walk_.findAmongEqualKeys(rows, k, suffix, own)
                             : walk_.find(k, suffix, own);
    // Where prefix words contradict the strings, the list goes on.
    if (key < rows_.keys[move.row - 1] || key > rows_.keys[move.row]) {
      front_.ascends = false;
    }
    moveTo(rows, move, key, makeSuffixBits(k, length));
    if (length < 64) mayHoldShort_ = true;
  }
  rows.store();
}

template <int kRoom>
void RowMerge<kRoom>::advanceHead() {
  const int k = head();
  const LcpEntry entry = headEntry();
  SuffixStream& stream = front_.streams[k];
  if (front_.compare.readsStrings() && lcpBits(entry) >= 64) {
    const Suffix* ahead = stream.current() + 1 + kRecordsAhead;
    if (ahead < stream.testedEnd()) {
      prefetchStrings(front_.text(), *ahead, kWordsAhead);
    }
  }
  if (!stream.advance()) {
    rows_.dropFirst();
    return;
  }
  cursors_[k].current = stream.current();
  moveHead(k);
}

// The streams do not follow on the hot path.
template <int kRoom>
void RowMerge<kRoom>::syncStreams() {
  for (int row = 0; row < rows_.count; row++) {
    const int k = streamOf(rows_.states[row]);
    front_.streams[k].advanceTo(cursors_[k].current);
  }
}

// Learns what stream k hands out next.
template <int kRoom>
HWY_INLINE void RowMerge<kRoom>::lookAhead(int k) {
  const SuffixStream& stream = front_.streams[k];
  RowCursor& cursor = cursors_[k];
  cursor.current = stream.current();
  cursor.lastTested = stream.testedEnd() - 1;
  cursor.upcomingKey =
      prefixKey(*std::min(stream.current() + 1, stream.readEnd() - 1));
}

// The key of the record that stream k has just handed out.
template <int kRoom>
HWY_INLINE int64_t RowMerge<kRoom>::takeKey(int k) {
  const int64_t key = prefixKey(*cursors_[k].current);
  lookAhead(k);
  return key;
}

// Fills the rows from the list. Records whose prefix words contradict their
// length can stand there in an order that is not that of the keys: then it is
// the list that goes on.
template <int kRoom>
void RowMerge<kRoom>::takeUp() {
  if (list_.isEmpty()) return;
  for (int k = list_.head(); k >= 0; k = list_.linkOf(k).next) {
    const LcpList::Link& link = list_.linkOf(k);
    const Suffix& suffix = front_.suffixOf(k);
    const int row = rows_.count++;
    cursors_[k].own = link.own;
    lookAhead(k);
    rows_.keys[row] = prefixKey(suffix);
    rows_.states[row] = walk_.stateOf(
        link.entry, makeSuffixBits(k, front_.text().remainingBits(suffix)));
    if (row > 0 && rows_.keys[row - 1] > rows_.keys[row]) {
      front_.ascends = false;
    }
  }
  list_.clear();
  lookForShort();
}

template <int kRoom>
void RowMerge<kRoom>::handOver() {
  tiedRows_.settleAll();
  tiedRows_.finish();
  for (int row = rows_.count - 1; row >= 0; row--) {
    const int k = streamOf(rows_.states[row]);
    list_.putFirst(k, entryOf(rows_.states[row]), cursors_[k].own);
  }
  rows_.clear();
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ROW_MERGE_INL_H_
