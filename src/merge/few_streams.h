// The merge loop for up to 64 streams: the listed suffixes as rows that are
// looked at as a whole, instead of a list that is walked.
//
// The prefix words of all listed suffixes stand side by side, in order, and one
// look at all of them tells how many sort before a new suffix: that is its
// place. The comparisons that a walk of the list (merge/list.h) would have made
// follow from the stored lengths, so that all is counted as if it had walked:
// it compares a suffix where the new one shares more bits with it than its
// stored length says,
//
//   new suffix   GATTACA           stored length, in bits
//   listed       CCATCAT           -     differs at once: passed
//                GATCCCC           0     shares 6 bits with GATTACA: compared
//                GATTAAA           6     shares 11 bits: compared
//                TTTTTTT           0     shares 0 bits: not more, the walk ends
//
// Only among suffixes of equal prefix words is there something left to walk,
// and for suffixes that are shorter than these, or begin with one that is.

#ifndef PALVOR_MERGE_FEW_STREAMS_H_
#define PALVOR_MERGE_FEW_STREAMS_H_

constexpr int kFewStreams = 64;  // as many as a word has bits

// Whether this processor (support/processor.h) has the instructions for it.
bool canMergeFewStreams();

// Merges the streams that are in the list, of which there are k at most, as the
// merge loop does (merge/loop.h). Returns when they have ended, or when they
// are found not to ascend (merge/refill.h): then what is left is in the list.
void mergeFewStreams(int k);

#endif  // PALVOR_MERGE_FEW_STREAMS_H_
