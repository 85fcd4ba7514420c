#include "merge/heap.h"

#include <utility>

#include "merge/front.h"
#include "output/counters.h"
#include "sources/compare.h"
#include "support/memory.h"

constinit int* Heap = nullptr;
constinit int heapCounter = 0;

namespace {

bool sortsAfter(int a, int b) {
  nncmp++;
  return ZEPCompare(Suffixes[a], Suffixes[b], nullptr, 0) != 0;
}

}  // namespace

void allocateHeap(int k) { Heap = zeroedTable<int>(k, "the merge heap"); }

void insertIntoHeap(int i) {
  int position = heapCounter++;
  Heap[position] = i;
  while (position > 0) {
    const int parent = (position - 1) / 2;
    if (!sortsAfter(Heap[parent], i)) return;
    std::swap(Heap[parent], Heap[position]);
    position = parent;
  }
}

void adjHeap(int more) {
  if (more == 0) Heap[0] = Heap[--heapCounter];
  if (heapCounter < 2) return;
  const int moved = Heap[0];
  int position = 0;
  int child = 1;
  while (child < heapCounter) {
    if (child + 1 < heapCounter && sortsAfter(Heap[child], Heap[child + 1])) {
      child++;
    }
    if (!sortsAfter(moved, Heap[child])) break;
    Heap[position] = Heap[child];
    position = child;
    child = 2 * child + 1;
  }
  Heap[position] = moved;
}
