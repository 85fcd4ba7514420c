// The tree insertion: one suffix into the tree under construction
// (output/tree_buffer.h).
//
// The new suffix is larger than all before it and shares `lcp` bits with the
// largest of them, whose leaf ends the rightmost path: so its leaf belongs on
// that path at string depth `lcp`, and no string is ever compared.

#ifndef PALVOR_MERGE_TREE_INSERT_H_
#define PALVOR_MERGE_TREE_INSERT_H_

#include "sources/suffix.h"

// The path entry below which the last insertion branched off.
extern int currPath;

// Puts the first suffix, `len` bits long, into an empty tree (`nnode` is 1),
// and the tree's bounds into the divider record.
void startTree(const Suffix& suffix, int len);

// Puts a further suffix in. There must be room for two more records.
//   len  its length, in bits
//   lcp  bits that it shares with the suffix inserted before it
//   fb   1 if they part before the shorter one ends, else 0
// Ends the run if these contradict the order of the suffixes.
void insertSuffix(const Suffix& suffix, int len, int lcp, int fb);

#endif  // PALVOR_MERGE_TREE_INSERT_H_
