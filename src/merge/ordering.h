// The ordering of the streams by their current suffixes, as the merge loop
// sees it: a head to take, and a place to put a stream's next suffix.
//
// Behind it stand the merge list (merge/list.h), which hands out LCP entries
// on the side, or with `hpflag` the merge heap (merge/heap.h), which has none.
// A suffix's place in the list is found by its prefix words
// (merge/few_streams.h, merge/many_streams.h) where they can be relied on, else
// by walking it: the list, the entries and all that is counted are the same.

#ifndef PALVOR_MERGE_ORDERING_H_
#define PALVOR_MERGE_ORDERING_H_

#include "merge/few_streams.h"
#include "merge/heap.h"
#include "merge/list.h"
#include "merge/many_streams.h"
#include "merge/refill.h"
#include "run/options.h"
#include "sources/lcp_entry.h"

// How places in the list are found.
enum class Placing { kByWalking, kAmongFew, kAmongMany };
extern Placing placing;

// Allocates the chosen structure for k streams, empty.
void allocateOrdering(int k);

// Puts a stream in while priming: nothing is known of its suffix.
inline void primeStream(int k) {
  if (hpflag != 0) {
    insertIntoHeap(k);
  } else if (placing == Placing::kAmongFew) {
    primeFewStreams(k);
  } else if (placing == Placing::kAmongMany) {
    primeManyStreams(k);
  } else {
    addList(k);
  }
}

// The stream whose current suffix is the smallest, or -1 if no stream is left.
inline int headStream() {
  if (hpflag != 0) return heapCounter > 0 ? Heap[0] : -1;
  return Lfst;
}

// The LCP entry of the head's suffix with the suffix emitted last; 0 with the
// heap, which keeps none.
inline LcpEntry headEntry() { return hpflag != 0 ? 0 : LLCP[Lfst]; }

// The head's stream k has a new current suffix: moves it to its place. With
// the list, `entry` relates that suffix to the one just emitted.
inline void moveHead(int k, LcpEntry entry) {
  if (hpflag != 0) {
    adjHeap(1);
  } else if (placing == Placing::kByWalking || !streamsAscend) {
    moveHeadByWalk(k, entry);
  } else if (placing == Placing::kAmongFew) {
    moveHeadOfFew(k, entry);
  } else {
    moveHeadOfMany(k, entry);
  }
}

// The head's stream has ended: takes it out.
inline void dropHead() {
  if (hpflag != 0) {
    adjHeap(0);
  } else if (placing == Placing::kByWalking || !streamsAscend) {
    addList(-1);
  } else if (placing == Placing::kAmongFew) {
    dropHeadOfFew();
  } else {
    dropHeadOfMany();
  }
}

#endif  // PALVOR_MERGE_ORDERING_H_
