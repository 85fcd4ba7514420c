// A place in the merge list found without walking it, for more streams than
// merge/few_streams.h looks at: the prefix words are searched for
// (merge/blocks.h), and where several suffixes share them all, their strings.
//
// The comparisons that a walk of the list would have made are counted
// afterwards (merge/walk_count.h).

#ifndef PALVOR_MERGE_MANY_STREAMS_H_
#define PALVOR_MERGE_MANY_STREAMS_H_

#include "sources/lcp_entry.h"

// Puts stream k in while priming.
void primeManyStreams(int k);

// Moves the head's stream k to the place of its new suffix, whose entry relates
// it to the suffix emitted last.
void moveHeadOfMany(int k, LcpEntry entry);

// Writes the list (merge/list.h), which is not kept up meanwhile.
void writeListOfMany();

#endif  // PALVOR_MERGE_MANY_STREAMS_H_
