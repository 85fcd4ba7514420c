// What walks of the list would have done among suffixes of equal prefix words,
// counted afterwards: for each suffix of a group, with those that were there
// when it came. Compiled once for each target that has vectors.
//
// What neighbours share tells what any two share. So all is known that a walk
// (palvor/order/lcp_list.h) would have compared. Of this group, where the
// suffixes marked x were there when d came,
//
//   order                a    b    c    d    e    f
//   with the one before      70   90   66   80   75     bits
//   there                x         x              x
//
// d shares 66 bits with c, and as many with a; c shares min(70, 90) with a,
// which is stored with it. A walk compares those with which the new one shares
// no fewer bits than are stored there: a, with which only what the keys before
// the group tell is stored, and not c, as 66 < 70. Then it looks at f, which
// shares min(80, 75) bits with d, more than c does: compared, too.

#if defined(PALVOR_ORDER_TIED_WALKS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_ORDER_TIED_WALKS_INL_H_
#undef PALVOR_ORDER_TIED_WALKS_INL_H_
#else
#define PALVOR_ORDER_TIED_WALKS_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/order/cost.h"
#include "palvor/simd/lanes-inl.h"
#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

// Groups are gathered until there are some hundred suffixes, and counted
// together: most have few.
class TiedWalks {
 public:
  // The most suffixes of a group.
  static constexpr int kMost = 64;

  // What a suffix brings.
  struct Visit {
    int time;           // those of its group that came earlier
    uint32_t position;  // characters
    LcpEntry own;       // with the one before it in its stream
    LcpEntry outside;   // stored with the first of the group when it came:
                        // less than 64 bits
    bool isLast;        // no other row was behind the group then
  };

  TiedWalks() {
    std::ranges::fill(times_, 0);
    std::ranges::fill(entries_, kBoundary);
    std::ranges::fill(visits_, 0);
  }

  // A group begins, of `count` suffixes; each is put once.
  void begin(int count, Cost& cost) {
    if (size_ + count > kRoom) flush(cost);
    entries_[kMargin + size_] = kBoundary;
    most_ = std::max(most_, count);
    group_ = kMargin + size_;
  }
  // The one that is number i in the order.
  HWY_INLINE void put(int i, const Visit& visit) {
    times_[group_ + i] = visit.time;
    visits_[group_ + i] = static_cast<int>(
        (2 * visit.position & 31) | (visit.isLast ? kIsLast : 0) |
        std::min(visit.own, kOwnBits) << kOwnShift |
        (visit.outside & kOutsideBits) << kOutsideShift);
  }
  // What it shares with the one before, 64 bits or more; but for the first.
  HWY_INLINE void putEntry(int i, LcpEntry entry) {
    entries_[group_ + i] = static_cast<int>(entry);
  }
  // The group that has begun is as it was put.
  void end(int count) { size_ += count; }

  // Counts what is left.
  HWY_NOINLINE void flush(Cost& cost);

 private:
  static constexpr int kRoom = 256;  // suffixes

  // What the vectors read before the first and behind the last one.
  static constexpr int kMargin = kMost + kIntLanes;
  static constexpr int kNumbers = kMargin + kRoom + kMargin;

  static constexpr int kBoundary = -1;  // shared by two groups

  // A visit in one number:
  //
  //   bits 22..16  the entry outside
  //   bits 15..8   its own entry, 255 if that is more
  //   bit 5        whether it came to the last row
  //   bits 4..0    the first bit of its suffix, in its word
  static constexpr uint32_t kIsLast = 32;
  static constexpr LcpEntry kOwnBits = 255;
  static constexpr LcpEntry kOutsideBits = 127;
  static constexpr int kOwnShift = 8;
  static constexpr int kOutsideShift = 16;

  struct Counted {
    Ints positions;
    Ints comparisons;
    Ints found64More;
    Ints unchanged;
    int64_t words = 0;  // but for one for each comparison
  };

  HWY_INLINE void countAt(int base, Counted& counted) const;

  static HWY_INLINE Ints at(const int32_t* numbers, int i) {
    return hn::LoadU(IntTag(), numbers + i);
  }

  int size_ = 0;
  int most_ = 0;   // suffixes of a group
  int group_ = 0;  // where it begins
  int32_t times_[kNumbers];
  int32_t entries_[kNumbers];
  int32_t visits_[kNumbers];
};

// Words of strings that are examined, but for one, as wordsExamined tells it:
// of a suffix with this visit and another with which it has this entry, where
// `known` bits, 64 or more, were known.
HWY_INLINE Ints wordsOf(Ints visit, Ints known, Ints entry) {
  const Ints start = hn::And(visit, allInts(31));
  // The bit that differs, or the last one, if they agree up to the end of one:
  // then it is one less.
  const Ints last =
      hn::Sub(hn::ShiftRight<1>(hn::Add(entry, allInts(1))), allInts(1));
  return hn::Sub(hn::ShiftRight<5>(hn::Add(last, start)),
                 hn::ShiftRight<5>(hn::Add(known, start)));
}

