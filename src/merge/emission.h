// The emission of a suffix, the same for both merge loops (merge/loop.cpp,
// merge/few_streams.cpp): into the merged array, or into the tree.

#ifndef PALVOR_MERGE_EMISSION_H_
#define PALVOR_MERGE_EMISSION_H_

#include "merge/refill.h"
#include "merge/tree_insert.h"
#include "output/array.h"
#include "output/compaction.h"
#include "output/counters.h"
#include "output/tree_buffer.h"
#include "output/tree_flush.h"
#include "run/options.h"
#include "sources/lcp_entry.h"
#include "sources/strings.h"
#include "sources/suffix.h"

// emit, without -a.
inline void emitIntoTree(const Suffix& suffix, LcpEntry entry) {
  const int len = remainingBits(suffix);
  if (nnode == 1) {
    startTree(suffix, len);
    return;
  }
  if (hpflag != 0) entry = emittedEntry();
  recordLcp(lcpBits(entry));
  insertSuffix(suffix, len, lcpBits(entry), lcpFirstbit(entry));
}

// Emits the suffix that `currSuffix` is a copy of. `entry` relates it to the
// suffix emitted before it, unless the heap is used, which does not know.
inline void emit(const Suffix& suffix, LcpEntry entry) {
  if (sarray != 0) {
    appendToArray(suffix, entry);
  } else {
    emitIntoTree(suffix, entry);
  }
}

// A suffix can take two records, so a tree is written before it is quite full.
inline bool treeIsFull() { return sarray == 0 && nnode > treeBuffSize - 2; }

// How many suffixes the tree can take without being full.
inline int treeRoom() { return (treeBuffSize - 2 - nnode) / 2; }

// Writes the tree, and begins the next one. `lastSuffix` must be its last.
inline void closeTree() {
  finalSplit();
  flushTree();
  if (compact != 0) clearHashSets();
}

#endif  // PALVOR_MERGE_EMISSION_H_
