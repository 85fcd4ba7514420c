// The row of a suffix among others of equal prefix words, by their anchors.
// Compiled once for each target that has vectors.
//
// Suffixes of equal anchors are ordered by their second keys
// (palvor/text/stretches.h). So the new suffix goes behind as many as have
// lower ones, and only what it shares with its neighbours there is asked for.
// With the others before it, it shares what its left neighbour shares with
// them, which the stored lengths tell from right to left,
//
//   row                  3    4    5    6
//   stored length       60   90   80   70   with the row before
//   with the new one    70   70   70   75   75, min(75, 70), min(70, 80), ...
//
// and with that what a walk (palvor/order/lcp_list.h) would have compared:
// those with which it shares no fewer bits than are stored there.

#if defined(PALVOR_ORDER_ANCHORED_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_ANCHORED_ROWS_INL_H_
#undef PALVOR_ORDER_ANCHORED_ROWS_INL_H_
#else
#define PALVOR_ORDER_ANCHORED_ROWS_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/order/cost.h"
#include "palvor/order/row_cursor.h"
#include "palvor/order/row_tables.h"
#include "palvor/order/stream_compare.h"
#include "palvor/simd/lanes-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

template <int kRoom>
class AnchoredRows {
 public:
  using Bits = RowBits<kRoom>;

  // `cursors` are those of all streams. All of them must outlive it.
  AnchoredRows(StreamCompare& compare, const RowTables& rows,
               const RowCursor* cursors)
      : anchorsAhead_(compare.anchors),
        text_(compare.text()),
        rows_(rows),
        cursors_(cursors) {
    std::ranges::fill(anchors_, kUnknown);
  }

  // Stream k has another suffix.
  HWY_INLINE void forget(int k) { anchors_[k] = kUnknown; }

  // Finds the row of stream k's suffix, which is long, among those of `equal`,
  // which begins with the row that a move goes to, and has its prefix words.
  // `move` comes with the entry that it would get there, and gets where it
  // goes. Counts what a walk of these rows would have compared, but neither
  // comparisons nor positions; sets the bits of the rows that it compares.
  // False if anchors don't tell: then nothing is done.
  HWY_INLINE bool find(int k, Bits equal, RowMove& move, Bits& compared,
                       Cost& cost);

 private:
  // What stands for the anchor of a suffix that was not looked up; and for
  // those without one: this one, and the stream.
  static constexpr int64_t kUnknown = int64_t{1} << 33;
  static constexpr int64_t kNone = int64_t{1} << 32;

  static constexpr int kLeastShared = AnchorsAhead::kLeastShared;

  using Tag = hn::CappedTag<int64_t, kRoom <= 4 ? 4 : 8>;
  using Lanes = hn::Vec<Tag>;
  static constexpr int kLanes = static_cast<int>(hn::MaxLanes(Tag()));

  struct Anchored {
    int64_t anchor;
    int64_t key;
    int position;  // characters
    int bits;      // its length
  };

  // How the second keys of rows are, and which have the same anchor.
  struct Relations {
    Bits anchored = 0;
    Bits lower = 0;
    Bits alike = 0;
  };

  // What a walk does.
  struct Walk {
    Bits compared = 0;
    int64_t words = 0;
    int64_t found64More = 0;
    // Whether rows but the first share fewer bits than can be relied on.
    bool isMisled = false;
  };

  HWY_INLINE Anchored anchoredOf(int k);
  HWY_INLINE void note(int k, const Anchored& anchored);
  HWY_NOINLINE bool lookUpAll(Bits rows);
  HWY_INLINE Relations relate(const Anchored& own, Bits equal) const;
  HWY_INLINE Relations relateAll(const Anchored& own, Bits equal);
  HWY_INLINE Walk walk(int first, int row, int common, int bits) const;
  HWY_INLINE LcpEntry entryWith(int i, const Anchored& own) const;

  static HWY_INLINE Lanes ofStreams(const int64_t* table, Lanes streams);
  static HWY_INLINE Ints ofStreams(const int32_t* table, Ints streams);

  AnchorsAhead& anchorsAhead_;
  const Collection& text_;
  const RowTables& rows_;
  const RowCursor* cursors_;
  // Of each stream's suffix, if its anchor is known.
  alignas(64) int64_t anchors_[kMostRows];
  alignas(64) int64_t keys_[kMostRows] = {};
  alignas(64) int32_t positions_[kMostRows] = {};
  alignas(64) int32_t lengths_[kMostRows] = {};
};

template <int kRoom>
HWY_INLINE typename AnchoredRows<kRoom>::Anchored
AnchoredRows<kRoom>::anchoredOf(int k) {
  const Suffix& suffix = *cursors_[k].current;
  const Anchor anchor = anchorsAhead_.of(k, suffix);
  const bool isThere = anchor.position != Axis::kNowhere;
  return {isThere ? int64_t{anchor.position} : kNone + k,
          static_cast<int64_t>(anchor.key), static_cast<int>(suffix.pos),
          text_.remainingBits(suffix)};
}

