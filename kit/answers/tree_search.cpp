#include "kit/answers/tree_search.h"

#include <fmt/format.h>

#include <algorithm>

#include "kit/file_error.h"
#include "kit/range_plan.h"
#include "kit/record_file.h"

namespace kit {
namespace {

constexpr size_t kMostOpen = 16384;  // the system allows a process 65,530 maps

}  // namespace

bool onlyTreesAreThere(const std::string& base) {
  const std::string dividers = base + ".stdiv";
  return !isThere(base + ".stpsa") && !isThere(planPath(base)) &&
         isThere(dividers) && fileSize(dividers) > 0;
}

TreeSearch::TreeSearch(const MergedInputs& inputs, MergedStrings& strings,
                       const std::string& base)
    : inputs_(inputs), strings_(strings), base_(base) {
  const RecordFile<DividerRecord> file(base + ".stdiv");
  dividers_ = file.read(0, UINT64_MAX);
  uint64_t most = 0;  // suffixes that the trees can have
  for (size_t t = 0; t < dividers_.size(); t++) {
    const DividerRecord& divider = dividers_[t];
    const bool follows =
        t == 0 || dividers_[t - 1].lastPrefix <= divider.firstPrefix;
    if (static_cast<uint32_t>(divider.tree) != t || divider.nodes < 2 ||
        divider.firstPrefix > divider.lastPrefix || !follows) {
      throw FileError(file.path(),
                      fmt::format("record {}: no tree that can follow the one "
                                  "before",
                                  t));
    }
    most += static_cast<uint32_t>(divider.nodes) - 1;
  }
  if (most < inputs.total()) {
    throw FileError(file.path(),
                    fmt::format("its trees have {} suffixes at most, expected "
                                "{} of {} inputs: unfinished, or of fewer "
                                "inputs (see -N)",
                                most, inputs.total(), inputs.count()));
  }
}

std::string TreeSearch::treePath(size_t tree) const {
  return fmt::format("{}_{}.stree", base_, tree);
}

const TreeSearch::Tree& TreeSearch::open(size_t tree) {
  const auto found = open_.find(tree);
  if (found != open_.end()) return found->second;
  if (open_.size() == kMostOpen) open_.clear();
  const Tree& nodes =
      open_
          .emplace(std::piecewise_construct, std::forward_as_tuple(tree),
                   std::forward_as_tuple(treePath(tree)))
          .first->second;
  const auto expected = static_cast<uint32_t>(dividers_[tree].nodes);
  if (nodes.size() != expected) {
    throw FileError(treePath(tree),
                    fmt::format("{} records, expected {} by its divider",
                                nodes.size(), expected));
  }
  return nodes;
}

void TreeSearch::refuse(size_t tree, uint64_t record,
                        const std::string& reason) const {
  throw FileError(treePath(tree), fmt::format("record {}: {}", record, reason));
}

void TreeSearch::eachSuffix(const Pattern& pattern,
                            const std::function<void(const Suffix&)>& take) {
  // The first words of suffixes that begin with the pattern.
  const auto least = static_cast<uint32_t>(pattern.slice(0) >> 32);
  const uint64_t bits = pattern.bits();
  const uint32_t most = bits < 32 ? least | UINT32_MAX >> bits : least;
  auto divider = std::partition_point(
      dividers_.begin(), dividers_.end(),
      [&](const DividerRecord& d) { return d.lastPrefix < least; });
  for (; divider != dividers_.end() && divider->firstPrefix <= most;
       ++divider) {
    searchTree(static_cast<size_t>(divider - dividers_.begin()), pattern, take);
  }
}

// The record above all suffixes that can begin with the pattern, if there is
// one. The bits on edges are not looked at.
std::optional<TreeSearch::Place> TreeSearch::descend(
    size_t tree, const Tree& nodes, const Pattern& pattern) const {
  Place place = {0, 0};
  while (place.depth < pattern.bits()) {
    const TreeNode& node = nodes[place.record];
    if (isLeaf(node)) return std::nullopt;
    // A lone child below suffixes that end here is the left one, whatever its
    // first bit is.
    const bool lone = place.record != 0 && node.right >> 2 == 0;
    const bool right = !lone && pattern.slice(place.depth) >> 63 != 0;
    const uint32_t child = (right ? node.right : node.left) >> 2;
    if (child == 0) return std::nullopt;
    if (child >= nodes.size() || nodes[child].edge == 0) {
      refuse(tree, place.record, fmt::format("{} is no child", child));
    }
    place = {child, place.depth + nodes[child].edge};
  }
  return place;
}

void TreeSearch::searchTree(size_t tree, const Pattern& pattern,
                            const std::function<void(const Suffix&)>& take) {
  const Tree& nodes = open(tree);
  const std::optional<Place> top = descend(tree, nodes, pattern);
  if (!top) return;
  std::vector<Place> pending = {*top};
  uint64_t met = 0;
  bool found = false;  // suffixes were taken
  while (!pending.empty()) {
    const Place head = pending.back();
    pending.pop_back();
    for (Place place = head;; place.record++) {
      if (place.record >= nodes.size() || ++met > nodes.size()) {
        refuse(tree, head.record, "the records below it are no tree");
      }
      const TreeNode& node = nodes[place.record];
      if (isLeaf(node)) {
        const Suffix suffix = suffixOf(tree, nodes, place);
        if (!beginsWith(suffix, pattern)) {
          // All have what the first one has in place of the pattern.
          if (!found) return;
          refuse(tree, place.record, "not a suffix of the records above it");
        }
        found = true;
        take(suffix);
      }
      if (!hasNext(node)) break;
    }
    const TreeNode& node = nodes[head.record];
    if (isLeaf(node)) continue;
    pushChild(tree, nodes, head, node.right >> 2, pending);
    pushChild(tree, nodes, head, node.left >> 2, pending);
  }
}

void TreeSearch::pushChild(size_t tree, const Tree& nodes, Place parent,
                           uint32_t child, std::vector<Place>& pending) const {
  if (child == 0) return;
  if (child >= nodes.size()) {
    refuse(tree, parent.record, fmt::format("there is no record {}", child));
  }
  pending.push_back({child, parent.depth + nodes[child].edge});
}

Suffix TreeSearch::suffixOf(size_t tree, const Tree& nodes, Place leaf) const {
  const uint32_t input = nodes[leaf.record].left >> 2;
  if (input >= inputs_.count() || leaf.depth == 0 || leaf.depth % 2 != 0 ||
      leaf.depth > 2 * uint64_t{inputs_.length(input)}) {
    refuse(tree, leaf.record,
           fmt::format("there is no suffix of {} bits of input {}", leaf.depth,
                       input));
  }
  Suffix suffix = {};
  suffix.pos = inputs_.length(input) - static_cast<uint32_t>(leaf.depth / 2);
  suffix.input = input << 2;
  return suffix;
}

bool TreeSearch::beginsWith(const Suffix& suffix, const Pattern& pattern) {
  const uint32_t input = inputNumber(suffix);
  const uint64_t bits = pattern.bits();
  if (2 * uint64_t{inputs_.length(input) - suffix.pos} < bits) return false;
  for (uint64_t bit = 0; bit < bits; bit += 64) {
    const uint64_t differ =
        strings_.slice(input, 2 * uint64_t{suffix.pos} + bit) ^
        pattern.slice(bit);
    const uint64_t wanted = std::min<uint64_t>(bits - bit, 64);
    if (differ >> (64 - wanted) != 0) return false;
  }
  return true;
}

}  // namespace kit
