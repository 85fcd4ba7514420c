// What ordering the streams costs, as it is reported. No result depends on it.
//
// All is counted as a walk of the merge list (palvor/order/lcp_list.h) counts
// it, whether there was a walk or not.

#ifndef PALVOR_ORDER_COST_H_
#define PALVOR_ORDER_COST_H_

#include <cstdint>

#include "palvor/text/comparison.h"

namespace palvor {

struct Cost {
  int64_t comparisons = 0;  // made to order the streams
  int64_t positions = 0;    // of the list that were examined
  int64_t settled = 0;      // comparisons, also those that only tell common
                            // prefixes, settled by the prefix words
  int64_t words = 0;        // of the strings examined by the others

  // Comparisons of the list
  int64_t found64 = 0;      // that found 64 common bits or more
  int64_t found64More = 0;  // ... 64 bits more than were known
  int64_t unchanged = 0;    // ... against a stream whose entry had not changed

  // What a comparison took.
  void add(const Comparison& found) {
    settled += found.settled() ? 1 : 0;
    words += found.words;
  }

  // A comparison of the list that found `common` bits; `known` were known.
  void addListed(int known, int common, bool isUnchanged) {
    comparisons++;
    found64 += common >= 64 ? 1 : 0;
    found64More += common >= known + 64 ? 1 : 0;
    unchanged += isUnchanged ? 1 : 0;
  }

  Cost& operator+=(const Cost& other) {
    comparisons += other.comparisons;
    positions += other.positions;
    settled += other.settled;
    words += other.words;
    found64 += other.found64;
    found64More += other.found64More;
    unchanged += other.unchanged;
    return *this;
  }
};

}  // namespace palvor

#endif  // PALVOR_ORDER_COST_H_