template <int kRoom>
HWY_INLINE void AnchoredRows<kRoom>::note(int k, const Anchored& anchored) {
  anchors_[k] = anchored.anchor;
  keys_[k] = anchored.key;
  positions_[k] = anchored.position;
  lengths_[k] = anchored.bits;
}

// The numbers of some streams.
template <int kRoom>
HWY_INLINE typename AnchoredRows<kRoom>::Lanes AnchoredRows<kRoom>::ofStreams(
    const int64_t* table, Lanes streams) {
  const Tag tag;
#if PALVOR_HAS_AVX512
  if constexpr (kRoom == 8) {
    return Lanes{
        _mm512_permutexvar_epi64(streams.raw, hn::Load(tag, table).raw)};
  } else if constexpr (kRoom == 16) {
    return Lanes{_mm512_permutex2var_epi64(
        hn::Load(tag, table).raw, streams.raw, hn::Load(tag, table + 8).raw)};
  }
#endif
  return numbersAt(tag, table, streams);
}

template <int kRoom>
HWY_INLINE Ints AnchoredRows<kRoom>::ofStreams(const int32_t* table,
                                               Ints streams) {
  const IntTag tag;
#if PALVOR_HAS_AVX512
  if constexpr (kRoom <= 16) {
    return Ints{
        _mm512_permutexvar_epi32(streams.raw, hn::Load(tag, table).raw)};
  }
#endif
  return numbersAt(tag, table, streams);
}

template <int kRoom>
HWY_INLINE typename AnchoredRows<kRoom>::Relations AnchoredRows<kRoom>::relate(
    const Anchored& own, Bits equal) const {
  const Tag tag;
  const Lanes anchor = hn::Set(tag, own.anchor);
  const Lanes key = hn::Set(tag, own.key);
  Relations found;
  for (int g = 0; g < kRoom / kLanes; g++) {
    const int shift = kLanes * g;
    // Of many groups most have none of these rows.
    if (kRoom > 16 && (equal >> shift & ((Bits{1} << kLanes) - 1)) == 0) {
      continue;
    }
    const Lanes streams = hn::And(hn::Load(tag, rows_.states + shift),
                                  hn::Set(tag, kMostRows - 1));
    const auto rowsOf = [&](auto mask) PALVOR_ATTR {
      return static_cast<Bits>(bitsOf(tag, mask)) << shift;
    };
    const Lanes keys = ofStreams(keys_, streams);
    found.anchored |= rowsOf(hn::Eq(ofStreams(anchors_, streams), anchor));
    found.lower |= rowsOf(hn::Lt(keys, key));
    found.alike |= rowsOf(hn::Eq(keys, key));
  }
  return found;
}

// Relates a suffix to some rows, of which those that are not known are looked
// up.
template <int kRoom>
HWY_INLINE typename AnchoredRows<kRoom>::Relations
AnchoredRows<kRoom>::relateAll(const Anchored& own, Bits equal) {
  const Relations found = relate(own, equal);
  const Bits others = equal & ~found.anchored;
  if (others == 0 || own.anchor >= kNone || !lookUpAll(others)) return found;
  return relate(own, equal);
}

// Looks up what is not known of some rows. Whether there was anything.
template <int kRoom>
bool AnchoredRows<kRoom>::lookUpAll(Bits rows) {
  bool lookedUp = false;
  for (; rows != 0; rows &= rows - 1) {
    const int k = streamOf(rows_.states[std::countr_zero(rows)]);
    if (anchors_[k] != kUnknown) continue;
    note(k, anchoredOf(k));
    lookedUp = true;
  }
  return lookedUp;
}

// The entry of a suffix with that of stream i, which has the same anchor.
template <int kRoom>
HWY_INLINE LcpEntry AnchoredRows<kRoom>::entryWith(int i,
                                                   const Anchored& own) const {
  const int shorter = std::min(lengths_[i], own.bits);
  const int common = anchorsAhead_.sharedBits(
      static_cast<uint64_t>(keys_[i]), static_cast<uint64_t>(own.key), shorter);
  return fittingEntry(common, common < shorter);
}

