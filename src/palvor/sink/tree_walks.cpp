#include "palvor/sink/tree_walks.h"

namespace palvor {
namespace {

// Appends the group that begins at record `head` to a copy of `count` records;
// returns how many it has then.
int copyGroup(const TreeNode* tree, int head, TreeNode* copy, int count) {
  copy[count++] = tree[head];
  while (hasNext(tree[head])) copy[count++] = tree[++head];
  return count;
}

int groupLength(const TreeNode* head) {
  int length = 1;
  for (; hasNext(*head); head++) length++;
  return length;
}

}  // namespace

// Every record belongs to the tree, and groups are consecutive, so the records
// can be read from end to end instead of along the links.
TreeCounts countRecords(std::span<const TreeNode> tree) {
  TreeCounts counts;
  bool member = false;  // of the group of the record before
  for (const TreeNode& node : tree) {
    const bool next = hasNext(node);
    if (isLeaf(node)) {
      counts.leaves++;
      if (!member) counts.leafHeads++;
      if (next) counts.duplicates++;
    } else {
      counts.internal++;
      if (leftChild(node) != 0) counts.left++;
      if (rightChild(node) != 0) counts.right++;
      if (next) counts.endsAtBranch++;
    }
    member = next;
  }
  return counts;
}

// A tree can be a million records deep, so the stack of right subtrees still
// to come is threaded through the copy itself. While a record p waits there,
// its `left` holds the right child's index in the tree instead of the left
// child's in the copy, which always follows p's group; its `right` holds the
// next waiting record. Record 0, the root, is at the bottom if it waits at
// all, so 0 can end the stack.
void reorderTree(const TreeNode* tree, TreeNode* copy) {
  int count = 0;  // records copied
  int waiting = 0;
  bool rootWaits = false;
  int node = 0;
  for (;;) {
    const int p = count;
    count = copyGroup(tree, node, copy, count);
    if (!isLeaf(copy[p])) {
      const int left = leftChild(tree[node]);
      const int right = rightChild(tree[node]);
      if (left != 0 && right != 0) {
        setLeftChild(copy[p], right);
        setRightChild(copy[p], waiting);
        waiting = p;
        rootWaits = rootWaits || p == 0;
        node = left;
        continue;
      }
      if (left != 0) {
        setLeftChild(copy[p], count);
        node = left;
        continue;
      }
      if (right != 0) {
        setRightChild(copy[p], count);
        node = right;
        continue;
      }
    }
    if (waiting == 0 && !rootWaits) return;
    TreeNode& parent = copy[waiting];
    if (waiting == 0) rootWaits = false;
    node = leftChild(parent);
    setLeftChild(parent, waiting + groupLength(&parent));
    waiting = rightChild(parent);
    setRightChild(parent, count);
  }
}

}  // namespace palvor
