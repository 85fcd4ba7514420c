// The merge heap: a binary min-heap of stream numbers, ordered by plain suffix
// comparisons from the first bit on. Equal suffixes go by input number. It
// keeps no LCP entries.
//
//             heap[0]             The children of position p stand at 2p + 1
//            /       \            and 2p + 2. No stream sorts after either of
//       heap[1]     heap[2]       its children.
//       /     \                 .
//   heap[3]  heap[4]

#ifndef PALVOR_ORDER_MERGE_HEAP_H_
#define PALVOR_ORDER_MERGE_HEAP_H_

#include <cstddef>
#include <vector>

#include "palvor/order/front.h"

namespace palvor {

class MergeHeap {
 public:
  explicit MergeHeap(Front& front) : front_(front) {
    heap_.reserve(static_cast<size_t>(front.streams.count()));
  }

  bool isEmpty() const { return heap_.empty(); }
  // The stream whose current suffix is the smallest. The heap must not be
  // empty.
  int head() const { return heap_.front(); }
  LcpEntry headEntry() const { return 0; }

  // Puts a stream in.
  void prime(int k);

  // Restores the heap after the head's suffix was emitted: its stream moves to
  // the place of its new suffix, or leaves if it has ended.
  void advanceHead();

 private:
  bool sortsAfter(int a, int b);
  void siftDown();

  Front& front_;
  std::vector<int> heap_;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_MERGE_HEAP_H_
