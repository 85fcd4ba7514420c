#include "kit/build/build_means.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "kit/amounts.h"
#include "kit/build/machine.h"
#include "kit/memory_option.h"
#include "kit/merge/merge.h"
#include "kit/prepare/preparation.h"
#include "kit/prepare/size_estimate.h"
#include "kit/records.h"

namespace kit {
namespace {

// Of each thread, in seconds a suffix, for strains of bacteria, with the output
// in memory.
constexpr double kPrepareTime = 45e-9;
constexpr double kMergeTime = 100e-9;
constexpr double kTreesTime = 160e-9;
constexpr double kSumTime = 25e-9;
constexpr double kCheckTime = 300e-9;

// Nodes of the trees a suffix, about.
constexpr double kNodes = 2.1;

// What strains have in common is found out beforehand, in so many bytes a
// character at most, where that fits.
constexpr double kLikesBytes = 0.4;

MergeLoad mergeLoad(const BuildLoad& load, int jobs) {
  return {.stringBytes = load.all() / 4,
          .streams = static_cast<int>(load.arrays),
          .ranges = static_cast<uint64_t>(usualRanges(jobs)),
          .sinkBytes = 0};
}

uint64_t leastMemory(const BuildLoad& load, int jobs) {
  return std::max(leastMemoryNeed(load.longest, jobs),
                  leastMergeMemory(mergeLoad(load, jobs), false, jobs));
}

uint64_t memoryOf(const BuildLoad& load, const BuildMeans& means) {
  const MemoryShares shares = shareMemory(mergeLoad(load, means.jobs), false,
                                          {means.jobs, means.memory});
  const auto likes =
      static_cast<uint64_t>(kLikesBytes * static_cast<double>(load.all()));
  return std::min(means.memory,
                  std::max(memoryNeed(load.longest, load.fresh, means.jobs),
                           shares.total(means.jobs) + likes));
}

double secondsOf(const BuildOptions& options, const BuildLoad& load, int jobs) {
  const double of_all = (options.trees ? kTreesTime : kMergeTime) + kSumTime +
                        (options.check ? kCheckTime : 0);
  return (kPrepareTime * static_cast<double>(load.fresh) +
          of_all * static_cast<double>(load.all())) /
         jobs;
}

}  // namespace

BuildLoad loadOf(const BuildOptions& options) {
  BuildLoad load;
  load.arrays = options.files.size();
  if (const auto size = estimateSize(options.files)) {
    const uint64_t strands = options.bothStrands ? 2 : 1;
    load.fresh = strands * size->all;
    load.longest = strands * size->longest;
  }
  return load;
}

BuildMeans meansFor(const BuildOptions& options, const BuildLoad& load) {
  BuildMeans means = {
      options.jobs != 0 ? options.jobs : usableThreads(),
      options.memory != 0 ? options.memory : usableMemory() / 2};
  if (options.jobs == 0) {
    while (means.jobs > 1 && leastMemory(load, means.jobs) > means.memory) {
      means.jobs--;
    }
  }
  const uint64_t least = leastMemory(load, means.jobs);
  if (least > means.memory) {
    throw std::runtime_error(fmt::format(
        "needs {} of memory for the strings of {} characters and {} threads; "
        "you allow {}{}",
        roundBytes(least), roundNumber(load.all()), means.jobs,
        memoryText(means.memory),
        options.memory != 0 ? "" : ", half of what there is (see --memory)"));
  }
  return means;
}

uint64_t diskNeed(const BuildOptions& options, const BuildLoad& load) {
  const double merged =
      options.trees ? kNodes * sizeof(TreeNode)
                    : static_cast<double>(sizeof(Suffix) + sizeof(LcpEntry));
  const double prepared = sizeof(Suffix) + 0.25;
  return static_cast<uint64_t>(prepared * static_cast<double>(load.fresh) +
                               merged * static_cast<double>(load.all())) +
         8192 * load.arrays;
}

std::string needsText(const BuildOptions& options, const BuildLoad& load,
                      const BuildMeans& means) {
  return fmt::format(
      "about {} characters in {} files: {} of memory ({} allowed), {} on disk, "
      "{} in {} threads",
      roundNumber(load.all()), load.arrays, roundBytes(memoryOf(load, means)),
      memoryText(means.memory), roundBytes(diskNeed(options, load)),
      clockTime(1 + secondsOf(options, load, means.jobs)), means.jobs);
}

}  // namespace kit
