// A place in the merge list found without walking it, for up to 16 streams.
//
// The prefix words of all listed suffixes are held together, and one look at
// all of them tells how many sort before a new suffix: that is its place. The
// comparisons that a walk of the list (merge/list.h) would have made follow
// from the stored lengths, so that all is counted as if it had walked: it
// compares a suffix where the new one shares more bits with it than its stored
// length says,
//
//   new suffix   GATTACA           stored length, in bits
//   listed       CCATCAT           -     differs at once: passed
//                GATCCCC           0     shares 6 bits with GATTACA: compared
//                GATTAAA           6     shares 11 bits: compared
//                TTTTTTT           0     shares 0 bits: not more, the walk ends
//
// Where prefix words do not tell all, since some are equal or a suffix ends
// within them, the list is walked. What is kept here beside the list stays
// true either way.

#ifndef PALVOR_MERGE_FEW_STREAMS_H_
#define PALVOR_MERGE_FEW_STREAMS_H_

#include "sources/lcp_entry.h"

// With fewer streams than the first, a walk is as short.
constexpr int kFewestStreams = 5;
constexpr int kFewStreams = 16;

// Begins with an empty list.
void prepareFewStreams();

// Puts stream k into the list while priming.
void primeFewStreams(int k);

// Moves the head's stream k to the place of its new suffix, whose entry relates
// it to the suffix emitted last.
void moveHeadOfFew(int k, LcpEntry entry);

// Takes the head's stream out.
void dropHeadOfFew();

#endif  // PALVOR_MERGE_FEW_STREAMS_H_
