#include "palvor/sink/tree_sink.h"

#include <algorithm>
#include <string>
#include <utility>

#include "palvor/error.h"
#include "palvor/io/clocks.h"

namespace palvor {

TreeSink::TreeSink(const Collection& text, const DataPaths& paths,
                   const Options& options, RecordWriter& dividers,
                   MemoryCount& memory, IoTime& time, Report report)
    : text_(text),
      paths_(paths),
      dividers_(dividers),
      time_(time),
      report_(std::move(report)),
      compaction_(options.compaction ? std::optional<Compaction>(std::in_place)
                                     : std::nullopt),
      tree_(options.capacity, compaction_ ? &*compaction_ : nullptr, memory) {
  if (!options.reorder) return;
  memory.add(Block<TreeNode>::bytesOf(options.capacity));
  reordered_ = Block<TreeNode>(options.capacity, "the reordered tree");
}

void TreeSink::begin(const MergeState& state) {
  state_ = &state;
  processorTime_ = processorTime().milliseconds;
  wallTime_ = wallMilliseconds();
}

SinkRoom TreeSink::room() {
  if (tree_.isFull()) closeTree();
  // Of all but the last it must be known that the tree is not full then.
  return {suffixes_, entries_, std::min(kBatch, tree_.room())};
}

bool TreeSink::needsEntry() const {
  return !tree_.isEmpty() && !tree_.isFull();
}

void TreeSink::put(int count) {
  for (int i = 0; i < count; i++) {
    const Suffix& suffix = suffixes_[i];
    const int bits = text_.remainingBits(suffix);
    if (tree_.isEmpty()) {
      divider_.firstPrefix = suffix.prefix0;
      divider_.tree = trees_;
      tree_.start(suffix, bits);
      continue;
    }
    const LcpEntry entry = entries_[i];
    lcps_.record(lcpBits(entry));
    tree_.insert(suffix, bits, lcpBits(entry), lcpFirstbit(entry),
                 state_->taken + i - taken_);
  }
  if (count > 0) divider_.lastPrefix = suffixes_[count - 1].prefix0;
}

void TreeSink::finish() {
  if (!tree_.isEmpty()) closeTree();
}

void TreeSink::writeDivider(int nodeDepth) {
  divider_.nodes = tree_.nodes();
  divider_.maxDepth = static_cast<uint16_t>(nodeDepth);
  constexpr int64_t kSize = sizeof(DividerRecord);
  if (dividers_.write(&divider_, kSize) != kSize) {
    fail(dividers_.blame(), "could not write current divider element");
  }
}

void TreeSink::writeTree() {
  RecordWriter file(paths_.treeFile(divider_.tree), time_);
  if (!file.create()) {
    fail(file.blame(), "cannot open suffix array %s for writing tree",
         file.path().c_str());
  }
  const int64_t size = Block<TreeNode>::bytesOf(tree_.nodes());
  const TreeNode* records =
      reordered_.data() != nullptr ? reordered_.data() : tree_.records();
  const int64_t written = file.write(records, size);
  if (!file.close() || written != size) {
    fail(file.blame(),
         "not all output tree nodes were written: %d bytes and %d Nodes",
         static_cast<int>(written), tree_.nodes());
  }
}

void TreeSink::closeTree() {
  if (compaction_) tree_.registerPath();
  if (reordered_.data() != nullptr) {
    reorderTree(tree_.records(), reordered_.data());
  }

  TreeFlush flush = {};
  const int64_t walkStart = processorTime().milliseconds;
  flush.tree = trees_;
  flush.nodeDepth = tree_.largestNodeDepth();
  if (compaction_) {
    CompactionReport& report = flush.compaction.emplace();
    report.records =
        countRecords({tree_.records(), static_cast<size_t>(tree_.nodes())});
    for (const auto set :
         {Compaction::kLeft, Compaction::kRight, Compaction::kEdge}) {
      report.links[set] = compaction_->countsOf(set);
    }
  }
  flush.walkTime = processorTime().milliseconds - walkStart;
  flush.insertions = tree_.counts();

  writeDivider(flush.nodeDepth);
  writeTree();

  flush.lcps = lcps_.count - std::exchange(lcpCount_, lcps_.count);
  flush.lcpSum = lcps_.sum - std::exchange(lcpSum_, lcps_.sum);
  const int64_t processorNow = processorTime().milliseconds;
  const int64_t wallNow = wallMilliseconds();
  flush.processorTime =
      processorNow - std::exchange(processorTime_, processorNow);
  flush.wallTime = wallNow - std::exchange(wallTime_, wallNow);
  report_(flush);

  lcps_.longestPath = std::max(lcps_.longestPath, tree_.counts().maxPath);
  taken_ = state_->taken;
  tree_.clear();
  if (compaction_) compaction_->clear();
  trees_++;
}

}  // namespace palvor
