#include "merge/loop.h"

#include "merge/emission.h"
#include "merge/few_streams.h"
#include "merge/front.h"
#include "merge/ordering.h"
#include "merge/refill.h"
#include "output/counters.h"
#include "output/emitted.h"
#include "output/tree_buffer.h"
#include "run/options.h"
#include "run/values.h"
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
  if (lcpBits(headEntry()) >= 64) prefetchAhead(k, 2 * kCacheLineWords);
  moveHead(k, hpflag != 0 ? 0 : refillEntry(k));
  nsuff++;
}

}  // namespace

int mergeSuffixArrays() {
  tstart = mclock();
  rstart = rclock();
  if (canBeRows()) mergeFewStreams(streamCount());
  for (int k = headStream(); k >= 0; k = headStream()) {
    currSuffix = *Suffixes[k];
    emit(currSuffix, headEntry());
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
