// What a finished tree is looked through for before it is written.

#ifndef PALVOR_OUTPUT_TREE_WALKS_H_
#define PALVOR_OUTPUT_TREE_WALKS_H_

// Records and links of a tree by kind.
struct TreeCounts {
  int nleaf = 0;  // leaf records, heads and members of groups
  int ntrlf = 0;  // leaf records that head a group
  int nintr = 0;  // internal records
  int nleft = 0;  // links to a left child
  int nrght = 0;  // links to a right child
  int nempt = 0;  // next links from an internal record: suffixes that end at
                  // a branching point
  int ndupl = 0;  // next links from a leaf: suffixes equal to another
};

// Counts the records of the tree in `treeBuff`.
TreeCounts countRecords();

// Copies the tree in `treeBuff` into `newtBuff` in preorder: each group in its
// order, then, after an internal head, its left subtree, then its right one.
// Only child indexes change.
void reorderTree();

#endif  // PALVOR_OUTPUT_TREE_WALKS_H_
