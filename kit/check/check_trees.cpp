#include "kit/check/check_trees.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {
namespace {

// Walks one tree in the order of its suffixes: each group, then, below an
// internal head, the left subtree, then the right one. Two suffixes that follow
// each other part at the deepest group above both; so if every pair of
// neighbours shares just as many bits as that group is deep, all edges and
// branchings are right.
class TreeWalk {
 public:
  TreeWalk(const std::string& path, const DividerRecord& expected,
           const CheckedStrings& strings, SuffixRun& run, FaultLog& faults)
      : path_(path),
        divider_(expected),
        strings_(strings),
        run_(run),
        faults_(faults),
        nodes_(RecordFile<TreeNode>(path).read(0, UINT64_MAX)),
        reached_(nodes_.size()) {}

  void check() {
    const auto expected = static_cast<uint32_t>(divider_.nodes);
    if (nodes_.size() != expected) {
      faults_.add(path_, fmt::format("{} records, expected {} by its divider",
                                     nodes_.size(), expected));
    }
    if (nodes_.size() < 2) {
      faults_.add(path_, "there is no suffix");
      return;
    }
    if (nodes_[0].edge != 0 || (nodes_[0].left & 3) != 0) {
      faults_.add(path_, 0, "a root has no edge and no group, and is no leaf");
      return;
    }
    walk();
    const auto missed = std::find(reached_.begin(), reached_.end(), false);
    if (missed != reached_.end()) {
      faults_.add(path_, static_cast<uint64_t>(missed - reached_.begin()),
                  "not reached from the root");
    }
    const uint32_t lone = nodes_[0].left >> 2 != 0 ? 0 : 1;
    const bool branches = nodes_[0].left >> 2 != 0 && nodes_[0].right >> 2 != 0;
    if (first_ && !branches && *first_ >> 31 != lone) {
      faults_.add(path_, 0, "its only child is on the wrong side");
    }
    compareWithDivider();
  }

 private:
  struct Pending {
    uint32_t record;
    uint64_t depth;      // of the record above, in bits
    uint32_t nodeDepth;  // of the record itself, in links
  };

  void walk() {
    std::vector<Pending> pending = {{0, 0, 0}};
    while (!pending.empty()) {
      const Pending group = pending.back();
      pending.pop_back();
      branchDepth_ = std::min(branchDepth_, group.depth);
      const uint64_t depth = group.depth + nodes_[group.record].edge;
      maxDepth_ = std::max(maxDepth_, group.nodeDepth);
      if (!takeGroup(group.record, depth)) continue;
      const TreeNode& head = nodes_[group.record];
      if (isLeaf(head)) continue;
      pushChildren(head, group, depth, pending);
    }
  }

  // Takes the suffixes of a group. False if there is no sense in going on
  // below it.
  bool takeGroup(uint32_t head, uint64_t depth) {
    if (head != 0 && nodes_[head].edge == 0) {
      faults_.add(path_, head, "an edge of no bits");
    }
    for (uint64_t r = head;; r++) {
      if (r >= nodes_.size()) {
        faults_.add(path_, r - 1, "a group runs past the last record");
        return false;
      }
      if (reached_[r]) {
        faults_.add(path_, r, "reached a second time");
        return false;
      }
      reached_[r] = true;
      const TreeNode& node = nodes_[r];
      if (r > head && (!isLeaf(node) || node.edge != nodes_[head].edge)) {
        faults_.add(path_, r,
                    fmt::format("not a leaf with its group's edge of {} bits",
                                nodes_[head].edge));
      }
      if (isLeaf(node)) takeLeaf(r, depth);
      if (!hasNext(node)) return true;
    }
  }

  void takeLeaf(uint64_t record, uint64_t depth) {
    const TreeNode& leaf = nodes_[record];
    const uint32_t input = leaf.left >> 2;
    if ((leaf.right >> 2) != 0) {
      faults_.add(path_, record, "a leaf with a child");
    }
    if (input >= strings_.count() || depth > 2 * strings_.length(input) ||
        depth % 2 != 0 || depth == 0) {
      faults_.add(
          path_, record,
          fmt::format("input {} has no suffix of {} bits", input, depth));
      return;
    }
    const Place place = {input, strings_.length(input) - depth / 2};
    const std::optional<Step> step = run_.take(place, path_, record);
    const uint64_t prefix = strings_.slice(input, 2 * place.pos) >> 32;
    if (!first_) first_ = prefix;
    last_ = prefix;
    if (step && !firstOfTree_ && step->bits != branchDepth_) {
      faults_.add(path_, record,
                  fmt::format("branches off after {} bits, expected {}",
                              branchDepth_, step->bits));
    }
    firstOfTree_ = false;
    branchDepth_ = depth;
  }

