// The tree under construction, and its rightmost path.
//
// Suffixes come in ascending order, so every change happens on the path from
// the root to the leaf inserted last; what has left the path is finished.

#ifndef PALVOR_OUTPUT_TREE_BUFFER_H_
#define PALVOR_OUTPUT_TREE_BUFFER_H_

#include "output/tree_node.h"

// Tree mode only. Written by the tree insertion (merge/tree_insert.h); the
// flush (output/tree_flush.h) takes `nnode` back to 1.
extern TreeNode* treeBuff;  // `treeBuffSize` records; record 0 is the root
extern int nnode;           // records in use; 1 if there is no suffix yet

// Only with `reorder`: as many records, for the copy in traversal order.
extern TreeNode* newtBuff;

struct PathEntry {
  TreeNode* node;  // in treeBuff
  int depth;       // its string depth, in bits
  int height;      // child links down to the deepest record below it, as far
                   // as what is below it has left the path
};
static_assert(sizeof(PathEntry) == 16);

// The path from the root (entry 0, never changed but for its height) to the
// head of the group of the leaf inserted last (top entry). Depths strictly
// increase. Written by the tree insertion.
extern PathEntry* lastPath;
extern int pathCounter;  // entries in use
extern int maxPathlen;   // entries there is room for: 1024, unless it grew

// Allocates the buffers for an empty tree. The run ends if they can't be had.
void allocateTreeBuffers();

// Makes room for at least `entries` path entries. Ordinary data never need
// more than there are; highly repetitive text does.
void growPath(int entries);

// Takes the entries above index `j` off the path's heights: returns the height
// that entry j + 1 has then, all below it being finished, or -1 if entry j is
// the top. The entries themselves stay.
int heightAbove(int j);

inline int indexOf(const TreeNode* node) {
  return static_cast<int>(node - treeBuff);
}

#endif  // PALVOR_OUTPUT_TREE_BUFFER_H_
