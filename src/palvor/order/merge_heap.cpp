#include "palvor/order/merge_heap.h"

#include <utility>

namespace palvor {

bool MergeHeap::sortsAfter(int a, int b) {
  const Suffix& suffixA = front_.suffixOf(a);
  const Suffix& suffixB = front_.suffixOf(b);
  const Comparison found = front_.compare(a, suffixA, b, suffixB, 0);
  front_.cost.comparisons++;
  front_.cost.add(found);
  return found.equal() ? inputNumber(suffixA) > inputNumber(suffixB)
                       : found.after();
}

void MergeHeap::prime(int k) {
  size_t position = heap_.size();
  heap_.push_back(k);
  while (position > 0) {
    const size_t parent = (position - 1) / 2;
    if (!sortsAfter(heap_[parent], k)) return;
    std::swap(heap_[parent], heap_[position]);
    position = parent;
  }
}

void MergeHeap::advanceHead() {
  if (!front_.streams[heap_.front()].advance()) {
    heap_.front() = heap_.back();
    heap_.pop_back();
  }
  if (heap_.size() > 1) siftDown();
}

void MergeHeap::siftDown() {
  const int moved = heap_.front();
  size_t position = 0;
  size_t child = 1;
  while (child < heap_.size()) {
    if (child + 1 < heap_.size() &&
        sortsAfter(heap_[child], heap_[child + 1])) {
      child++;
    }
    if (!sortsAfter(moved, heap_[child])) break;
    heap_[position] = heap_[child];
    position = child;
    child = 2 * child + 1;
  }
  heap_[position] = moved;
}

}  // namespace palvor
