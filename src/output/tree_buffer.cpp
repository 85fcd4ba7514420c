#include "output/tree_buffer.h"

#include <algorithm>

#include "output/emitted.h"
#include "run/options.h"
#include "support/memory.h"
#include "support/report.h"

constinit TreeNode* treeBuff = nullptr;
constinit int nnode = 0;
constinit TreeNode* newtBuff = nullptr;
constinit PathEntry* lastPath = nullptr;
constinit int pathCounter = 0;
constinit int maxPathlen = 1024;

void allocateTreeBuffers() {
  treeBuff = static_cast<TreeNode*>(Calloc(treeBuffSize, sizeof(TreeNode)));
  if (treeBuff == nullptr) {
    die("couldn't allocate %d nodes for treeBuff\n", treeBuffSize);
  }
  if (reorder != 0) {
    newtBuff = uninitializedTable<TreeNode>(treeBuffSize, "the reordered tree");
  }
  nnode = 1;
  lastPath = zeroedTable<PathEntry>(maxPathlen, "the tree's rightmost path");
  lastPath[0] = {treeBuff, 0, 0};
  pathCounter = 1;
}

void growPath(int entries) {
  if (entries <= maxPathlen) return;
  const int grown = std::max(entries, 2 * maxPathlen);
  auto* path =
      uninitializedTable<PathEntry>(grown, "the tree's rightmost path");
  std::copy(lastPath, lastPath + pathCounter, path);
  lastPath = path;
  maxPathlen = grown;
}

int heightAbove(int j) {
  int height = -1;
  for (int m = pathCounter - 1; m > j; m--) {
    height = std::max(lastPath[m].height, height + 1);
  }
  return height;
}
