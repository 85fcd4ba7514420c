#include "merge/loop.h"

#include "merge/front.h"
#include "merge/ordering.h"
#include "merge/refill.h"
#include "output/array.h"
#include "output/counters.h"
#include "output/emitted.h"
#include "run/options.h"
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
  moveHead(k, hpflag != 0 ? 0 : refillEntry(k));
  nsuff++;
}

}  // namespace

int mergeSuffixArrays() {
  tstart = mclock();
  rstart = rclock();
  for (int k = headStream(); k >= 0; k = headStream()) {
    currSuffix = *Suffixes[k];
    appendToArray(currSuffix, headEntry());
    refill(k);
    lastSuffix = currSuffix;
  }
  flushArray(1);
  if (quiet == 0) reportTotals();
  return 0;
}
