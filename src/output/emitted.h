// What the merge hands to the output: the suffix emitted now and the one
// before it, and the size of the buffers that both kinds of output fill.

#ifndef PALVOR_OUTPUT_EMITTED_H_
#define PALVOR_OUTPUT_EMITTED_H_

#include "sources/suffix.h"

// Capacity of the output buffer, in records (array mode) or tree nodes (tree
// mode). Set once, by initMerge.
extern int treeBuffSize;

// Copies, because a stream's refill may overwrite the record in its buffer.
// Written by the merge loop, once per suffix; all zero before the first.
extern Suffix currSuffix;
extern Suffix lastSuffix;

#endif  // PALVOR_OUTPUT_EMITTED_H_
