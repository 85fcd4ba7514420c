// Where two suffixes part, by their strings alone.

#ifndef PALVOR_SOURCES_COMPARE_STRINGS_H_
#define PALVOR_SOURCES_COMPARE_STRINGS_H_

#include <cstdint>

#include "sources/suffix.h"

// Words of the strings examined, over the whole run, for the statistics lines
// only. Counted by compareStrings, and by the ordering of the streams for
// comparisons that it could do without.
extern double tngb;

// What a comparison finds.
struct Comparison {
  static constexpr int kFirstbit = 1;
  static constexpr int kAfter = 2;
  static constexpr int kEqual = 4;

  int common;  // bits that the suffixes share
  int how;     // the sum of what is true of these:

  // They part before the shorter one ends.
  bool firstbit() const { return (how & kFirstbit) != 0; }
  // The first one sorts after the second.
  bool after() const { return (how & kAfter) != 0; }
  // Neither sorts after the other.
  bool equal() const { return (how & kEqual) != 0; }
};

// Compares two suffixes without a look at their prefix words. `known` bits, 64
// or more, are known to be equal: it begins at the last word boundary of `a`
// within them. Words that long matches (sources/long_matches.h) tell to be
// equal count as examined.
//
// Reads the strings and their lengths (sources/strings.h), up to one word past
// a string's last character: the zero word that ends every string allows it.
extern Comparison (*const compareStrings)(const Suffix& a, const Suffix& b,
                                          int known);

// The first bit that compareStrings examines: a word of the string of `a`,
// whose position is given, begins with it.
inline int firstBitExamined(uint32_t posA, int known) {
  return known -
         static_cast<int>((static_cast<unsigned>(known) + 2 * posA) & 31);
}

// As compareStrings, from the first bit on.
Comparison compareWholeStrings(const Suffix& a, const Suffix& b);

#endif  // PALVOR_SOURCES_COMPARE_STRINGS_H_
