// The merge heap: a binary min-heap of stream numbers, ordered by plain suffix
// comparisons from the first bit on. Equal suffixes go by input number.
//
//             Heap[0]             The children of position p stand at 2p + 1
//            /       \            and 2p + 2. No stream sorts after either of
//       Heap[1]     Heap[2]       its children.
//       /     \                 .
//   Heap[3]  Heap[4]

#ifndef PALVOR_MERGE_HEAP_H_
#define PALVOR_MERGE_HEAP_H_

// Written by the functions below alone.
extern int* Heap;        // room for every stream; null without `hpflag`
extern int heapCounter;  // streams in the heap

// Allocates an empty heap for k streams.
void allocateHeap(int k);

// Inserts stream i, whose current suffix is Suffixes[i].
void insertIntoHeap(int i);

// Restores the heap after the suffix of stream Heap[0] was emitted: `more` is
// nonzero if that stream has a new current suffix, 0 if it leaves the heap.
// The heap must not be empty.
void adjHeap(int more);

#endif  // PALVOR_MERGE_HEAP_H_
