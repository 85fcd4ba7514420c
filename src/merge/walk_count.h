// The comparisons that a walk of the list (merge/list.h) makes on its way to a
// place, counted without making them.
//
// Among the suffixes before the new one, let `common` be what each shares with
// it: the least of the stored lengths behind it, and of what the last one
// shares. A walk compares a suffix whose stored length is not above that; the
// stored length is then what was known, and `common` what is found.

#ifndef PALVOR_MERGE_WALK_COUNT_H_
#define PALVOR_MERGE_WALK_COUNT_H_

#include "merge/blocks.h"

// Comparisons.
struct WalkCount {
  int comparisons = 0;
  int found64 = 0;      // that found 64 common bits or more
  int found64More = 0;  // ... 64 bits more than were known
  int unchanged = 0;    // against a stream whose entry had not changed
  int settled = 0;      // settled by the prefix words
  long words = 0;       // of the strings, examined by the others
};

// Counts one, with the suffix at an index of a block: `known` bits were known,
// `common` are found. `bits` is the new suffix's length.
void countComparison(WalkCount& count, const Block& block, int index, int bits,
                     int known, int common);

// Counts those with the suffixes before a place, the last of which shares
// `common` bits with the new suffix, whose length is `bits`.
extern void (*const countWalk)(WalkCount& count, const Place& place, int bits,
                               int common);

#endif  // PALVOR_MERGE_WALK_COUNT_H_
