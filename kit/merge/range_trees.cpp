#include "kit/merge/range_trees.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "kit/file_error.h"
#include "kit/merge/engine_error.h"
#include "kit/output_file.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "palvor/io/record_writer.h"
#include "palvor/sink/tree_sink.h"

namespace kit {
namespace {

void rename(const std::string& from, const std::string& to) {
  std::error_code failure;
  std::filesystem::rename(from, to, failure);
  if (failure) {
    throw FileError(
        from, fmt::format("can't be renamed to {}: {}", to, failure.message()));
  }
}

}  // namespace

RangeTrees::RangeTrees(const RangeMerger& merger, size_t ranges, int nodes)
    : merger_(merger), nodes_(nodes), trees_(ranges) {}

RangeTrees::~RangeTrees() {
  if (committed_) return;
  std::error_code failure;
  for (size_t r = 0; r < trees_.size(); r++) {
    for (int t = 0; t <= trees_[r]; t++) {
      std::filesystem::remove(treePath(r, t), failure);
    }
    std::filesystem::remove(dividersPath(r), failure);
  }
}

std::string RangeTrees::treePath(size_t range, int tree) const {
  return fmt::format("{}_{}.range_{}.stree", merger_.output(), range, tree);
}

std::string RangeTrees::dividersPath(size_t range) const {
  return fmt::format("{}_{}.range.stdiv", merger_.output(), range);
}

void RangeTrees::make(size_t range,
                      std::shared_ptr<const palvor::MergeRange> slices,
                      const MemoryShares& shares,
                      const std::function<void(uint64_t)>& advance) {
  palvor::IoTime time;
  palvor::MemoryCount memory;
  palvor::DataPaths paths = merger_.files().paths;
  paths.output = fmt::format("{}_{}.range", merger_.output(), range);
  palvor::RecordWriter dividers(dividersPath(range), time);
  if (!dividers.create()) {
    throw FileError(dividers.path(), dividers.blame().reason);
  }
  palvor::TreeSink sink(merger_.strings(), paths, {nodes_, false, false},
                        dividers, memory, time,
                        [&](const palvor::TreeFlush& flush) {
                          trees_[range] = flush.tree + 1;
                          advance(static_cast<uint64_t>(flush.lcps) + 1);
                        });
  merger_.merge(std::move(slices), shares, sink);
  if (!dividers.close()) {
    throw FileError(dividers.path(), dividers.blame().reason);
  }
}

void RangeTrees::commit() {
  const std::string path = merger_.output() + ".stdiv";
  OutputFile dividers(path);
  int number = 0;
  for (size_t r = 0; r < trees_.size(); r++) {
    for (DividerRecord record :
         RecordFile<DividerRecord>(dividersPath(r)).read(0, UINT64_MAX)) {
      rename(treePath(r, record.tree),
             fmt::format("{}_{}.stree", merger_.output(), number));
      record.tree = number++;
      dividers.write(&record, sizeof record);
    }
    std::filesystem::remove(dividersPath(r));
  }
  dividers.commit();
  committed_ = true;
}

}  // namespace kit
