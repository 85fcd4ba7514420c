#include "palvor/order/stream_compare.h"

#include <algorithm>
#include <span>

#include "palvor/text/stretch_comparison.h"

namespace palvor {

Comparison StreamCompare::compareByAnchors(const Anchor& anchorA,
                                           const Suffix& a,
                                           const Anchor& anchorB,
                                           const Suffix& b, int known) {
  if (anchorA.position != anchorB.position ||
      anchorA.position == Axis::kNowhere) {
    return compare_(a, b, known);
  }
  const Stretches& stretches = anchors.stretches();
  const int bitsA = text().remainingBits(a);
  const int bitsB = text().remainingBits(b);
  const int shorter = std::min(bitsA, bitsB);
  const int from = firstBitExamined(a.pos, std::max(known, 64));
  int common;
  bool after;
  if (anchorA.key != anchorB.key) {
    common = AnchorsAhead::kSkippedBits +
             static_cast<int>(stretches.commonBits(anchorA.key, anchorB.key));
    after = anchorA.key > anchorB.key;
  } else if (stretches.equalIfAlike(anchorA.key)) {
    common = shorter;
    after = false;
  } else {
    const uint32_t shared =
        bitsBeforeRanks(anchorA.key) / 2 + AnchorsAhead::kSkipped;
    const StretchParting parting = followStretches(
        stretches, std::span(text().data(), text().inputs()),
        {inputNumber(a), a.pos}, {inputNumber(b), b.pos}, shared);
    common = static_cast<int>(parting.bits);
    after = parting.order > 0;
    if (!parting.known) {
      Comparison found = compare_(a, b, std::max(known, common));
      found.words = wordsFrom(from, shorter, found.common);
      return found;
    }
  }
  // Records can claim that suffixes share more than they do.
  if (common < from) return compare_(a, b, known);
  const int how = (common < shorter ? Comparison::kFirstbit : 0) |
                  (after ? Comparison::kAfter : 0) |
                  (common == bitsA && common == bitsB ? Comparison::kEqual : 0);
  return {common, how, wordsFrom(from, shorter, common)};
}

}  // namespace palvor
