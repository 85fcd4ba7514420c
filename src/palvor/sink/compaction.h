// Compaction statistics: how many distinct values the links of a tree take.
// Every link is registered once, when it becomes final, in one of three hash
// sets of 32-bit keys:
//
//   kLeft   offsets to left children: child's index minus parent's index
//   kRight  offsets to right children
//   kEdge   edge lengths, in bits, of the links' internal child records
//
// Indexes are those of creation order, whether or not the tree is reordered.
// Nothing of this reaches a file.

#ifndef PALVOR_SINK_COMPACTION_H_
#define PALVOR_SINK_COMPACTION_H_

#include "palvor/io/memory.h"

namespace palvor {

class Compaction {
 public:
  enum Set { kLeft, kRight, kEdge };

  // Of a set, since the sets were cleared.
  struct Counts {
    int registrations = 0;
    int distinct = 0;
    int probes = 0;  // steps past a slot that holds another key
  };

  // The sets use no memory until they are first cleared or registered in.
  Compaction();

  // Registers a key, never 0. Fails if the set already holds as many keys as
  // it has room for, 319993.
  void add(Set set, int key);

  const Counts& countsOf(Set set) const { return counts_[set]; }

  // Empties the sets and zeroes their counts.
  void clear();

 private:
  Block<int> keys_;  // of the three sets one after the other; 0: an empty slot
  Counts counts_[3];
};

}  // namespace palvor

#endif  // PALVOR_SINK_COMPACTION_H_
