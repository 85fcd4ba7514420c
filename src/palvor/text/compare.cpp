#include "palvor/text/compare.h"

#include "palvor/error.h"
#include "palvor/format/packing.h"

namespace palvor {

Comparison SuffixCompare::compareBehindKeys(const Suffix& a, const Suffix& b,
                                            int known) {
  if (!useKeys_) return compareWhole(a, b);
  if (known > 63) return compareStrings_(text_, matches_, a, b, known);
  const bool longer =
      std::min(text_.remainingBits(a), text_.remainingBits(b)) > 64;
  if (longer && a.prefix0 == b.prefix0 && a.prefix1 == b.prefix1) {
    return compareStrings_(text_, matches_, a, b, 64);
  }
  return compareShort(a, b);
}

// By prefix words that differ, or that all of the shorter suffix stands in.
Comparison SuffixCompare::compareShort(const Suffix& a, const Suffix& b) const {
  const int bitsA = text_.remainingBits(a);
  const int bitsB = text_.remainingBits(b);
  Parting parting{};
  if (a.prefix0 != b.prefix0) {
    parting = partingOf(a.prefix0, b.prefix0, 0);
  } else if (std::min(bitsA, bitsB) > 32 && a.prefix1 != b.prefix1) {
    parting = partingOf(a.prefix1, b.prefix1, 1);
  }
  Comparison found = concludedFrom(parting, 0, bitsA, bitsB);
  found.how |= Comparison::kSettled;
  return found;
}

// From the first bit on, without the prefix words.
Comparison SuffixCompare::compareWhole(const Suffix& a, const Suffix& b) {
  const int bitsA = text_.remainingBits(a);
  const int bitsB = text_.remainingBits(b);
  const int shorter = std::min(bitsA, bitsB);
  Comparison found{};
  const uint32_t wordA =
      sliceAt(text_[inputNumber(a)].words, uint64_t{2} * a.pos);
  const uint32_t wordB =
      sliceAt(text_[inputNumber(b)].words, uint64_t{2} * b.pos);
  if (wordA != wordB || shorter <= 32) {
    const Parting parting =
        wordA != wordB ? partingOf(wordA, wordB, 0) : Parting{};
    found = concludedFrom(parting, 0, bitsA, bitsB);
  } else {
    found = compareStrings_(text_, matches_, a, b, 32);
  }
  found.words = wordsFrom(0, shorter, found.common);
  return found;
}

LcpEntry fittingEntry(int bits, bool firstbit) {
  if (bits >= kLcpLimit) {
    fail("two suffixes share %d bits: an LCP entry holds less than 2^30", bits);
  }
  return makeLcpEntry(bits, firstbit ? 1 : 0);
}

}  // namespace palvor
