// What a finished tree is looked through for before it is written.

#ifndef PALVOR_SINK_TREE_WALKS_H_
#define PALVOR_SINK_TREE_WALKS_H_

#include <span>

#include "palvor/format/tree_node.h"

namespace palvor {

// Records and links of a tree by kind.
struct TreeCounts {
  int leaves = 0;        // leaf records, heads and members of groups
  int leafHeads = 0;     // leaf records that head a group
  int internal = 0;      // internal records
  int left = 0;          // links to a left child
  int right = 0;         // links to a right child
  int endsAtBranch = 0;  // next links from an internal record: suffixes that
                         // end at a branching point
  int duplicates = 0;    // next links from a leaf: suffixes equal to another
};

// Counts the records of a tree.
TreeCounts countRecords(std::span<const TreeNode> tree);

// Copies a tree to `copy`, which has room for as many records, in preorder:
// each group in its order, then, after an internal head, its left subtree, then
// its right one. Only child indexes change.
void reorderTree(const TreeNode* tree, TreeNode* copy);

}  // namespace palvor

#endif  // PALVOR_SINK_TREE_WALKS_H_
