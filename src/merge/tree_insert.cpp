// The cases, numbered as in the statistics lines (there is no case 2). On the
// left the end of the rightmost path before, on the right after; P is the
// deepest entry of the path at depth `lcp` or above, d its depth.
//
// Case 1  the tree is empty             root          root
//                                                       \ leaf
//
// Case 3  equal to the suffix before    P             P-leaf    one group
//
// Case 6  d < lcp: the edge below P     P             P
//         is split                       \             \ M
//                                         Q           Q / \ leaf
//
// Case 4  d = lcp, P is a leaf: its     P leaf        P-leaf    one group,
//         suffix is a prefix of the                  /          P internal
//         new one                                   leaf
//
// Case 5  d = lcp, P is internal          P             P
//                                        /             / \ leaf

#include "merge/tree_insert.h"

#include <algorithm>

#include "output/compaction.h"
#include "output/counters.h"
#include "output/divider.h"
#include "output/tree_buffer.h"
#include "run/options.h"
#include "support/report.h"

constinit int currPath = 0;

namespace {

TreeNode makeLeaf(const Suffix& suffix, int edge) {
  return {static_cast<uint32_t>(edge), inputNumber(suffix) << 2 | kLeafBit,
          suffixFlags(suffix)};
}

// Ends the path with entry `index`.
void pushPath(int index, TreeNode* node, int depth, int height) {
  lastPath[index] = {node, depth, height};
  pathCounter = index + 1;
}

// Everything above says why the run ends; this is for what gets past them,
// which takes LCP values that were not computed here.
void testLcpFits(int lcp, int len) {
  if (lcp > len) {
    die("LCP of %d bits is beyond the suffix of %d bits, nnode=%d nsuff=%d\n",
        lcp, len, nnode, nsuff);
  }
}

void joinGroup(const Suffix& suffix, int lcp) {
  case3++;
  const PathEntry& top = lastPath[pathCounter - 1];
  if (top.depth != lcp) {
    die("suffix of %d bits is said to equal one of %d bits, nnode=%d "
        "nsuff=%d\n",
        lcp, top.depth, nnode, nsuff);
  }
  treeBuff[nnode] = makeLeaf(suffix, lcp - lastPath[pathCounter - 2].depth);
  treeBuff[nnode - 1].left |= kNextBit;
  nnode++;
}

// Where the new leaf's branch leaves the path.
struct Foot {
  int entry;   // the deepest entry of the path at depth `lcp` or above it
  int height;  // that of the entry above it (heightAbove); -1 if it is the top
};

// One walk finds both, since its length cannot be foreseen.
Foot findFoot(int lcp) {
  Foot foot = {pathCounter - 1, -1};
  for (; lastPath[foot.entry].depth > lcp && foot.entry > 0; foot.entry--) {
    foot.height = std::max(lastPath[foot.entry].height, foot.height + 1);
  }
  return foot;
}

// Shortens the edge of a record and of its group.
void shortenEdges(TreeNode* head, int bits) {
  const uint32_t edge = head->edge - static_cast<uint32_t>(bits);
  for (head->edge = edge; hasNext(*head); head->edge = edge) head++;
}

void splitEdge(const Suffix& suffix, int len, int lcp, Foot foot) {
  const int j = foot.entry;
  case6++;
  TreeNode* const parent = lastPath[j].node;
  const int depth = lastPath[j].depth;
  if (isLeaf(*parent)) {
    die("leaf node above split?? nnode=%d nsuff=%d\n", nnode, nsuff);
  }
  // To the right wherever there is one, which cannot be foreseen either.
  uint32_t& link = parent->right >> 2 != 0 ? parent->right : parent->left;
  const int child = static_cast<int>(link >> 2);
  if (child == 0) die("problem in case 6\n");
  testLcpFits(lcp, len);

  const int middle = nnode;
  const int leaf = nnode + 1;
  nnode += 2;
  treeBuff[middle] = {static_cast<uint32_t>(lcp - depth), 0, 0};
  setLeftChild(treeBuff[middle], child);
  setRightChild(treeBuff[middle], leaf);
  treeBuff[leaf] = makeLeaf(suffix, len - lcp);
  link = static_cast<uint32_t>(middle) << 2 | (link & 3);
  shortenEdges(&treeBuff[child], lcp - depth);
  if (compact != 0) {
    addHT(0, child - middle);
    if (!isLeaf(treeBuff[child])) {
      addHT(2, static_cast<int>(treeBuff[child].edge));
    }
  }
  pushPath(j + 1, &treeBuff[middle], lcp, foot.height + 1);
  pushPath(j + 2, &treeBuff[leaf], len, 0);
}

void extendLeaf(const Suffix& suffix, int len, int lcp, int fb, int j) {
  case4++;
  testLcpFits(lcp, len);
  TreeNode* const head = lastPath[j].node;
  // The suffix before becomes the last of its group, whose edges are all alike
  // already.
  const int moved = nnode;
  const int leaf = nnode + 1;
  nnode += 2;
  treeBuff[moved] = *head;
  treeBuff[moved].left &= ~kNextBit;
  head->left = kNextBit;
  head->right = 0;
  treeBuff[moved - 1].left |= kNextBit;
  treeBuff[leaf] = makeLeaf(suffix, len - lcp);
  if (fb == 0) {
    setLeftChild(*head, leaf);
  } else {
    setRightChild(*head, leaf);
  }
  pushPath(j + 1, &treeBuff[leaf], len, 0);
}

void branchOff(const Suffix& suffix, int len, int lcp, int fb, Foot foot) {
  const int j = foot.entry;
  TreeNode* const parent = lastPath[j].node;
  const int left = leftChild(*parent);
  if (compact != 0 && left != 0) {
    addHT(0, left - indexOf(parent));
    if (!isLeaf(treeBuff[left])) {
      addHT(2, static_cast<int>(treeBuff[left].edge));
    }
  }
  const int leaf = nnode++;
  if (fb != 1) die("firstbit %d, node %d, nsuff %d\n", fb, nnode, nsuff);
  if (rightChild(*parent) != 0) {
    die("firstbit child (fb=%d), nsuff=%d\n", fb, nsuff);
  }
  testLcpFits(lcp, len);
  treeBuff[leaf] = makeLeaf(suffix, len - lcp);
  setRightChild(*parent, leaf);
  lastPath[j].height = std::max(lastPath[j].height, foot.height + 1);
  pushPath(j + 1, &treeBuff[leaf], len, 0);
}

}  // namespace

void startTree(const Suffix& suffix, int len) {
  divider.firstPrefix = suffix.prefix0;
  divider.tree = ntree;
  treeBuff[0] = {};
  treeBuff[1] = makeLeaf(suffix, len);
  nnode = 2;
  if ((suffix.prefix0 >> 31) != 0) {
    setRightChild(treeBuff[0], 1);
  } else {
    setLeftChild(treeBuff[0], 1);
  }
  lastPath[0].height = 0;
  pushPath(1, &treeBuff[1], len, 0);
}

void insertSuffix(const Suffix& suffix, int len, int lcp, int fb) {
  if (lcp == len) {
    joinGroup(suffix, lcp);
    return;
  }
  const Foot foot = findFoot(lcp);
  const int j = foot.entry;
  currPath = j;
  if (compact != 0) {
    for (int m = pathCounter - 2; m > j; m--) registerLink(m);
  }
  growPath(j + 3);
  if (lastPath[j].depth < lcp) {
    splitEdge(suffix, len, lcp, foot);
  } else if (isLeaf(*lastPath[j].node)) {
    extendLeaf(suffix, len, lcp, fb, j);
  } else {
    branchOff(suffix, len, lcp, fb, foot);
  }
  maxPath = std::max(maxPath, pathCounter);
}
