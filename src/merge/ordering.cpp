#include "merge/ordering.h"

#include "merge/blocks.h"
#include "merge/few_streams.h"
#include "run/values.h"

constinit bool amongMany = false;

namespace {

// A list of so few is sooner walked than searched.
constexpr int kShortList = 16;

// The most streams that a list is walked for, or rows stand for it.
int mostListed() { return canMergeFewStreams() ? kFewStreams : kShortList; }

}  // namespace

void allocateOrdering(int k) {
  if (hpflag != 0) {
    allocateHeap(k);
    return;
  }
  allocateList(k);
  amongMany = noprefix == 0 && k > mostListed() && k <= kManyStreams;
}

void stopPlacingAmongMany() {
  writeListOfMany();
  amongMany = false;
}

bool canBeRows() {
  return hpflag == 0 && noprefix == 0 && streamCount() <= kFewStreams &&
         canMergeFewStreams();
}
