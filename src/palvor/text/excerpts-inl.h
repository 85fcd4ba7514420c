// Comparisons of a few suffixes with each other by excerpts of their strings.
//
// Of sixteen strains sixteen suffixes stand together, and each is compared with
// several others. How far two of them agree is mispredicted: a loop over their
// words ends with a wrong guess nearly every time. An excerpt is cut from the
// string once, to begin with a bit of the suffix instead of a word of the
// string, and two of them are compared whole, without a branch.

#if defined(PALVOR_TEXT_EXCERPTS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PALVOR_TEXT_EXCERPTS_INL_H_
#undef PALVOR_TEXT_EXCERPTS_INL_H_
#else
#define PALVOR_TEXT_EXCERPTS_INL_H_
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/simd/vectors-inl.h"
#include "palvor/text/compare.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {

#if PALVOR_HAS_VECTORS

class Excerpts {
 public:
  // As many words as a comparison may read of a string beyond the prefix words.
  static constexpr int kWords = 128;

  explicit Excerpts(SuffixCompare& compare) : compare_(compare) {}

  // Compares suffix a, that of slot i, with suffix b, that of slot k. Both have
  // the same prefix words and are 64 bits long or more; `known` bits are known
  // to be shared.
  HWY_INLINE Comparison operator()(int i, const Suffix& a, int k,
                                   const Suffix& b, int known) {
    if (!help_ || known >= kEnd || !has(i, a) || !has(k, b)) {
      const Comparison found = compare_(a, b, known);
      help_ = found.common < kHelp;
      return found;
    }
    const int from = firstBitExamined(a.pos, std::max(known, 64));
    const int word = firstDifference(words_[i], words_[k]);
    if (word == kWords) {
      Comparison found = compare_(a, b, kEnd);
      found.words += (firstBitExamined(a.pos, kEnd) - from) >> 5;
      help_ = found.common < kHelp;
      return found;
    }
    const uint32_t wordA = words_[i][word];
    const uint32_t wordB = words_[k][word];
    const int common = kStart + 32 * word + std::countl_zero(wordA ^ wordB);
    // Records can tell of more common bits than there are: those are not read.
    if (common < from) return compare_(a, b, known);
    return {common,
            Comparison::kFirstbit | (wordA > wordB ? Comparison::kAfter : 0),
            ((common - from) >> 5) + 1};
  }

 private:
  // An excerpt begins within the prefix words: a comparison that knows these
  // begins at a word of the string, up to 31 bits before their end.
  static constexpr int kStart = 32;                  // bits of the suffix
  static constexpr int kEnd = kStart + 32 * kWords;  // bits

  // If the suffixes that excerpts did not tell apart last time went on alike
  // for this many bits or more, the next two are likely to, too.
  static constexpr int kHelp = 4 * kEnd;

  // Tells a suffix from all others, and from 0.
  static HWY_INLINE uint64_t identityOf(const Suffix& suffix) {
    return uint64_t{suffix.pos} << 32 | (inputNumber(suffix) + 1);
  }

  // Whether a slot's suffix has an excerpt. Cuts one if need be, and if the
  // suffix is long enough.
  HWY_INLINE bool has(int slot, const Suffix& suffix) {
    const uint64_t identity = identityOf(suffix);
    if (suffixes_[slot] == identity) return true;
    // So the word behind the last one belongs to the string, too.
    if (compare_.text().remainingBits(suffix) <= kEnd) return false;
    const uint32_t start = 2 * suffix.pos + kStart;
    const uint32_t* words =
        compare_.text()[inputNumber(suffix)].words + (start >> 5);
    const Words tag;
    for (int w = 0; w < kWords; w += kLanes) {
      hn::Store(
          slicesOf(hn::LoadU(tag, words + w), hn::LoadU(tag, words + w + 1),
                   static_cast<int>(start & 31)),
          tag, words_[slot] + w);
    }
    suffixes_[slot] = identity;
    return true;
  }

  // The first word in which two excerpts differ, or kWords.
  static HWY_INLINE int firstDifference(const uint32_t* a, const uint32_t* b) {
    const auto equal = [&](int w) PALVOR_ATTR {
      const Words tag;
      return bitsOf(tag, hn::Eq(hn::Load(tag, a + w), hn::Load(tag, b + w)));
    };
    uint64_t early = 0;
    uint64_t late = 0;
    for (int w = 0; w < 64; w += kLanes) {
      early |= equal(w) << w;
      late |= equal(64 + w) << w;
    }
    return early != ~uint64_t{0} ? std::countr_one(early)
                                 : 64 + std::countr_one(late);
  }

  static constexpr int kLanes = static_cast<int>(hn::MaxLanes(Words()));
  static constexpr int kSlots = 64;

  SuffixCompare& compare_;
  bool help_ = true;
  uint64_t suffixes_[kSlots] = {};  // that the excerpts belong to
  alignas(64) uint32_t words_[kSlots][kWords];
};

#endif  // PALVOR_HAS_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#endif  // PALVOR_TEXT_EXCERPTS_INL_H_
