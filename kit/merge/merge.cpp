#include "kit/merge/merge.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "kit/amounts.h"
#include "kit/empty_folders.h"
#include "kit/folders.h"
#include "kit/merge/array_output.h"
#include "kit/merge/engine_error.h"
#include "kit/merge/range_pangenome.h"
#include "kit/merge/range_sink.h"
#include "kit/merge/range_trees.h"
#include "kit/message.h"
#include "kit/output_file.h"
#include "kit/range_work.h"
#include "palvor/range/cuts.h"
#include "palvor/range/ranges.h"

namespace kit {
namespace {

using RangeList = std::vector<std::shared_ptr<const palvor::MergeRange>>;

// So many that the last threads to end wait little for each other.
constexpr int kRangesPerThread = 8;

constexpr int kMostTreeNodes = 1 << 20;  // palvor's, unless told otherwise

int64_t suffixesOf(const RangeList& ranges) {
  int64_t sum = 0;
  for (const auto& range : ranges) sum += range->suffixes();
  return sum;
}

class Merging {
 public:
  explicit Merging(const MergeCommand& command)
      : command_(command), merger_(command.places) {
    if (command.pangenome.empty()) return;
    testChoice(command.pangenomeChoice);
    pangenome_.emplace(merger_, command.pangenomeChoice, command.groups);
  }

  void run();

 private:
  bool writesArray() const { return !command_.trees && !pangenome_; }
  uint64_t sinkBytes() const;
  int treeNodes() const;
  void stateNeeds() const;
  void load();
  void mergeArray();
  void mergeTrees();
  void countKmers();

  const MergeCommand& command_;
  RangeMerger merger_;
  std::optional<RangePangenome> pangenome_;
  RangeList ranges_;
  MemoryShares shares_;
};

int Merging::treeNodes() const {
  return command_.treeNodes != 0 ? command_.treeNodes
                                 : static_cast<int>(std::clamp<uint32_t>(
                                       merger_.longest(), 2, kMostTreeNodes));
}

// A tree and its path, or counts.
uint64_t Merging::sinkBytes() const {
  if (pangenome_) return pangenome_->bytesOfRange();
  return command_.trees
             ? sizeof(TreeNode) * static_cast<uint64_t>(treeNodes()) +
                   (uint64_t{1} << 20)
             : 0;
}

void Merging::stateNeeds() const {
  const auto suffixes = static_cast<uint64_t>(suffixesOf(ranges_));
  std::string needs = fmt::format(
      "{} suffixes in {} ranges, {} of memory", roundNumber(suffixes),
      ranges_.size(), roundBytes(shares_.total(command_.means.jobs)));
  if (writesArray()) {
    const uint64_t disk = (sizeof(Suffix) + sizeof(LcpEntry)) * suffixes;
    needs += fmt::format(", {} on disk", roundBytes(disk));
    const auto free = freeSpace(merger_.outputFolder());
    if (free && *free < disk) {
      throw std::runtime_error(fmt::format(
          "{}: No space left: {} are needed, {} are free",
          merger_.outputFolder(), roundBytes(disk), roundBytes(*free)));
    }
  }
  if (command_.sayNeeds) say(needs);
}

void Merging::load() {
  const int jobs = command_.means.jobs;
  const int wanted = command_.ranges != 0 ? command_.ranges : usualRanges(jobs);
  const std::vector<uint64_t> cuts =
      callEngine([&] { return palvor::chooseCuts(merger_.files(), wanted); });
  MergeLoad load = {merger_.stringBytes(), merger_.files().count(),
                    cuts.size() + 1, sinkBytes()};
  if (pangenome_) load.otherBytes = pangenome_->bytesOfAll(cuts.size() + 1);
  shares_ = shareMemory(load, command_.places.readLcps, command_.means);
  merger_.load();
  for (palvor::MergeRange& range : callEngine([&] {
         return palvor::cutRanges(merger_.files(), merger_.strings(), cuts);
       })) {
    ranges_.push_back(
        std::make_shared<const palvor::MergeRange>(std::move(range)));
  }
  stateNeeds();
  merger_.findLikes(command_.means.memory - shares_.total(jobs));
}

void Merging::run() {
  if (pangenome_) {
    load();
    countKmers();
    return;
  }
  EmptyFolders made(merger_.outputFolder());
  createFolders(merger_.outputFolder());
  load();
  command_.trees ? mergeTrees() : mergeArray();
  made.keep();
}

void Merging::mergeArray() {
  const int64_t suffixes = suffixesOf(ranges_);
  ArrayOutput output(merger_.output(), static_cast<uint64_t>(suffixes));
  std::vector<int64_t> firsts = {0};
  for (const auto& range : ranges_) {
    firsts.push_back(firsts.back() + range->suffixes());
  }
  RangeWork work("merging", ranges_.size(), static_cast<uint64_t>(suffixes),
                 command_.progress);
  work.run(command_.means.jobs, [&] {
    const auto buffers = std::make_shared<RangeBuffers>(shares_.outputRecords);
    return [&, buffers](size_t r) {
      const palvor::MergeRange& range = *ranges_[r];
      RangeSink sink(output.files(), {firsts[r], range.suffixes(), range.entry},
                     *buffers, [&](uint64_t done) { work.advance(done); });
      merger_.merge(ranges_[r], shares_, sink);
    };
  });
  output.commit();
}

void Merging::mergeTrees() {
  RangeTrees trees(merger_, ranges_.size(), treeNodes());
  RangeWork work("merging", ranges_.size(),
                 static_cast<uint64_t>(suffixesOf(ranges_)), command_.progress);
  work.run(command_.means.jobs, [&] {
    return [&](size_t r) {
      trees.make(r, ranges_[r], shares_,
                 [&](uint64_t done) { work.advance(done); });
    };
  });
  removeTrees(merger_.output());
  trees.commit();
}

void Merging::countKmers() {
  // Begun now: that it cannot be written is not to be found out at the end.
  std::optional<OutputFile> file;
  if (command_.pangenome != "-") file.emplace(behindLinks(command_.pangenome));
  pangenome_->setRanges(ranges_.size());
  RangeWork work("counting k-mers", ranges_.size(),
                 static_cast<uint64_t>(suffixesOf(ranges_)));
  work.run(command_.means.jobs, [&] {
    return [&](size_t r) {
      pangenome_->count(r, ranges_[r], shares_,
                        [&](uint64_t done) { work.advance(done); });
    };
  });
  pangenome_->write(file ? &*file : nullptr);
}

}  // namespace

int usualRanges(int jobs) { return jobs == 1 ? 1 : kRangesPerThread * jobs; }

void merge(const MergeCommand& command) { Merging(command).run(); }

}  // namespace kit
