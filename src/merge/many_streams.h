// A place in the merge list found without walking it, for more streams than
// merge/few_streams.h looks at: the prefix words are searched for
// (merge/blocks.h), and where several suffixes share them all, their strings.
//
// The comparisons that a walk of the list (merge/list.h) would have made are
// counted afterwards, from the place back to the head: with x the suffixes
// before the new one, and `shared` what x and the new suffix share, a walk
// compares x where its stored length is not above `shared`, and the suffix
// before x then shares just that length with the new one.

#ifndef PALVOR_MERGE_MANY_STREAMS_H_
#define PALVOR_MERGE_MANY_STREAMS_H_

#include "sources/lcp_entry.h"

// Puts stream k into the list while priming.
void primeManyStreams(int k);

// Moves the head's stream k to the place of its new suffix, whose entry relates
// it to the suffix emitted last.
void moveHeadOfMany(int k, LcpEntry entry);

// Takes the head's stream out.
void dropHeadOfMany();

#endif  // PALVOR_MERGE_MANY_STREAMS_H_