HWY_INLINE void TiedWalks::countAt(int base, Counted& counted) const {
  const IntTag tag;
  const Ints one = allInts(1);
  const Ints none = allInts(kBoundary);
  const Ints most = allInts(kMostInt);
  const Ints visit = at(visits_, base);
  const Ints time = at(times_, base);
  const Ints outside =
      hn::And(hn::ShiftRight<kOutsideShift>(visit), allInts(kOutsideBits));
  const auto ownOf = [&](Ints of) PALVOR_ATTR {
    return hn::And(hn::ShiftRight<kOwnShift>(of), allInts(kOwnBits));
  };
  const auto add = [&](Ints& sum, auto mask) PALVOR_ATTR {
    sum = hn::Sub(sum, hn::VecFromMask(tag, mask));
  };
  // At most 63 times the words of a string for each: less than 2^31.
  Ints words = hn::Zero(tag);
  // Compared with one that has this entry stored, and shares `entry`.
  const auto count = [&](auto mask, Ints met, Ints stored,
                         Ints entry) PALVOR_ATTR {
    const Ints known = hn::ShiftRight<1>(stored);
    words = hn::Add(
        words, hn::IfThenElseZero(
                   mask, wordsOf(met, hn::Max(known, allInts(64)), entry)));
    add(counted.comparisons, mask);
    add(counted.found64More,
        hn::And(mask,
                hn::Gt(hn::ShiftRight<1>(entry), hn::Add(known, allInts(63)))));
  };

  // To the left: of those that were there, the last one that was met, and the
  // entry with it.
  Ints entry = most;
  Ints stored = most;  // with the one that was met
  Ints shared = none;
  Ints nearest = none;  // shared with the first one that was met
  Ints passed = hn::Zero(tag);
  Ints met = hn::Zero(tag);
  for (int d = 1; d < most_; d++) {
    const Ints between = at(entries_, base - d + 1);
    entry = hn::Min(entry, between);
    stored = hn::Min(stored, between);
    const auto isThere =
        hn::And(hn::Lt(at(times_, base - d), time), hn::Gt(entry, none));
    count(hn::AndNot(hn::Lt(hn::Or(shared, one), stored), isThere), met, stored,
          shared);
    nearest =
        hn::IfThenElse(hn::And(isThere, hn::Eq(nearest, none)), entry, nearest);
    shared = hn::IfThenElse(isThere, entry, shared);
    met = hn::IfThenElse(isThere, at(visits_, base - d), met);
    stored = hn::IfThenElse(isThere, most, stored);
    add(passed, isThere);
  }
  // With the first of all is stored what it shares with what is outside.
  const auto cameLater = hn::Gt(time, hn::Zero(tag));
  const auto hasLeft = hn::Gt(shared, none);
  count(hasLeft, met, outside, shared);
  const auto isMetUnchanged = hn::Eq(ownOf(met), outside);
  add(counted.unchanged, hn::And(hasLeft, isMetUnchanged));

  // To the right: the first one that was there.
  const Ints left = hn::IfThenElse(hasLeft, nearest, outside);
  auto isOpen = cameLater;
  auto isMet = hn::Lt(most, most);
  entry = most;
  for (int d = 1; d < most_ && !hn::AllFalse(tag, isOpen); d++) {
    entry = hn::Min(entry, at(entries_, base + d));
    isOpen = hn::And(isOpen, hn::Gt(entry, none));
    const auto isThere = hn::And(isOpen, hn::Lt(at(times_, base + d), time));
    isMet = hn::Or(isMet, isThere);
    isOpen = hn::AndNot(isThere, isOpen);
    shared = hn::IfThenElse(isThere, entry, shared);
    met = hn::IfThenElse(isThere, at(visits_, base + d), met);
  }
  const auto isCompared = hn::AndNot(hn::Lt(hn::Or(shared, one), left), isMet);
  count(isCompared, met, left, shared);
  add(counted.unchanged,
      hn::AndNot(hasLeft, hn::And(isCompared, hn::Eq(ownOf(met), outside))));

  counted.words += sumOf(words);

  // A walk looks at one position less if it comes to the end.
  const auto isEnd =
      hn::And(hn::Eq(passed, time), hn::TestBit(visit, allInts(kIsLast)));
  counted.positions =
      hn::Add(counted.positions,
              hn::IfThenElseZero(cameLater,
                                 hn::Add(passed, hn::VecFromMask(tag, isEnd))));
}

HWY_NOINLINE inline void TiedWalks::flush(Cost& cost) {
  const IntTag tag;
  // Those behind never came.
  const int end = kMargin + size_;
  for (int i = end; i < end + kMargin; i += kIntLanes) {
    hn::StoreU(hn::Zero(tag), tag, times_ + i);
    hn::StoreU(allInts(kBoundary), tag, entries_ + i);
  }
  const Ints zero = hn::Zero(tag);
  Counted counted = {zero, zero, zero, zero};
  for (int base = kMargin; base < end; base += kIntLanes)
    countAt(base, counted);
  const int64_t comparisons = sumOf(counted.comparisons);
  cost.words += counted.words + comparisons;
  cost.positions += sumOf(counted.positions);
  cost.comparisons += comparisons;
  cost.found64 += comparisons;
  cost.found64More += sumOf(counted.found64More);
  cost.unchanged += sumOf(counted.unchanged);
  size_ = 0;
  most_ = 0;
}

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_ORDER_TIED_WALKS_INL_H_
