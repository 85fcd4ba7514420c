// Compaction statistics (-C): how many distinct values the links of a tree
// take. Every link is registered once, when it becomes final, in one of three
// hash sets of 32-bit keys:
//
//   set 0  offsets to left children: child's index minus parent's index
//   set 1  offsets to right children
//   set 2  edge lengths, in bits, of the links' internal child records
//
// Indexes are those of creation order, whether or not the tree is reordered.
// Nothing of this reaches a file.

#ifndef PALVOR_OUTPUT_COMPACTION_H_
#define PALVOR_OUTPUT_COMPACTION_H_

// Per set, since the sets were cleared; written by addHT.
extern int hset[3];  // registrations
extern int hacc[3];  // distinct keys
extern int hcol[3];  // probe steps past a slot that holds another key

// Registers a key, never 0, in set 0, 1 or 2. A set that already holds 319993
// keys ends the run.
void addHT(int set, int key);

// Registers the link from path entry m to entry m + 1 (output/tree_buffer.h).
void registerLink(int m);

// Registers every link of the current path, from its end to the root. Does
// nothing unless `compact` is set.
void finalSplit();

// Empties the sets and zeroes their counters.
void clearHashSets();

#endif  // PALVOR_OUTPUT_COMPACTION_H_