  void pushChildren(const TreeNode& head, const Pending& group, uint64_t depth,
                    std::vector<Pending>& pending) {
    const uint32_t left = head.left >> 2;
    const uint32_t right = head.right >> 2;
    const bool root = group.record == 0;
    for (const uint32_t child : {left, right}) {
      if (child >= nodes_.size()) {
        faults_.add(path_, group.record,
                    fmt::format("there is no record {}", child));
        return;
      }
    }
    if ((head.right & 3) != 0) {
      faults_.add(path_, group.record, "an internal record with leaf flags");
    }
    // A lone child follows suffixes that end here, and is the left one; but the
    // root's lone child is on the side of its first bit.
    const bool branches = left != 0 && right != 0;
    if (!root && !branches && (left == 0 || !hasNext(head))) {
      faults_.add(path_, group.record,
                  "neither two children, nor a group and a left child");
    }
    if (right != 0) pending.push_back({right, depth, group.nodeDepth + 1});
    if (left != 0) pending.push_back({left, depth, group.nodeDepth + 1});
  }

  void compareWithDivider() {
    if (maxDepth_ % 65536 != divider_.maxDepth) {
      faults_.add(path_, fmt::format("node depth {}, its divider says {}",
                                     maxDepth_, divider_.maxDepth));
    }
    if (first_ && *first_ != divider_.firstPrefix) {
      faults_.add(path_,
                  fmt::format("first prefix {:08X}, its divider says {:08X}",
                              *first_, divider_.firstPrefix));
    }
    if (first_ && last_ != divider_.lastPrefix) {
      faults_.add(path_,
                  fmt::format("last prefix {:08X}, its divider says {:08X}",
                              last_, divider_.lastPrefix));
    }
  }

  const std::string path_;
  const DividerRecord& divider_;
  const CheckedStrings& strings_;
  SuffixRun& run_;
  FaultLog& faults_;
  std::vector<TreeNode> nodes_;
  std::vector<bool> reached_;
  bool firstOfTree_ = true;
  uint64_t branchDepth_ = 0;       // least depth since the last leaf
  uint32_t maxDepth_ = 0;          // in links
  std::optional<uint64_t> first_;  // prefix word of the first suffix
  uint64_t last_ = 0;              // and of the last
};

}  // namespace

void checkTrees(const std::string& path, const CheckedStrings& strings,
                MetSuffixes& met, FaultLog& faults,
                const std::function<void(uint64_t)>& advance) {
  const std::string dividersPath = path + ".stdiv";
  const auto dividers =
      RecordFile<DividerRecord>(dividersPath).read(0, UINT64_MAX);
  SuffixRun run(strings, met, faults);
  for (size_t t = 0; t < dividers.size(); t++) {
    const DividerRecord& record = dividers[t];
    if (static_cast<uint32_t>(record.tree) != t) {
      faults.add(dividersPath, t,
                 fmt::format("tree {}, expected {}", record.tree, t));
    }
    if (std::any_of(std::begin(record.reserved), std::end(record.reserved),
                    [](uint8_t byte) { return byte != 0; })) {
      faults.add(dividersPath, t, "reserved bytes that are not zero");
    }
    const uint64_t before = run.taken();
    TreeWalk(fmt::format("{}_{}.stree", path, t), record, strings, run, faults)
        .check();
    advance(run.taken() - before);
  }
  const auto missing = met.missing(0, strings.count());
  if (missing && run.taken() < strings.total()) {
    faults.add(dividersPath,
               fmt::format("{} of {} suffixes: unfinished, {} is in no tree",
                           run.taken(), strings.total(), describe(*missing)));
  } else if (missing) {
    faults.add(dividersPath,
               fmt::format("{} is in no tree", describe(*missing)));
  }
}

}  // namespace kit
