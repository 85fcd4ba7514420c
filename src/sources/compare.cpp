#include "sources/compare.h"

#include <algorithm>
#include <bit>

#include "run/options.h"
#include "sources/first_difference.h"
#include "sources/long_matches.h"
#include "sources/packing.h"
#include "sources/strings.h"
#include "support/report.h"

constinit int comLCP = 0;
constinit long long np2 = 0;
constinit double tngb = 0;

namespace {

// Where two suffixes part, after the bits passed over as known.
struct Parting {
  int bit;  // first differing bit; only if they differ
  bool differ;
  bool after;  // a has the 1 there
};

// Compares slices `from` to `to` - 1, if any; see firstDifference.
inline Parting compareSlices(Stretch a, Stretch b, int from, int to) {
  // What is said to be known can be more than there is.
  if (from >= to) return {0, false, false};
  const int w = firstDifference(a, b, from, to);
  if (w == to) return {0, false, false};
  const uint32_t x = a.slice(w);
  const uint32_t y = b.slice(w);
  return {32 * w + nb32(x ^ y), true, x > y};
}

// Slices compared before the long matches are asked: a shorter match is read
// sooner than looked up.
constexpr int kPatience = 128;

// Compares slices kPatience to n - 1 of the stretches that begin at two places
// and are `common` bits long, passing over what is known to match.
[[gnu::noinline]] Parting compareOn(BitPlace placeA, Stretch a, BitPlace placeB,
                                    Stretch b, int n, int common) {
  Parting parting{};
  int readTo = n;  // slices before it were read
  int w = kPatience;
  while (w < n && !parting.differ) {
    const auto bits = static_cast<uint32_t>(32 * w);
    const uint32_t known = knownMatch({placeA.input, placeA.bit + bits},
                                      {placeB.input, placeB.bit + bits});
    if (known >= 32) {
      readTo = std::min(readTo, w);
      w += static_cast<int>(known / 32);
    }
    const int next = std::min(n, w + kPatience);
    parting = compareSlices(a, b, w, next);
    w = next;
  }
  const int equal = parting.differ ? std::min(parting.bit, common) : common;
  rememberMatch(placeA, placeB, static_cast<uint32_t>(equal),
                static_cast<uint32_t>(std::min(32 * readTo, equal)));
  return parting;
}

// Compares one word of each, `w` words after the start.
inline Parting compareWords(uint32_t x, uint32_t y, int w) {
  return {32 * w + nb32(x ^ y), true, x > y};
}

// Zero bits follow the end of a string, so a difference past the shorter
// suffix's end still says which is the longer.
inline Comparison conclude(const Parting& parting, int restA, int restB,
                           int skip) {
  const int shorter = std::min(restA, restB);
  const bool inside = parting.differ && parting.bit < shorter - skip;
  return {inside ? skip + parting.bit : shorter, inside,
          parting.differ ? parting.after : restA > restB,
          !parting.differ && restA == restB};
}

// Words that cover `bits` bits; not above 0 if there are none.
inline int wordsOver(int bits) { return ((bits - 1) >> 5) + 1; }

}  // namespace

Comparison compareStrings(const Suffix& a, const Suffix& b, int known) {
  const int restA = remainingBits(a);
  const int restB = remainingBits(b);
  const unsigned startA = 2 * a.pos;
  // The longest step within the known bits that takes a to a word boundary.
  const unsigned skip =
      noprefix == 0 ? ((static_cast<unsigned>(known) + startA) & ~31U) - startA
                    : 0;
  const BitPlace placeA = {inputNumber(a), startA + skip};
  const BitPlace placeB = {inputNumber(b), 2 * b.pos + skip};
  const Stretch readA(binaryString[placeA.input], placeA.bit);
  const Stretch readB(binaryString[placeB.input], placeB.bit);
  const int rest = std::min(restA, restB) - static_cast<int>(skip);
  const int words = wordsOver(rest);
  Parting parting = compareSlices(readA, readB, 0, std::min(words, kPatience));
  if (!parting.differ && words > kPatience) {
    parting = compareOn(placeA, readA, placeB, readB, words, rest);
  }
  // Words passed over as known to match count as examined.
  tngb += parting.differ ? (parting.bit >> 5) + 1 : std::max(words, 0);
  return conclude(parting, restA, restB, static_cast<int>(skip));
}

int ZEPCompare(const Suffix* a, const Suffix* b, int* fb, int known) {
  const int restA = remainingBits(*a);
  const int restB = remainingBits(*b);
  bool settled = false;  // by the prefix words
  Comparison found{};
  if (noprefix == 0 && known <= 63) {
    const int words = wordsOver(std::min(restA, restB));
    Parting parting{};
    settled = true;
    if (a->prefix0 != b->prefix0) {
      parting = compareWords(a->prefix0, b->prefix0, 0);
    } else if (words > 1 && a->prefix1 != b->prefix1) {
      parting = compareWords(a->prefix1, b->prefix1, 1);
    } else if (words > 2) {
      settled = false;
      known = 64;
    }
    if (settled) found = conclude(parting, restA, restB, 0);
  }
  if (settled) {
    np2++;
  } else {
    found = compareStrings(*a, *b, known);
  }

  if (fb != nullptr) {
    *fb = found.firstbit ? 1 : 0;
    comLCP = found.common;
  } else if (found.equal) {
    return inputNumber(*a) > inputNumber(*b) ? 1 : 0;
  }
  return found.after ? 1 : 0;
}

LcpEntry fittingEntry(int bits, int firstbit) {
  if (bits >= kLcpLimit) {
    die("two suffixes share %d bits: an LCP entry holds less than 2^30\n",
        bits);
  }
  return makeLcpEntry(bits, firstbit);
}

LcpEntry comparedEntry(int firstbit) { return fittingEntry(comLCP, firstbit); }
