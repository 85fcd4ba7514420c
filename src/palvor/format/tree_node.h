// The tree node record, of which every suffix tree partition consists, in
// memory and, unchanged, in its .stree file.
//
// A tree is a binary, path-compressed trie over the bit strings of suffixes:
// an internal record branches on the bit that follows its string depth, 0 to
// the left and 1 to the right; every leaf is one suffix. Suffixes that end at
// the same point of the tree form a group: consecutive records, each but the
// last with the next bit. The first of a group is its head, the only one that
// a parent points at; the others are leaves without children, and all have the
// head's edge.
//
//   word    internal record               leaf record
//   edge    bits on the edge that leads   the same
//           here from the parent
//   left    left child << 2, bit 1 next   input number << 2, bit 1 next bit,
//           bit, bit 0 zero               bit 0 one: the leaf bit
//   right   right child << 2              the suffix's two flag bits
//
// A child is an index of a record of the same tree; 0, the root's, means none.

#ifndef PALVOR_FORMAT_TREE_NODE_H_
#define PALVOR_FORMAT_TREE_NODE_H_

#include <cstdint>

namespace palvor {

struct TreeNode {
  uint32_t edge;
  uint32_t left;
  uint32_t right;
};
static_assert(sizeof(TreeNode) == 12);

constexpr uint32_t kLeafBit = 1;
constexpr uint32_t kNextBit = 2;

inline bool isLeaf(const TreeNode& node) { return (node.left & kLeafBit) != 0; }
inline bool hasNext(const TreeNode& node) {
  return (node.left & kNextBit) != 0;
}

// Children of an internal record; 0 if there is none.
inline int leftChild(const TreeNode& node) {
  return static_cast<int>(node.left >> 2);
}
inline int rightChild(const TreeNode& node) {
  return static_cast<int>(node.right >> 2);
}

// Set a child and keep the field's two low bits.
inline void setLeftChild(TreeNode& node, int child) {
  node.left = static_cast<uint32_t>(child) << 2 | (node.left & 3);
}
inline void setRightChild(TreeNode& node, int child) {
  node.right = static_cast<uint32_t>(child) << 2 | (node.right & 3);
}

}  // namespace palvor

#endif  // PALVOR_FORMAT_TREE_NODE_H_
