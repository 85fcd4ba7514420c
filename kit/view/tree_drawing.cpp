#include "kit/view/tree_drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "kit/file_error.h"
#include "kit/packed_string.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

constexpr uint64_t kMostNodes = 5000;   // more is no picture any more
constexpr uint64_t kLongestLabel = 64;  // bits

// The strings that leaves name, each read when it is first asked for.
class Strings {
 public:
  explicit Strings(const std::string& folder)
      : base_(folderBase(folder)),
        lengths_(
            RecordFile<uint32_t>(base_ + ".stlengths").read(0, UINT64_MAX)) {}

  // Length of an input in bits.
  uint64_t bits(uint32_t input) const {
    if (input >= lengths_.size()) {
      throw FileError(base_ + ".stlengths",
                      fmt::format("there is no input {}", input));
    }
    return 2 * uint64_t{lengths_[input]};
  }

  // The 64 bits of an input, which must be there, from one of its bits on.
  uint64_t slice(uint32_t input, uint64_t bit) {
    auto found = strings_.find(input);
    if (found == strings_.end()) {
      const std::string path = fmt::format("{}_{}.stbin", base_, input);
      found =
          strings_.emplace(input, PackedString(path, lengths_[input], nullptr))
              .first;
    }
    return found->second.slice(bit);
  }

 private:
  std::string base_;
  std::vector<uint32_t> lengths_;  // in characters
  std::map<uint32_t, PackedString> strings_;
};

// A text as it stands between the quotes of a label.
std::string quoted(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

class Drawing {
 public:
  Drawing(const std::string& path, const std::string& dataFolder,
          const GenomeNames& names)
      : path_(path), names_(names) {
    const RecordFile<TreeNode> file(path);
    if (file.size() > kMostNodes) {
      fail(
          fmt::format("a tree of {} records is too large to draw, at most {} "
                      "are possible",
                      file.size(), kMostNodes));
    }
    nodes_ = file.read(0, UINT64_MAX);
    if (nodes_.empty()) fail("there is no root");
    if (!dataFolder.empty()) {
      strings_ = std::make_unique<Strings>(dataFolder);
    }
  }

  void print() {
    orderGroups();
    writeOutput(
        fmt::format("digraph tree {{\n  label=\"{}\";\n  labelloc=t;\n"
                    "  node [shape=box];\n",
                    title()));
    for (const Group& group : groups_) printGroup(group);
    writeOutput("}\n");
  }

 private:
  struct Group {
    size_t head;
    uint64_t depth;   // string depth, in bits
    uint64_t parent;  // index of the parent's record; the root has none
    bool root;
  };

  [[noreturn]] void fail(const std::string& reason) const {
    throw FileError(path_, reason);
  }

  // What is drawn, and how it is to be read, as lines of a label.
  std::string title() const {
    const auto leaves = std::count_if(nodes_.begin(), nodes_.end(), isLeaf);
    return fmt::format(
        "{}: {} suffixes, {} records\\l{}\\l"
        "box: a suffix; circle: a branching, with its record's number\\l"
        "dashed: suffixes of the same text, or text that ends at a branching\\l"
        "on an edge: {}\\l",
        quoted(whichTree()), leaves, nodes_.size(), quoted(path_),
        strings_ ? "its characters, half of one as its bit, 0 or 1"
                 : "its length in bits, two a character");
  }

  // "tree 3 of 28, numbered from 0", as far as that is known.
  std::string whichTree() const {
    const auto number = numberInName(path_, ".stree");
    if (!number) return "tree";
    const std::string base = path_.substr(0, path_.rfind('_'));
    const std::string dividers = base + ".stdiv";
    if (!isThere(dividers)) return fmt::format("tree {}", *number);
    const uint64_t trees = RecordFile<DividerRecord>(dividers).size();
    if (*number >= trees) return fmt::format("tree {}", *number);
    return fmt::format("tree {} of {} (numbered from 0)", *number, trees);
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
        if (reached[r]) fail(fmt::format("record {} is met twice", r));
        reached[r] = true;
      }
      const TreeNode& node = nodes_[group.head];
      if (isLeaf(node)) continue;
      for (const uint32_t child : {node.left >> 2, node.right >> 2}) {
        if (child == 0) continue;
        if (child >= nodes_.size()) {
          fail(fmt::format("there is no record {}", child));
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
      if (child == 0) fail(fmt::format("record {} is a dead end", record));
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
    if (!strings_) return fmt::format("{}", edge);
    const auto [input, leafDepth] = leafBelow(group.head, group.depth);
    const uint64_t start = startOf(input, leafDepth);
    std::string label;
    uint64_t bit = group.depth - edge;
    const uint64_t end = bit + std::min(edge, kLongestLabel);
    while (bit < end) {
      const uint64_t slice = strings_->slice(input, start + bit);
      if (bit % 2 == 0 && bit + 1 < end) {
        label += "ACGT"[slice >> 62];
        bit += 2;
      } else {
        label += "01"[slice >> 63];
        bit++;
      }
    }
    if (edge > kLongestLabel) label += "...";
    return label;
  }

  std::string leafLabel(const TreeNode& leaf, uint64_t depth) const {
    const uint32_t input = leaf.left >> 2;
    const InputOrigin* origin = names_.find(input);
    std::string label = fmt::format("input {}", input);
    std::string place;
    if (strings_) {
      const uint64_t pos = startOf(input, depth) / 2;
      label += fmt::format(" at {}", pos);
      if (origin != nullptr && pos < origin->length) {
        place = fmt::format(":{}{}", origin->placeOf(pos),
                            origin->reverse ? '-' : '+');
      }
    }
    if (origin == nullptr) return label;
    return fmt::format("{}\\n{} {}{}", label, quoted(origin->file),
                       quoted(origin->sequence), place);
  }

  void printGroup(const Group& group) {
    const size_t end = groupEnd(group.head);
    for (size_t r = group.head; r < end; r++) {
      const TreeNode& node = nodes_[r];
      const std::string label =
          isLeaf(node) ? leafLabel(node, group.depth) : fmt::format("{}", r);
      writeOutput(fmt::format("  n{} [label=\"{}\"{}];\n", r, label,
                              isLeaf(node) ? "" : ", shape=circle"));
      if (r > group.head) {
        writeOutput(fmt::format(
            "  n{0} -> n{1} [style=dashed]; {{rank=same; n{0}; n{1}}}\n", r - 1,
            r));
      }
    }
    if (group.root) return;
    writeOutput(fmt::format("  n{} -> n{} [label=\"{}\"];\n", group.parent,
                            group.head, edgeLabel(group)));
  }

  std::string path_;
  const GenomeNames& names_;
  std::vector<TreeNode> nodes_;
  std::vector<Group> groups_;
  std::unique_ptr<Strings> strings_;
};

}  // namespace

void drawTree(const std::string& path, const std::string& dataFolder,
              const GenomeNames& names) {
  Drawing(path, dataFolder, names).print();
}

}  // namespace kit
