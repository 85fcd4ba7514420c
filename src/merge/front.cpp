#include "merge/front.h"

#include "merge/ordering.h"
#include "output/array.h"
#include "output/counters.h"
#include "output/tree_buffer.h"
#include "run/options.h"
#include "run/values.h"
#include "sources/lcp_streams.h"
#include "sources/suffix_streams.h"
#include "support/memory.h"

constinit Suffix** Suffixes = nullptr;
constinit int maxIterations = 0;

void initMerge() {
  const int k = streamCount();
  Suffixes = zeroedTable<Suffix*>(k, "the merge front");
  allocateOrdering(k);
  maxIterations = maxIter != 0 ? maxIter : 25000;
  treeBuffSize = outBuffSize;
  if (sarray != 0) {
    allocateArrayBuffers();
  } else {
    allocateTreeBuffers();
  }

  for (int i = 0; i < k; i++) {
    Suffixes[i] = getNextSuf(i);
    if (Manzini != 0) getNextLCP(i);  // entry 0 describes no pair
    if (Suffixes[i] == nullptr) continue;
    primeStream(i);
    nsuff++;
  }
}
