// Reads suffix tree partitions back, sharing nothing with their writer but the
// layout of the records.

#ifndef PALVOR_TESTS_SUPPORT_TREE_READER_H_
#define PALVOR_TESTS_SUPPORT_TREE_READER_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A leaf: its string depth in bits and its input.
using Leaf = std::pair<uint64_t, uint32_t>;

struct ReadTree {
  std::vector<Leaf> leaves;    // in order: a group, its left, its right subtree
  std::vector<size_t> visits;  // records in the order of the walk
  int maxDepth = 0;            // most links from the root to a group
  // Records and links by kind, as the statistics count them.
  int leafHeads = 0, internals = 0, lefts = 0, rights = 0;
  int emptyLinks = 0, duplicateLinks = 0;
};

// Walks a .stree file's bytes. Throws std::runtime_error for a tree that is
// not well formed, or has records that are not reached.
ReadTree readTree(const std::string& bytes);

#endif  // PALVOR_TESTS_SUPPORT_TREE_READER_H_
