// The one suffix order. Every file palvor writes is in the order defined here.
//
// A suffix is compared as a bit string (palvor/format/packing.h). Reading from
// the left,
//   - at the first bit that differs, the suffix with the 0 sorts first;
//   - if one suffix ends first, the shorter sorts first;
//   - if both end together they are equal.
//
// Lengths are in bits, and may be odd: CAT is 010011 and CAG is 010010, so
// they share 5 bits, and CAT sorts after CAG.

#ifndef PALVOR_TEXT_COMPARE_H_
#define PALVOR_TEXT_COMPARE_H_

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/format/suffix.h"
#include "palvor/text/collection.h"
#include "palvor/text/comparison.h"
#include "palvor/text/long_matches.h"
#include "palvor/text/string_compare.h"

namespace palvor {

// Compares the suffixes of a collection. What it remembers of them costs or
// saves time, and changes no result; one merge uses it at a time.
class SuffixCompare {
 public:
  // useKeys  whether the records' prefix words are looked at: changes the
  //          route, never the answer.
  SuffixCompare(const Collection& text, bool useKeys, Processor processor)
      : text_(text),
        useKeys_(useKeys),
        compareStrings_(stringCompare(processor)) {}

  const Collection& text() const { return text_; }
  bool usesKeys() const { return useKeys_; }

  // Compares two suffixes: by the longest common extension of what is known.
  // Their inputs and positions must be those of the collection.
  //   known  bits that the caller knows to be shared, 0 if none. It is trusted:
  //          a value above the true common prefix gives a wrong order, not an
  //          error.
  // Where the prefix words differ, as they do for most suffixes, it is settled
  // here and now.
  Comparison operator()(const Suffix& a, const Suffix& b, int known) {
    const int64_t keyA = prefixKey(a);
    const int64_t keyB = prefixKey(b);
    const int shorter =
        std::min(text_.remainingBits(a), text_.remainingBits(b));
    if (keyA == keyB || shorter < 64 || known > 63 || !useKeys_) {
      return compareBehindKeys(a, b, known);
    }
    return {std::countl_zero(static_cast<uint64_t>(keyA ^ keyB)),
            Comparison::kSettled | Comparison::kFirstbit |
                (keyA > keyB ? Comparison::kAfter : 0),
            0};
  }

 private:
  Comparison compareBehindKeys(const Suffix& a, const Suffix& b, int known);
  Comparison compareShort(const Suffix& a, const Suffix& b) const;
  Comparison compareWhole(const Suffix& a, const Suffix& b);

  const Collection& text_;
  bool useKeys_;
  StringCompare compareStrings_;
  LongMatches matches_;
};

// What SuffixCompare, which looks at prefix words, finds of two suffixes, the
// shorter one `shorter` bits long, that share `common` bits, `known` of which
// were known: whether the prefix words settle it, and if not, how many words
// are examined. `position` is that of the first suffix, in characters.
inline bool isSettledByKeys(int shorter, int known, int common) {
  return known < 64 && (common < 64 || shorter <= 64);
}
inline int wordsExamined(uint32_t position, int shorter, int known,
                         int common) {
  return wordsFrom(firstBitExamined(position, std::max(known, 64)), shorter,
                   common);
}

// An LCP entry. Fails for a common prefix of 2^30 bits or more, which does not
// fit.
LcpEntry fittingEntry(int bits, bool firstbit);
inline LcpEntry entryOf(const Comparison& found) {
  return fittingEntry(found.common, found.firstbit());
}

}  // namespace palvor

#endif  // PALVOR_TEXT_COMPARE_H_
