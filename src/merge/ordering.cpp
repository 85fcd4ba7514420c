#include "merge/ordering.h"

#include "merge/blocks.h"
#include "merge/few_streams.h"
#include "run/values.h"

constinit bool amongMany = false;

void allocateOrdering(int k) {
  if (hpflag != 0) {
    allocateHeap(k);
    return;
  }
  allocateList(k);
  amongMany = noprefix == 0 && k > kFewStreams && k <= kManyStreams;
}

void stopPlacingAmongMany() {
  writeListOfMany();
  amongMany = false;
}

bool canBeRows() {
  return hpflag == 0 && noprefix == 0 && streamCount() <= kFewStreams &&
         canMergeFewStreams();
}
