// A suffix tree under construction, and its rightmost path.
//
// Suffixes come in ascending order: each is larger than all before it and
// shares `lcp` bits with the largest of them, whose leaf ends the path from the
// root down its right side. So its leaf belongs on that path at string depth
// `lcp`, every change happens there, no string is ever compared, and what has
// left the path is finished.

#ifndef PALVOR_SINK_TREE_BUILDER_H_
#define PALVOR_SINK_TREE_BUILDER_H_

#include <algorithm>
#include <cstdint>
#include <memory>

#include "palvor/format/suffix.h"
#include "palvor/format/tree_node.h"
#include "palvor/io/memory.h"
#include "palvor/sink/compaction.h"

namespace palvor {

// Insertions of a tree, by the cases that are told apart in its line.
struct InsertionCounts {
  int case3 = 0;    // of a suffix equal to the one before
  int case4 = 0;    // ... of one that the suffix before is a prefix of
  int case6 = 0;    // ... that split an edge
  int maxPath = 0;  // most entries of the path in use
};

class TreeBuilder {
 public:
  // Has room for `capacity` records (2 or more), the root included; fails if it
  // can't be had. With `compaction` every link is registered there when it
  // becomes final.
  TreeBuilder(int capacity, Compaction* compaction, MemoryCount& memory);

  int capacity() const { return capacity_; }
  // Records in use; record 0 is the root.
  int nodes() const { return nodes_; }
  const TreeNode* records() const { return tree_.data(); }
  bool isEmpty() const { return nodes_ == 1; }
  // Whether there is no room for a further suffix, which takes two records at
  // most. There always is for the first.
  bool isFull() const { return !isEmpty() && nodes_ > capacity_ - 2; }
  // How many suffixes it takes, at least, until it is full.
  int room() const { return (capacity_ - 2 - nodes_) / 2 + 1; }

  const InsertionCounts& counts() const { return counts_; }

  // Puts the first suffix, `bits` long, into an empty tree.
  void start(const Suffix& suffix, int bits);

  // Puts a further suffix in. There must be room for two more records.
  //   bits      its length
  //   lcp       bits that it shares with the suffix inserted before it
  //   firstbit  1 if they part before the shorter one ends, else 0
  //   taken     suffixes taken from the streams since the last tree was
  //             written, for the errors
  // Fails if these contradict the order of the suffixes.
  void insert(const Suffix& suffix, int bits, int lcp, int firstbit,
              int64_t taken);

  // Registers the links of the path that are left, which ends the tree.
  void registerPath();

  // The largest number of child links from the root to a record, of a tree that
  // is ended.
  int largestNodeDepth() const {
    return std::max(path_[0].height, heightAbove(0) + 1);
  }

  // Leaves an empty tree.
  void clear();

 private:
  struct PathEntry {
    TreeNode* node;  // in the tree
    int depth;       // its string depth, in bits
    int height;      // child links down to the deepest record below it, as far
                     // as what is below it has left the path
  };
  static_assert(sizeof(PathEntry) == 16);

  // Where the new leaf's branch leaves the path.
  struct Foot {
    int entry;   // the deepest entry of the path at depth `lcp` or above it
    int height;  // that of the entry above it (heightAbove); -1 if it is the
                 // top
  };

  // The suffix that is inserted.
  struct Arrival {
    const Suffix& suffix;
    int bits;
    int lcp;
    int firstbit;
    int64_t taken;
  };

  int indexOf(const TreeNode* node) const {
    return static_cast<int>(node - tree_.data());
  }
  int heightAbove(int entry) const;
  void growPath(int entries);
  void pushPath(int index, TreeNode* node, int depth, int height) {
    path_[index] = {node, depth, height};
    pathLength_ = index + 1;
  }
  Foot findFoot(int lcp) const;
  void registerLink(int entry);
  void testLcpFits(const Arrival& arrival) const;
  void joinGroup(const Arrival& arrival);
  void splitEdge(const Arrival& arrival, Foot foot);
  void extendLeaf(const Arrival& arrival, int entry);
  void branchOff(const Arrival& arrival, Foot foot);

  int capacity_;  // records
  Compaction* compaction_;
  MemoryCount& memory_;
  Block<TreeNode> tree_;
  int nodes_ = 1;
  InsertionCounts counts_;
  // From the root (entry 0, never changed but for its height) to the head of
  // the group of the leaf inserted last. Depths strictly increase.
  Block<PathEntry> path_;
  int pathRoom_;        // entries there is room for
  int pathLength_ = 1;  // entries in use
};

}  // namespace palvor

#endif  // PALVOR_SINK_TREE_BUILDER_H_
