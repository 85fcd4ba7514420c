#include "merge/loop.h"

#include "merge/front.h"
#include "merge/ordering.h"
#include "merge/refill.h"
#include "merge/tree_insert.h"
#include "output/array.h"
#include "output/compaction.h"
#include "output/counters.h"
#include "output/emitted.h"
#include "output/tree_buffer.h"
#include "output/tree_flush.h"
#include "run/options.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/clocks.h"

namespace {

// Takes stream k's next suffix, and puts the stream, whose suffix was emitted,
// back into the ordering; or takes the stream out if it has ended.
inline void refill(int k) {
  Suffixes[k] = getNextSuf(k);
  if (Suffixes[k] == nullptr) {
    dropHead();
    return;
  }
  if (lcpBits(headEntry()) >= 64) prefetchAhead(k);
  moveHead(k, hpflag != 0 ? 0 : refillEntry(k));
  nsuff++;
}

// Inserts the suffix into the tree.
inline void emitIntoTree() {
  const int len = remainingBits(currSuffix);
  if (nnode == 1) {
    startTree(currSuffix, len);
    return;
  }
  const LcpEntry entry = hpflag != 0 ? emittedEntry() : headEntry();
  recordLcp(lcpBits(entry));
  insertSuffix(currSuffix, len, lcpBits(entry), lcpFirstbit(entry));
}

inline void emit() {
  if (sarray != 0) {
    appendToArray(currSuffix, headEntry());
  } else {
    emitIntoTree();
  }
}

void closeTree() {
  finalSplit();
  flushTree();
  if (compact != 0) clearHashSets();
}

// A suffix can take two records, so a tree is written before it is quite full.
inline bool treeIsFull() { return sarray == 0 && nnode > treeBuffSize - 2; }

}  // namespace

int mergeSuffixArrays() {
  tstart = mclock();
  rstart = rclock();
  for (int k = headStream(); k >= 0; k = headStream()) {
    currSuffix = *Suffixes[k];
    emit();
    refill(k);
    lastSuffix = currSuffix;
    if (treeIsFull()) closeTree();
  }
  if (sarray != 0) {
    flushArray(1);
  } else if (nnode > 1) {
    closeTree();
  }
  if (quiet == 0) reportTotals();
  return 0;
}
