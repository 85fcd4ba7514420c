#include "kit/cost_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "kit/needs.h"
#include "kit/preparation.h"
#include "kit/range_merger.h"
#include "kit/records.h"

namespace kit {
namespace {

// Nanoseconds of one core, system calls included, measured with related
// bacteria.
constexpr double kPrepareTime = 75;  // a character
constexpr double kLikesTime = 5;     // a character of the whole collection
constexpr double kMergeTime = 30;    // a suffix
constexpr double kCheckTime = 60;    // a suffix
constexpr double kCopyTime = 10;     // a suffix, when parts are joined

constexpr uint64_t kArrayBytes = sizeof(Suffix);
constexpr uint64_t kMergedBytes = sizeof(Suffix) + sizeof(LcpEntry);
constexpr uint64_t kLittle = 20'000'000;  // bytes of a job that keeps nothing

uint64_t stringBytes(uint64_t characters) { return characters / 4; }

class Estimate {
 public:
  explicit Estimate(const Cluster& cluster) : cluster_(cluster) {}

  uint64_t placesFor(const std::string& step, uint64_t memory) const {
    uint64_t onNode = cluster_.cores;
    if (cluster_.nodeMemory != 0) {
      onNode = std::min(onNode, cluster_.nodeMemory / memory);
    }
    if (onNode == 0) {
      throw std::runtime_error(
          fmt::format("a job of {} takes {} of memory, a node has {}", step,
                      roundBytes(memory), roundBytes(cluster_.nodeMemory)));
    }
    return cluster_.nodes * onNode;
  }

  // Completes a step whose jobs compute for so many seconds.
  void add(StepCost cost, double compute) {
    cost.atOnce = std::min(cost.jobs, placesFor(cost.step, cost.memory));
    const double onNode =
        std::max(1.0, static_cast<double>(cost.atOnce) /
                          static_cast<double>(cluster_.nodes));
    const auto bytes = static_cast<double>(cost.read + cost.written);
    const double transfer =
        std::max(bytes * onNode / static_cast<double>(cluster_.network),
                 bytes * static_cast<double>(cost.atOnce) /
                     static_cast<double>(cluster_.disk));
    cost.seconds = compute + transfer;
    const uint64_t rounds = (cost.jobs + cost.atOnce - 1) / cost.atOnce;
    cost.allSeconds = static_cast<double>(rounds) * cost.seconds;
    steps_.push_back(cost);
  }

  const std::vector<StepCost>& steps() const { return steps_; }

 private:
  const Cluster& cluster_;
  std::vector<StepCost> steps_;
};

double seconds(double nanoseconds, uint64_t times) {
  return 1e-9 * nanoseconds * static_cast<double>(times);
}

uint64_t mergeMemory(const Collection& collection) {
  const uint64_t strings = stringBytes(collection.characters);
  const auto streams = static_cast<int>(
      std::min<uint64_t>(collection.genomes, std::numeric_limits<int>::max()));
  return shareMemory({strings, streams, 3, 0}, false, {}).total(1) +
         kLikesRatio * strings;
}

}  // namespace

std::vector<StepCost> estimateCosts(const Collection& collection,
                                    const Cluster& cluster, uint64_t ranges) {
  Estimate estimate(cluster);
  const uint64_t all = collection.characters;
  const uint64_t genome = all / collection.genomes;
  const uint64_t memory = mergeMemory(collection);
  if (ranges == 0) ranges = 2 * estimate.placesFor("merge", memory);
  const uint64_t suffixes = (all + ranges - 1) / ranges;
  estimate.add({.step = "prepare",
                .jobs = collection.genomes,
                .memory = memoryNeed(genome, genome, 1),
                .read = genome,
                .written = kArrayBytes * genome + stringBytes(genome)},
               seconds(kPrepareTime, genome));
  estimate.add({.step = "merge",
                .jobs = ranges,
                .memory = memory,
                .read = stringBytes(all) + kArrayBytes * suffixes,
                .written = kMergedBytes * suffixes},
               seconds(kLikesTime, all) + seconds(kMergeTime, suffixes));
  estimate.add({.step = "check",
                .jobs = ranges,
                .memory = stringBytes(all) + kLittle,
                .read = stringBytes(all) + kMergedBytes * suffixes},
               seconds(kCheckTime, suffixes));
  estimate.add({.step = "join",
                .jobs = 1,
                .memory = kLittle,
                .read = kMergedBytes * all,
                .written = kMergedBytes * all},
               seconds(kCopyTime, all));
  return estimate.steps();
}

uint64_t diskNeed(const Collection& collection) {
  return (kArrayBytes + 2 * kMergedBytes) * collection.characters +
         stringBytes(collection.characters);
}

}  // namespace kit
