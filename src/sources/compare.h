// The one suffix order. Every file palvor writes is in the order defined here.
//
// A suffix is compared as a bit string (sources/packing.h). Reading from the
// left,
//   - at the first bit that differs, the suffix with the 0 sorts first;
//   - if one suffix ends first, the shorter sorts first;
//   - if both end together they are equal, and `fb` below decides.
//
// Lengths are in bits, and may be odd: CAT is 010011 and CAG is 010010, so
// they share 5 bits, and CAT sorts after CAG.

#ifndef PALVOR_SOURCES_COMPARE_H_
#define PALVOR_SOURCES_COMPARE_H_

#include <algorithm>
#include <bit>

#include "run/options.h"
#include "sources/compare_strings.h"
#include "sources/lcp_entry.h"
#include "sources/strings.h"
#include "sources/suffix.h"

// Common prefix, in bits, found by the last call that had an `fb`. Written by
// ZEPCompare alone; read it before the next call.
extern int comLCP;

// Work done, for the statistics lines only: no result depends on these.
// Counted by ZEPCompare and compareSuffixes, and by the ordering of the streams
// for comparisons that it could do without.
// Beside them stands tngb (sources/compare_strings.h).
extern long long np2;  // calls settled by the prefix words, since a flush

// Leading zero bits of a nonzero word; of the exclusive or of two words, the
// number of bits by which they start alike.
inline int nb32(unsigned x) { return std::countl_zero(x); }

// Returns 1 if `a` sorts after `b`, else 0.
//
// fb     null: order alone is wanted, and of two equal suffixes the one with
//        the higher input number sorts after.
//        Otherwise *fb becomes 1 if they part before the shorter one ends,
//        else 0; comLCP is set; and equal suffixes give 0 both ways round.
// known  bits the caller knows to be shared, 0 if none. It is trusted: a value
//        above the true common prefix gives a wrong order, not an error.
//
// Reads the strings and their lengths (sources/strings.h), which must be
// loaded, up to one word past a string's last character: the zero word that
// ends every string allows it. The option `noprefix` (run/options.h) changes
// the route, never the answer. Both records must have an input number below
// `ninputs` and a position inside that input.
int ZEPCompare(const Suffix* a, const Suffix* b, int* fb, int known);

// As ZEPCompare with an `fb`. Where the prefix words differ, as they do for
// most suffixes, it is settled here and now.
inline int compareSuffixes(const Suffix* a, const Suffix* b, int* fb,
                           int known) {
  const int64_t keyA = prefixKey(*a);
  const int64_t keyB = prefixKey(*b);
  const int shorter = std::min(remainingBits(*a), remainingBits(*b));
  if (keyA == keyB || shorter < 64 || known > 63 || noprefix != 0) {
    return ZEPCompare(a, b, fb, known);
  }
  np2++;
  *fb = 1;
  comLCP = std::countl_zero(static_cast<uint64_t>(keyA ^ keyB));
  return keyA > keyB ? 1 : 0;
}

// As ZEPCompare with an `fb`, for suffixes of equal prefix words that are 64
// bits long or more, without `noprefix`. Leaves comLCP alone.
inline Comparison compareEqualKeys(const Suffix& a, const Suffix& b,
                                   int known) {
  if (known < 64) {
    const int bitsA = remainingBits(a);
    const int bitsB = remainingBits(b);
    if (std::min(bitsA, bitsB) == 64) {
      np2++;
      return {64, bitsA > bitsB    ? Comparison::kAfter
                  : bitsA == bitsB ? Comparison::kEqual
                                   : 0};
    }
    known = 64;
  }
  return compareStrings(a, b, known);
}

// What ZEPCompare counts, without `noprefix`, when it compares `a` with another
// suffix, `known` bits being known, and finds that they share `common` bits;
// `shorter` is the shorter one's length, in bits. First whether the prefix
// words settle it (np2), then, if not, the words examined (tngb).
inline bool isSettledByPrefix(int shorter, int known, int common) {
  return known < 64 && (common < 64 || shorter <= 64);
}

inline int wordsExamined(uint32_t posA, int shorter, int known, int common) {
  const int skip = firstBitExamined(posA, std::max(known, 64));
  const int last = std::min(common, shorter - 1);
  return std::max(((last - skip) >> 5) + 1, 0);
}

// An LCP entry. A common prefix of 2^30 bits or more does not fit and ends the
// run.
LcpEntry fittingEntry(int bits, int firstbit);

// The LCP entry of the last call that had an `fb`, with the firstbit that it
// gave; as fittingEntry.
LcpEntry comparedEntry(int firstbit);

#endif  // PALVOR_SOURCES_COMPARE_H_
