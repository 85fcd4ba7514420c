#include "kit/tree_drawing.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

#include "kit/record_file.h"
#include "output/tree_node.h"

namespace kit {
namespace {

constexpr uint64_t kMostNodes = 5000;   // more is no picture any more
constexpr uint64_t kLongestLabel = 64;  // bits

// The strings that leaves name, read as far as they are asked for.
class Strings {
 public:
  explicit Strings(const std::string& folder) {
    std::filesystem::path path(folder);
    if (path.filename().empty()) path = path.parent_path();
    if (path.extension() != ".ST") {
      throw std::runtime_error(folder + " is no data folder, DIR/PREFIX.ST");
    }
    base_ = (path / path.stem()).string();
    lengths_ = RecordFile<uint32_t>(base_ + ".stblengths").read(0, UINT64_MAX);
  }

  // Length of an input in bits.
  uint64_t bits(uint32_t input) const {
    if (input >= lengths_.size()) {
      throw std::runtime_error("there is no input " + std::to_string(input));
    }
    return lengths_[input];
  }

  int bit(uint32_t input, uint64_t index) {
    const uint64_t word = index / 32;
    const std::vector<uint32_t>& words = wordsOf(input);
    if (word >= words.size()) {
      throw std::runtime_error(base_ + "_" + std::to_string(input) +
                               ".stbin is too short");
    }
    return static_cast<int>(words[word] >> (31 - index % 32) & 1);
  }

 private:
  const std::vector<uint32_t>& wordsOf(uint32_t input) {
    auto found = words_.find(input);
    if (found == words_.end()) {
      const RecordFile<uint32_t> file(base_ + "_" + std::to_string(input) +
                                      ".stbin");
      found = words_.emplace(input, file.read(0, UINT64_MAX)).first;
    }
    return found->second;
  }

  std::string base_;
  std::vector<uint32_t> lengths_;
  std::map<uint32_t, std::vector<uint32_t>> words_;
};

class Drawing {
 public:
  Drawing(const std::string& path, const std::string& dataFolder)
      : path_(path) {
    const RecordFile<TreeNode> file(path);
    if (file.size() > kMostNodes) {
      fail("a tree of " + std::to_string(file.size()) +
           " records is too large to draw, at most " +
           std::to_string(kMostNodes) + " are possible");
    }
    nodes_ = file.read(0, UINT64_MAX);
    if (nodes_.empty()) fail("there is no root");
    if (!dataFolder.empty()) {
      strings_ = std::make_unique<Strings>(dataFolder);
    }
  }

  void print() {
    orderGroups();
    std::printf("digraph tree {\n  node [shape=box];\n");
    for (const Group& group : groups_) printGroup(group);
    std::printf("}\n");
  }

 private:
  struct Group {
    size_t head;
    uint64_t depth;   // string depth, in bits
    uint64_t parent;  // index of the parent's record; the root has none
    bool root;
  };

  [[noreturn]] void fail(const std::string& reason) const {
    throw std::runtime_error(path_ + ": " + reason);
  }

  size_t groupEnd(size_t head) const {
    size_t end = head;
    while (hasNext(nodes_[end])) {
      if (++end >= nodes_.size()) fail("a group runs past the end");
    }
    return end + 1;
  }

  // Finds all groups from the root on, parents before children, and sees that
  // each record is reached at most once.
  void orderGroups() {
    std::vector<bool> reached(nodes_.size());
    groups_ = {{0, nodes_[0].edge, 0, true}};
    for (size_t i = 0; i < groups_.size(); i++) {
      const Group group = groups_[i];
      for (size_t r = group.head; r < groupEnd(group.head); r++) {
        if (reached[r]) fail("record " + std::to_string(r) + " is met twice");
        reached[r] = true;
      }
      const TreeNode& node = nodes_[group.head];
      if (isLeaf(node)) continue;
      for (const uint32_t child : {node.left >> 2, node.right >> 2}) {
        if (child == 0) continue;
        if (child >= nodes_.size()) {
          fail("there is no record " + std::to_string(child));
        }
        groups_.push_back(
            {child, group.depth + nodes_[child].edge, group.head, false});
      }
    }
  }

  // Some leaf of the group or below it, and that leaf's string depth.
  std::pair<uint32_t, uint64_t> leafBelow(size_t record, uint64_t depth) const {
    for (;;) {
      for (size_t r = record; r < groupEnd(record); r++) {
        if (isLeaf(nodes_[r])) return {nodes_[r].left >> 2, depth};
      }
      const TreeNode& node = nodes_[record];
      const uint32_t child =
          node.left >> 2 != 0 ? node.left >> 2 : node.right >> 2;
      if (child == 0)
        fail("record " + std::to_string(record) + " is a dead end");
      record = child;
      depth += nodes_[child].edge;
    }
  }

  uint64_t startOf(uint32_t input, uint64_t depth) const {
    const uint64_t bits = strings_->bits(input);
    if (depth > bits) fail("a leaf is deeper than its input is long");
    return bits - depth;
  }

  // The characters of an edge; a half one at either end as its bit.
  std::string edgeLabel(const Group& group) {
    const uint64_t edge = nodes_[group.head].edge;
    if (!strings_) return std::to_string(edge);
    const auto [input, leafDepth] = leafBelow(group.head, group.depth);
    const uint64_t start = startOf(input, leafDepth);
    std::string label;
    uint64_t bit = group.depth - edge;
    const uint64_t end = bit + std::min(edge, kLongestLabel);
    while (bit < end) {
      if (bit % 2 == 0 && bit + 1 < end) {
        const int code = 2 * strings_->bit(input, start + bit) +
                         strings_->bit(input, start + bit + 1);
        label += "ACGT"[code];
        bit += 2;
      } else {
        label += static_cast<char>('0' + strings_->bit(input, start + bit));
        bit++;
      }
    }
    if (edge > kLongestLabel) label += "...";
    return label;
  }

  std::string leafLabel(const TreeNode& leaf, uint64_t depth) const {
    const uint32_t input = leaf.left >> 2;
    std::string name = "input " + std::to_string(input);
    if (!strings_) return name;
    return name + " at " + std::to_string(startOf(input, depth) / 2);
  }

  void printGroup(const Group& group) {
    const size_t end = groupEnd(group.head);
    for (size_t r = group.head; r < end; r++) {
      const TreeNode& node = nodes_[r];
      const std::string label =
          isLeaf(node) ? leafLabel(node, group.depth) : std::to_string(r);
      std::printf("  n%zu [label=\"%s\"%s];\n", r, label.c_str(),
                  isLeaf(node) ? "" : ", shape=circle");
      if (r > group.head) {
        std::printf("  n%zu -> n%zu [style=dashed]; {rank=same; n%zu; n%zu}\n",
                    r - 1, r, r - 1, r);
      }
    }
    if (group.root) return;
    std::printf("  n%zu -> n%zu [label=\"%s\"];\n",
                static_cast<size_t>(group.parent), group.head,
                edgeLabel(group).c_str());
  }

  std::string path_;
  std::vector<TreeNode> nodes_;
  std::vector<Group> groups_;
  std::unique_ptr<Strings> strings_;
};

}  // namespace

void drawTree(const std::string& path, const std::string& dataFolder) {
  Drawing(path, dataFolder).print();
}

}  // namespace kit
