#include "sources/compare.h"

#include <algorithm>
#include <bit>

#include "run/options.h"
#include "sources/strings.h"
#include "support/report.h"

constinit int comLCP = 0;
constinit long long np2 = 0;

namespace {

// Where the prefix words of two suffixes part.
struct Parting {
  int bit;  // first differing bit; only if they differ
  bool differ;
  bool after;  // a has the 1 there
};

// Compares one word of each, `w` words after the start.
inline Parting compareWords(uint32_t x, uint32_t y, int w) {
  return {32 * w + nb32(x ^ y), true, x > y};
}

// What the prefix words say. Zero bits follow the end of a string, so a
// difference past the shorter suffix's end still says which is the longer.
inline Comparison conclude(const Parting& parting, int restA, int restB) {
  const int shorter = std::min(restA, restB);
  if (!parting.differ) {
    return {shorter, restA > restB    ? Comparison::kAfter
                     : restA == restB ? Comparison::kEqual
                                      : 0};
  }
  const int after = parting.after ? Comparison::kAfter : 0;
  if (parting.bit >= shorter) return {shorter, after};
  return {parting.bit, Comparison::kFirstbit | after};
}

// Words that cover `bits` bits; not above 0 if there are none.
inline int wordsOver(int bits) { return ((bits - 1) >> 5) + 1; }

}  // namespace

int ZEPCompare(const Suffix* a, const Suffix* b, int* fb, int known) {
  Comparison found{};
  if (noprefix != 0) {
    found = compareWholeStrings(*a, *b);
  } else if (known > 63) {
    found = compareStrings(*a, *b, known);
  } else {
    const int restA = remainingBits(*a);
    const int restB = remainingBits(*b);
    const int words = wordsOver(std::min(restA, restB));
    Parting parting{};
    if (a->prefix0 != b->prefix0) {
      parting = compareWords(a->prefix0, b->prefix0, 0);
    } else if (words > 1 && a->prefix1 != b->prefix1) {
      parting = compareWords(a->prefix1, b->prefix1, 1);
    }
    if (parting.differ || words <= 2) {
      np2++;
      found = conclude(parting, restA, restB);
    } else {
      found = compareStrings(*a, *b, 64);
    }
  }

  if (fb != nullptr) {
    *fb = found.firstbit() ? 1 : 0;
    comLCP = found.common;
  } else if (found.equal()) {
    return inputNumber(*a) > inputNumber(*b) ? 1 : 0;
  }
  return found.after() ? 1 : 0;
}

LcpEntry fittingEntry(int bits, int firstbit) {
  if (bits >= kLcpLimit) {
    die("two suffixes share %d bits: an LCP entry holds less than 2^30\n",
        bits);
  }
  return makeLcpEntry(bits, firstbit);
}

LcpEntry comparedEntry(int firstbit) { return fittingEntry(comLCP, firstbit); }
