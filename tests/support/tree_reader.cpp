#include "support/tree_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

namespace {

using Node = std::array<uint32_t, 3>;  // edge, left, right

void demand(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

}  // namespace

ReadTree readTree(const std::string& bytes) {
  demand(bytes.size() % 12 == 0 && !bytes.empty(), "no whole records");
  std::vector<Node> nodes(bytes.size() / 12);
  std::memcpy(nodes.data(), bytes.data(), bytes.size());

  struct Pending {
    size_t head;
    uint64_t depth;  // of the parent
    int links;
  };
  ReadTree tree;
  std::vector<Pending> stack = {{0, 0, 0}};
  while (!stack.empty()) {
    const auto [head, above, links] = stack.back();
    stack.pop_back();
    demand(head < nodes.size(), "child out of range");
    const uint64_t depth = above + nodes[head][0];
    tree.maxDepth = std::max(tree.maxDepth, links);
    for (size_t r = head;; r++) {
      demand(r < nodes.size(), "group out of range");
      const auto& [edge, left, right] = nodes[r];
      const bool leaf = (left & 1) != 0;
      tree.visits.push_back(r);
      demand(tree.visits.size() <= nodes.size(), "records met twice");
      demand(edge == nodes[head][0], "edges of a group differ");
      demand(leaf || r == head, "an internal member");
      if (leaf) tree.leaves.emplace_back(depth, left >> 2);
      if (leaf && r == head) tree.leafHeads++;
      if (!leaf) tree.internals++;
      if ((left & 2) == 0) break;
      (leaf ? tree.duplicateLinks : tree.emptyLinks)++;
    }
    if ((nodes[head][1] & 1) != 0) continue;
    const size_t left = nodes[head][1] >> 2;
    const size_t right = nodes[head][2] >> 2;
    demand(left != 0 || right != 0, "an internal record without children");
    if (right != 0) stack.push_back({right, depth, links + 1});
    if (left != 0) stack.push_back({left, depth, links + 1});
    tree.rights += right != 0;
    tree.lefts += left != 0;
  }
  std::vector<size_t> sorted = tree.visits;
  std::sort(sorted.begin(), sorted.end());
  for (size_t i = 0; i < nodes.size(); i++) {
    demand(i < sorted.size() && sorted[i] == i, "a record not met just once");
  }
  return tree;
}
