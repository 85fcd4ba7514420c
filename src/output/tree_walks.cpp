#include "output/tree_walks.h"

#include "output/tree_buffer.h"

namespace {

int nn = 0;  // records in newtBuff so far

// Appends the group that begins at record `head` of treeBuff to newtBuff.
void copyGroup(int head) {
  newtBuff[nn++] = treeBuff[head];
  while (hasNext(treeBuff[head])) newtBuff[nn++] = treeBuff[++head];
}

int groupLength(const TreeNode* head) {
  int length = 1;
  for (; hasNext(*head); head++) length++;
  return length;
}

}  // namespace

// Every record of the buffer belongs to the tree, and groups are consecutive,
// so the buffer can be read from end to end instead of along the links.
TreeCounts countRecords() {
  TreeCounts counts;
  bool member = false;  // of the group of the record before
  for (int i = 0; i < nnode; i++) {
    const TreeNode& node = treeBuff[i];
    const bool next = hasNext(node);
    if (isLeaf(node)) {
      counts.nleaf++;
      if (!member) counts.ntrlf++;
      if (next) counts.ndupl++;
    } else {
      counts.nintr++;
      if (leftChild(node) != 0) counts.nleft++;
      if (rightChild(node) != 0) counts.nrght++;
      if (next) counts.nempt++;
    }
    member = next;
  }
  return counts;
}

// A tree can be a million records deep, so the stack of right subtrees still
// to come is threaded through the copy itself. While a record p waits there,
// its `left` holds the right child's index in treeBuff instead of the left
// child's in newtBuff, which always follows p's group; its `right` holds the
// next waiting record. Record 0, the root, is at the bottom if it waits at
// all, so 0 can end the stack.
void reorderTree() {
  nn = 0;
  int waiting = 0;
  bool rootWaits = false;
  int node = 0;
  for (;;) {
    const int p = nn;
    copyGroup(node);
    TreeNode& copy = newtBuff[p];
    if (!isLeaf(copy)) {
      const int left = leftChild(treeBuff[node]);
      const int right = rightChild(treeBuff[node]);
      if (left != 0 && right != 0) {
        setLeftChild(copy, right);
        setRightChild(copy, waiting);
        waiting = p;
        rootWaits = rootWaits || p == 0;
        node = left;
        continue;
      }
      if (left != 0) {
        setLeftChild(copy, nn);
        node = left;
        continue;
      }
      if (right != 0) {
        setRightChild(copy, nn);
        node = right;
        continue;
      }
    }
    if (waiting == 0 && !rootWaits) return;
    TreeNode& parent = newtBuff[waiting];
    if (waiting == 0) rootWaits = false;
    node = leftChild(parent);
    setLeftChild(parent, waiting + groupLength(&parent));
    waiting = rightChild(parent);
    setRightChild(parent, nn);
  }
}
