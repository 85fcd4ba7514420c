// The ordering of the streams by their current suffixes, as the merge loop
// sees it: a head to take, and a place to put a stream's next suffix.
//
// Behind it stand the merge list (merge/list.h), which hands out LCP entries
// on the side, or with `hpflag` the merge heap (merge/heap.h), which has none.
// A suffix's place in the list is found by walking it, or among many streams by
// its prefix words (merge/many_streams.h) where they can be relied on: the
// list, the entries and all that is counted are the same. Few streams have a
// loop of their own (merge/few_streams.h), and come back to this one as a list.

#ifndef PALVOR_MERGE_ORDERING_H_
#define PALVOR_MERGE_ORDERING_H_

#include "merge/blocks.h"
#include "merge/front.h"
#include "merge/heap.h"
#include "merge/list.h"
#include "merge/many_streams.h"
#include "merge/refill.h"
#include "run/options.h"
#include "sources/lcp_entry.h"
#include "sources/strings.h"

// Whether places are found by prefix words. Written by the two functions below.
extern bool amongMany;

// Allocates the chosen structure for k streams, empty.
void allocateOrdering(int k);

// Goes on with the list.
void stopPlacingAmongMany();

// Whether mergeFewStreams can merge the streams.
bool canBeRows();

// Puts a stream in while priming: nothing is known of its suffix.
inline void primeStream(int k) {
  if (hpflag != 0) {
    insertIntoHeap(k);
  } else if (amongMany && !prefixGoesOn(*Suffixes[k])) {
    primeManyStreams(k);
  } else {
    if (amongMany) stopPlacingAmongMany();
    addList(k);
  }
}

// The stream whose current suffix is the smallest, or -1 if no stream is left.
inline int headStream() {
  if (hpflag != 0) return heapCounter > 0 ? Heap[0] : -1;
  if (amongMany) return blockCount > 0 ? streamAt(firstPlace()) : -1;
  return Lfst;
}

// The LCP entry of the head's suffix with the suffix emitted last; 0 with the
// heap, which keeps none.
inline LcpEntry headEntry() {
  if (hpflag != 0) return 0;
  return amongMany ? entryAt(firstPlace()) : LLCP[Lfst];
}

// The head's stream k has a new current suffix: moves it to its place. With
// the list, `entry` relates that suffix to the one just emitted.
inline void moveHead(int k, LcpEntry entry) {
  if (amongMany && !streamsAscend) stopPlacingAmongMany();
  if (hpflag != 0) {
    adjHeap(1);
  } else if (amongMany) {
    moveHeadOfMany(k, entry);
  } else {
    moveHeadByWalk(k, entry);
  }
}

// The head's stream has ended: takes it out.
inline void dropHead() {
  if (hpflag != 0) {
    adjHeap(0);
  } else if (amongMany) {
    takeFirst();
  } else {
    addList(-1);
  }
}

#endif  // PALVOR_MERGE_ORDERING_H_
