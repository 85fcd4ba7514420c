#include "kit/merge/cost_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "kit/amounts.h"
#include "kit/merge/range_merger.h"
#include "kit/prepare/preparation.h"
#include "kit/records.h"

namespace kit {
namespace {

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

// Without what finding likes takes.
uint64_t mergeMemory(const Collection& collection) {
  const auto streams = static_cast<int>(
      std::min<uint64_t>(collection.genomes, std::numeric_limits<int>::max()));
  return shareMemory({stringBytes(collection.characters), streams, 3, 0}, false,
                     {})
      .total(1);
}

}  // namespace

std::vector<StepCost> estimateCosts(const Collection& collection,
                                    const Cluster& cluster,
                                    const StepTimes& times, uint64_t ranges) {
  Estimate estimate(cluster);
  const uint64_t all = collection.characters;
  const uint64_t genome = all / collection.genomes;
  const uint64_t likesMemory = kLikesRatio * stringBytes(all);
  uint64_t memory = mergeMemory(collection);
  const bool findsLikes =
      cluster.nodeMemory == 0 || memory + likesMemory <= cluster.nodeMemory;
  if (findsLikes) memory += likesMemory;
  if (ranges == 0) ranges = 2 * estimate.placesFor("merge", memory);
  const uint64_t suffixes = (all + ranges - 1) / ranges;
  estimate.add({.step = "prepare",
                .jobs = collection.genomes,
                .memory = memoryNeed(genome, genome, 1),
                .read = genome,
                .written = kArrayBytes * genome + stringBytes(genome)},
               seconds(times.prepare, genome));
  estimate.add({.step = "merge",
                .jobs = ranges,
                .memory = memory,
                .read = stringBytes(all) + kArrayBytes * suffixes,
                .written = kMergedBytes * suffixes},
               (findsLikes ? seconds(times.likes, all) : 0) +
                   seconds(times.merge, suffixes));
  estimate.add({.step = "check",
                .jobs = ranges,
                .memory = stringBytes(all) + kLittle,
                .read = stringBytes(all) + kMergedBytes * suffixes},
               seconds(times.check, suffixes));
  estimate.add({.step = "join",
                .jobs = 1,
                .memory = kLittle,
                .read = kMergedBytes * all,
                .written = kMergedBytes * all},
               seconds(times.copy, all));
  return estimate.steps();
}

uint64_t diskNeed(const Collection& collection) {
  return (kArrayBytes + 2 * kMergedBytes) * collection.characters +
         stringBytes(collection.characters);
}

}  // namespace kit
