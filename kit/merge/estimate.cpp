#include "kit/merge/estimate.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "kit/amounts.h"
#include "kit/merge/engine_error.h"
#include "kit/message.h"
#include "kit/standard_output.h"
#include "palvor/range/array_reader.h"

namespace kit {
namespace {

// "90 seconds", "12 minutes", "3.5 hours", "12 days"
std::string roundTime(double seconds) {
  constexpr double kMinute = 60;
  constexpr double kHour = 60 * kMinute;
  constexpr double kDay = 24 * kHour;
  if (seconds < 2 * kMinute) return fmt::format("{:.0f} seconds", seconds);
  if (seconds < 2 * kHour) {
    return fmt::format("{:.0f} minutes", seconds / kMinute);
  }
  if (seconds < 2 * kDay) return fmt::format("{:.1f} hours", seconds / kHour);
  return fmt::format("{:.1f} days", seconds / kDay);
}

}  // namespace

Collection collectionOf(const MergePlaces& places) {
  const RangeMerger merger(places);
  Collection collection;
  collection.genomes = static_cast<uint64_t>(merger.files().count());
  for (int k = 0; k < merger.files().count(); k++) {
    callEngine([&] {
      collection.characters +=
          static_cast<uint64_t>(palvor::ArrayReader(merger.files(), k).size());
    });
  }
  return collection;
}

void printEstimate(const Collection& collection, const Cluster& cluster,
                   const StepTimes& times, uint64_t ranges) {
  if (collection.characters < collection.genomes || collection.genomes == 0) {
    throw std::runtime_error("nothing to estimate: there are no characters");
  }
  const std::vector<StepCost> steps =
      estimateCosts(collection, cluster, times, ranges);
  writeOutput(
      "step\tjobs\tat_once\tmemory\tread\twritten\tseconds\t"
      "all_seconds\n");
  double seconds = 0;
  for (const StepCost& cost : steps) {
    writeOutput(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{:.3f}\t{:.3f}\n",
                            cost.step, cost.jobs, cost.atOnce, cost.memory,
                            cost.read, cost.written, cost.seconds,
                            cost.allSeconds));
    seconds += cost.allSeconds;
  }
  finishOutput();
  say(fmt::format("{} suffixes of {} genomes: about {}, and {} on the disk",
                  roundNumber(collection.characters), collection.genomes,
                  roundTime(seconds), roundBytes(diskNeed(collection))));
}

}  // namespace kit
