#include "merge/ordering.h"

constinit Placing placing = Placing::kByWalking;

void allocateOrdering(int k) {
  if (hpflag != 0) {
    allocateHeap(k);
    return;
  }
  allocateList(k);
  if (noprefix == 0 && k >= kFewestStreams && k <= kFewStreams) {
    placing = Placing::kAmongFew;
    prepareFewStreams();
  }
}
