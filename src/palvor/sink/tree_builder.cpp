// The cases, numbered as they are reported (there is no case 2). On the left
// the end of the rightmost path before, on the right after; P is the deepest
// entry of the path at depth `lcp` or above, d its depth.
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

#include "palvor/sink/tree_builder.h"

#include "palvor/error.h"

namespace palvor {
namespace {

constexpr int kFirstPathRoom = 1024;  // entries

TreeNode makeLeaf(const Suffix& suffix, int edge) {
  return {static_cast<uint32_t>(edge), inputNumber(suffix) << 2 | kLeafBit,
          suffixFlags(suffix)};
}

// Shortens the edge of a record and of its group.
void shortenEdges(TreeNode* head, int bits) {
  const uint32_t edge = head->edge - static_cast<uint32_t>(bits);
  for (head->edge = edge; hasNext(*head); head->edge = edge) head++;
}

}  // namespace

TreeBuilder::TreeBuilder(int capacity, Compaction* compaction,
                         MemoryCount& memory)
    : capacity_(capacity),
      compaction_(compaction),
      memory_(memory),
      tree_(Block<TreeNode>::orNull(capacity)),
      path_(kFirstPathRoom, "the tree's rightmost path"),
      pathRoom_(kFirstPathRoom) {
  memory.add(Block<TreeNode>::bytesOf(capacity));
  memory.add(Block<PathEntry>::bytesOf(kFirstPathRoom));
  if (tree_.data() == nullptr) {
    fail("couldn't allocate %d nodes for treeBuff", capacity);
  }
  path_[0] = {tree_.data(), 0, 0};
}

// Makes room for at least `entries` path entries. Ordinary data never need more
// than there are; highly repetitive text does.
void TreeBuilder::growPath(int entries) {
  if (entries <= pathRoom_) return;
  const int grown = std::max(entries, 2 * pathRoom_);
  Block<PathEntry> path(grown, "the tree's rightmost path");
  memory_.add(Block<PathEntry>::bytesOf(grown));
  std::copy(path_.data(), path_.data() + pathLength_, path.data());
  path_ = std::move(path);
  pathRoom_ = grown;
}

// Takes the entries above one off the path's heights: returns the height that
// the next entry has then, all below it being finished, or -1 if the entry is
// the top. The entries themselves stay.
int TreeBuilder::heightAbove(int entry) const {
  int height = -1;
  for (int m = pathLength_ - 1; m > entry; m--) {
    height = std::max(path_[m].height, height + 1);
  }
  return height;
}

// Registers the link from a path entry to the next one.
void TreeBuilder::registerLink(int entry) {
  const PathEntry& parent = path_[entry];
  const PathEntry& child = path_[entry + 1];
  // The path leads to the largest suffix: to the right wherever it can.
  compaction_->add(
      rightChild(*parent.node) != 0 ? Compaction::kRight : Compaction::kLeft,
      indexOf(child.node) - indexOf(parent.node));
  if (!isLeaf(*child.node)) {
    compaction_->add(Compaction::kEdge, child.depth - parent.depth);
  }
}

void TreeBuilder::registerPath() {
  for (int i = pathLength_ - 2; i >= 0; i--) registerLink(i);
}

// Everything else says why an insertion fails; this is for what gets past it,
// which takes entries that were not computed by the merge.
void TreeBuilder::testLcpFits(const Arrival& arrival) const {
  if (arrival.lcp > arrival.bits) {
    fail("LCP of %d bits is beyond the suffix of %d bits, nnode=%d nsuff=%d",
         arrival.lcp, arrival.bits, nodes_, static_cast<int>(arrival.taken));
  }
}

void TreeBuilder::joinGroup(const Arrival& arrival) {
  counts_.case3++;
  const PathEntry& top = path_[pathLength_ - 1];
  if (top.depth != arrival.lcp) {
    fail("suffix of %d bits is said to equal one of %d bits, nnode=%d nsuff=%d",
         arrival.lcp, top.depth, nodes_, static_cast<int>(arrival.taken));
  }
  tree_[nodes_] =
      makeLeaf(arrival.suffix, arrival.lcp - path_[pathLength_ - 2].depth);
  tree_[nodes_ - 1].left |= kNextBit;
  nodes_++;
}

// One walk finds both, since its length is mispredicted.
TreeBuilder::Foot TreeBuilder::findFoot(int lcp) const {
  Foot foot = {pathLength_ - 1, -1};
  for (; path_[foot.entry].depth > lcp && foot.entry > 0; foot.entry--) {
    foot.height = std::max(path_[foot.entry].height, foot.height + 1);
  }
  return foot;
}

void TreeBuilder::splitEdge(const Arrival& arrival, Foot foot) {
  const int j = foot.entry;
  counts_.case6++;
  TreeNode* const parent = path_[j].node;
  const int depth = path_[j].depth;
  if (isLeaf(*parent)) {
    fail("leaf node above split?? nnode=%d nsuff=%d", nodes_,
         static_cast<int>(arrival.taken));
  }
  // To the right wherever there is one; a branch would be mispredicted.
  uint32_t& link = parent->right >> 2 != 0 ? parent->right : parent->left;
  const int child = static_cast<int>(link >> 2);
  if (child == 0) fail("problem in case 6");
  testLcpFits(arrival);

  const int middle = nodes_;
  const int leaf = nodes_ + 1;
  nodes_ += 2;
  tree_[middle] = {static_cast<uint32_t>(arrival.lcp - depth), 0, 0};
  setLeftChild(tree_[middle], child);
  setRightChild(tree_[middle], leaf);
  tree_[leaf] = makeLeaf(arrival.suffix, arrival.bits - arrival.lcp);
  link = static_cast<uint32_t>(middle) << 2 | (link & 3);
  shortenEdges(&tree_[child], arrival.lcp - depth);
  if (compaction_ != nullptr) {
    compaction_->add(Compaction::kLeft, child - middle);
    if (!isLeaf(tree_[child])) {
      compaction_->add(Compaction::kEdge, static_cast<int>(tree_[child].edge));
    }
  }
  pushPath(j + 1, &tree_[middle], arrival.lcp, foot.height + 1);
  pushPath(j + 2, &tree_[leaf], arrival.bits, 0);
}

void TreeBuilder::extendLeaf(const Arrival& arrival, int entry) {
  counts_.case4++;
  testLcpFits(arrival);
  TreeNode* const head = path_[entry].node;
  // The suffix before becomes the last of its group, whose edges are all alike
  // already.
  const int moved = nodes_;
  const int leaf = nodes_ + 1;
  nodes_ += 2;
  tree_[moved] = *head;
  tree_[moved].left &= ~kNextBit;
  head->left = kNextBit;
  head->right = 0;
  tree_[moved - 1].left |= kNextBit;
  tree_[leaf] = makeLeaf(arrival.suffix, arrival.bits - arrival.lcp);
  if (arrival.firstbit == 0) {
    setLeftChild(*head, leaf);
  } else {
    setRightChild(*head, leaf);
  }
  pushPath(entry + 1, &tree_[leaf], arrival.bits, 0);
}

void TreeBuilder::branchOff(const Arrival& arrival, Foot foot) {
  PathEntry& entry = path_[foot.entry];
  TreeNode* const parent = entry.node;
  const int left = leftChild(*parent);
  if (compaction_ != nullptr && left != 0) {
    compaction_->add(Compaction::kLeft, left - indexOf(parent));
    if (!isLeaf(tree_[left])) {
      compaction_->add(Compaction::kEdge, static_cast<int>(tree_[left].edge));
    }
  }
  const int leaf = nodes_++;
  const int firstbit = arrival.firstbit;
  const int taken = static_cast<int>(arrival.taken);
  if (firstbit != 1) {
    fail("firstbit %d, node %d, nsuff %d", firstbit, nodes_, taken);
  }
  if (rightChild(*parent) != 0) {
    fail("firstbit child (fb=%d), nsuff=%d", firstbit, taken);
  }
  testLcpFits(arrival);
  tree_[leaf] = makeLeaf(arrival.suffix, arrival.bits - arrival.lcp);
  setRightChild(*parent, leaf);
  entry.height = std::max(entry.height, foot.height + 1);
  pushPath(foot.entry + 1, &tree_[leaf], arrival.bits, 0);
}

void TreeBuilder::start(const Suffix& suffix, int bits) {
  tree_[0] = {};
  tree_[1] = makeLeaf(suffix, bits);
  nodes_ = 2;
  if ((suffix.prefix0 >> 31) != 0) {
    setRightChild(tree_[0], 1);
  } else {
    setLeftChild(tree_[0], 1);
  }
  path_[0].height = 0;
  pushPath(1, &tree_[1], bits, 0);
}

void TreeBuilder::insert(const Suffix& suffix, int bits, int lcp, int firstbit,
                         int64_t taken) {
  const Arrival arrival = {suffix, bits, lcp, firstbit, taken};
  if (lcp == bits) {
    joinGroup(arrival);
    return;
  }
  const Foot foot = findFoot(lcp);
  if (compaction_ != nullptr) {
    for (int m = pathLength_ - 2; m > foot.entry; m--) registerLink(m);
  }
  growPath(foot.entry + 3);
  if (path_[foot.entry].depth < lcp) {
    splitEdge(arrival, foot);
  } else if (isLeaf(*path_[foot.entry].node)) {
    extendLeaf(arrival, foot.entry);
  } else {
    branchOff(arrival, foot);
  }
  counts_.maxPath = std::max(counts_.maxPath, pathLength_);
}

void TreeBuilder::clear() {
  nodes_ = 1;
  counts_ = {};
}

}  // namespace palvor
