// The tree output: suffix trees of limited size, one after the other, each to
// its file <output>_<tree>.stree, and a divider record for each to the dividers
// file.

#ifndef PALVOR_SINK_TREE_SINK_H_
#define PALVOR_SINK_TREE_SINK_H_

#include <cstdint>
#include <functional>
#include <optional>

#include "palvor/format/divider.h"
#include "palvor/io/data_paths.h"
#include "palvor/io/files.h"
#include "palvor/io/memory.h"
#include "palvor/io/record_writer.h"
#include "palvor/sink/compaction.h"
#include "palvor/sink/sink.h"
#include "palvor/sink/tree_builder.h"
#include "palvor/sink/tree_walks.h"
#include "palvor/text/collection.h"

namespace palvor {

// The LCP values of suffixes that are not the first of their tree, in bits.
struct LcpStatistics {
  int64_t count = 0;
  int64_t sum = 0;
  int largest = 0;
  int64_t above255 = 0;
  int64_t from32768 = 0;  // of 32768 or more
  int longestPath = 0;    // most entries of a tree's rightmost path in use

  void record(int bits) {
    if (bits > 255) {
      above255++;
      if (bits >= 32768) from32768++;
    }
    if (bits > largest) largest = bits;
    sum += bits;
    count++;
  }
};

// The three sets of links (palvor/sink/compaction.h) and the records of a tree.
struct CompactionReport {
  TreeCounts records;
  Compaction::Counts links[3];
};

// A tree that was written. Times are in milliseconds.
struct TreeFlush {
  int tree;  // its number
  InsertionCounts insertions;
  int nodeDepth;  // the largest number of links from the root to a record
  int64_t lcps;   // LCP values that were recorded, and their sum
  int64_t lcpSum;
  int64_t walkTime;       // of the processor, to find the depth
  int64_t processorTime;  // since the tree before was written
  int64_t wallTime;
  std::optional<CompactionReport> compaction;
};

class TreeSink final : public Sink {
 public:
  struct Options {
    int capacity;             // records of a tree, 2 or more
    bool reorder = false;     // write trees in traversal order
    bool compaction = false;  // measure the links
  };
  using Report = std::function<void(const TreeFlush&)>;

  // Has its buffers; fails if they can't be had. `dividers` must be open, and
  // is closed by others. All references must outlive the sink.
  TreeSink(const Collection& text, const DataPaths& paths,
           const Options& options, RecordWriter& dividers, MemoryCount& memory,
           IoTime& time, Report report);

  void begin(const MergeState& state) override;
  SinkRoom room() override;
  void put(int count) override;
  bool needsEntry() const override;
  void finish() override;

  int trees() const { return trees_; }
  const LcpStatistics& lcps() const { return lcps_; }

 private:
  static constexpr int kBatch = 256;  // suffixes on their way to the tree

  void closeTree();
  void writeDivider(int nodeDepth);
  void writeTree();

  const Collection& text_;
  const DataPaths& paths_;
  RecordWriter& dividers_;
  IoTime& time_;
  Report report_;
  std::optional<Compaction> compaction_;
  TreeBuilder tree_;
  Block<TreeNode> reordered_;  // null unless trees are reordered
  DividerRecord divider_ = {};
  LcpStatistics lcps_;
  int trees_ = 0;  // written

  // As they were when the tree before was written.
  const MergeState* state_ = nullptr;
  int64_t taken_ = 0;
  int64_t lcpCount_ = 0;
  int64_t lcpSum_ = 0;
  int64_t processorTime_ = 0;
  int64_t wallTime_ = 0;

  Suffix suffixes_[kBatch] = {};
  LcpEntry entries_[kBatch] = {};
};

}  // namespace palvor

#endif  // PALVOR_SINK_TREE_SINK_H_
