#include "merge/ordering.h"

#include "merge/blocks.h"

constinit Placing placing = Placing::kByWalking;

void allocateOrdering(int k) {
  if (hpflag != 0) {
    allocateHeap(k);
    return;
  }
  allocateList(k);
  // Without prefix words, or with hardly any stream, there is just the walk.
  if (noprefix != 0 || k < kFewestStreams || k > kManyStreams) return;
  if (k <= kFewStreams) {
    placing = Placing::kAmongFew;
    prepareFewStreams();
  } else {
    placing = Placing::kAmongMany;
  }
}