// Walks the rows from `first` to `row` - 1, which are those of equal prefix
// words before a suffix of so many bits, that shares `common` bits with the
// last of them.
template <int kRoom>
HWY_INLINE typename AnchoredRows<kRoom>::Walk AnchoredRows<kRoom>::walk(
    int first, int row, int common, int bits) const {
  const IntTag tag;
  const hn::Repartition<int64_t, IntTag> stateTag;
  const Ints all = allInts(common);
  Walk found;
  Ints words = hn::Zero(tag);
  int withNext = common;  // what a group's rows share at most
  const int lastGroup = (row - 1) / kIntLanes;
  for (int g = kRoom <= kIntLanes ? 0 : lastGroup; g >= first / kIntLanes;
       g--) {
    const int base = kIntLanes * g;
    const int64_t* const states = rows_.states + base;
    const auto low = hn::BitCast(tag, hn::Load(stateTag, states));
    const auto high =
        hn::BitCast(tag, hn::Load(stateTag, states + kIntLanes / 2));
    const Ints stored = hn::ShiftRight<1>(hn::ConcatOdd(tag, high, low));
    const Ints streams =
        hn::And(hn::ConcatEven(tag, high, low), allInts(kMostRows - 1));
    const Ints rowNumbers = hn::Iota(tag, base);
    const auto isLast = hn::Gt(rowNumbers, allInts(row - 2));
    // Each shares what the one behind it does, as far as that is stored with
    // it.
    Ints commons = hn::IfThenElse(isLast, all, intsUp<1>(stored));
    commons = hn::Min(leastIntsBehind(commons), allInts(withNext));
    withNext = std::min(hn::GetLane(commons), hn::GetLane(stored));

    const auto isBefore = hn::And(hn::Gt(rowNumbers, allInts(first - 1)),
                                  hn::Lt(rowNumbers, allInts(row)));
    const auto isCompared = hn::AndNot(hn::Lt(commons, stored), isBefore);
    const auto knewMore =
        hn::And(isCompared, hn::Gt(commons, hn::Add(stored, allInts(63))));
    const auto isShort =
        hn::AndNot(hn::Eq(rowNumbers, allInts(first)),
                   hn::And(isBefore, hn::Lt(stored, allInts(kLeastShared))));
    // As wordsExamined tells it.
    const Ints position = ofStreams(positions_, streams);
    const Ints shorter = hn::Min(ofStreams(lengths_, streams), allInts(bits));
    const Ints known = hn::Max(stored, allInts(64));
    const Ints from = hn::Sub(
        known,
        hn::And(hn::Add(known, hn::Add(position, position)), allInts(31)));
    const Ints to = hn::Min(commons, hn::Sub(shorter, allInts(1)));
    const Ints examined =
        hn::ShiftRight<5>(hn::Add(hn::Sub(to, from), allInts(32)));
    words = hn::Add(words, hn::IfThenElseZero(isCompared, examined));

    found.compared |= static_cast<Bits>(bitsOf(tag, isCompared)) << base;
    found.found64More += std::popcount(bitsOf(tag, knewMore));
    found.isMisled |= bitsOf(tag, isShort) != 0;
  }
  found.words = hn::GetLane(hn::SumOfLanes(tag, words));
  return found;
}

template <int kRoom>
HWY_INLINE bool AnchoredRows<kRoom>::find(int k, Bits equal, RowMove& move,
                                          Bits& compared, Cost& cost) {
  const Anchored own = anchoredOf(k);
  const Relations found = relateAll(own, equal);
  note(k, own);
  if ((found.anchored & equal) != equal) return false;
  if ((found.alike & equal) != 0 &&
      !anchorsAhead_.stretches().equalIfAlike(static_cast<uint64_t>(own.key))) {
    return false;
  }

  const int first = move.row;
  // Behind those that are equal, as they came earlier.
  const int row = first + std::popcount((found.lower | found.alike) & equal);
  const int end = first + std::popcount(equal);
  RowMove wanted = {row, move.entry, false, 0};
  Walk walked;
  if (row > first) {
    wanted.entry = entryWith(streamOf(rows_.states[row - 1]), own);
    if (lcpBits(wanted.entry) < kLeastShared) return false;
    walked = walk(first, row, lcpBits(wanted.entry), own.bits);
    if (walked.isMisled) return false;
  }
  const LcpEntry stored = entryOf(rows_.states[row]);
  const int known = lcpBits(wanted.entry);
  if (row < end && lcpBits(stored) == known) {
    const int next = streamOf(rows_.states[row]);
    wanted = {row, stored, true, entryWith(next, own)};
    const int common = lcpBits(wanted.nextEntry);
    if (common < kLeastShared) return false;
    walked.compared |= Bits{1} << row;
    walked.words +=
        wordsExamined(static_cast<uint32_t>(positions_[next]),
                      std::min(lengths_[next], own.bits), known, common);
    walked.found64More += common >= known + 64 ? 1 : 0;
  }
  move = wanted;
  compared |= walked.compared;
  cost.words += walked.words;
  cost.found64 += std::popcount(walked.compared);
  cost.found64More += walked.found64More;
  return true;
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_ANCHORED_ROWS_INL_H_
