// The command lines of palvor-kit plan and palvor-kit join.

#include <cstdint>
#include <memory>
#include <string>

#include "kit/commands.h"
#include "kit/jobs_option.h"
#include "kit/memory_option.h"
#include "kit/merge/estimate.h"
#include "kit/merge/merge_options.h"
#include "kit/merge/merge_parts.h"

namespace kit {

namespace {

struct PlanOptions {
  MergePlaces places;
  int ranges = 0;
  bool force = false;
  bool estimate = false;
  uint64_t genomes = 0;
  double characters = 0;  // of each
  Cluster cluster;
  StepTimes times;
};

// Takes sizes such as 1G, in units of 1000.
CLI::Option* addSize(CLI::App& command, const std::string& name, uint64_t& size,
                     const std::string& description) {
  return takeSize(command.add_option(name, size, description), true);
}

void addEstimate(CLI::App& command, PlanOptions& options) {
  CLI::Option* estimate = command.add_flag(
      "--estimate", options.estimate,
      "plan nothing: print what preparing, merging, proving and joining cost");
  const auto count = CLI::Range(uint64_t{1}, uint64_t{1} << 40);
  CLI::Option* genomes =
      command
          .add_option("--genomes", options.genomes,
                      "number of genomes, where there is no data folder yet")
          ->check(count)
          ->needs(estimate);
  CLI::Option* characters =
      command
          .add_option("--characters", options.characters,
                      "characters of each of them, such as 5e6")
          ->check(CLI::Range(1.0, 1e12))
          ->needs(genomes);
  genomes->needs(characters)->excludes("inputdir");
  command.add_option("--nodes", options.cluster.nodes, "number of nodes")
      ->check(CLI::Range(1, 1 << 20))
      ->capture_default_str()
      ->needs(estimate);
  command.add_option("--cores", options.cluster.cores, "cores of each")
      ->check(CLI::Range(1, 1 << 20))
      ->capture_default_str()
      ->needs(estimate);
  addSize(command, "--node-memory", options.cluster.nodeMemory,
          "memory of each, such as 256G; enough for all, if not given")
      ->needs(estimate);
  addSize(command, "--disk", options.cluster.disk,
          "bytes a second of the shared disk, 500M if not given")
      ->check(CLI::PositiveNumber)
      ->needs(estimate);
  addSize(command, "--network", options.cluster.network,
          "bytes a second of each node's network, 1G if not given")
      ->check(CLI::PositiveNumber)
      ->needs(estimate);
  const auto addTime = [&](const std::string& name, double& time,
                           const std::string& description) {
    command.add_option(name, time, description)
        ->check(CLI::Range(0.0, 1e9))
        ->capture_default_str()
        ->type_name("NS")
        ->needs(estimate);
  };
  addTime("--prepare-time", options.times.prepare,
          "nanoseconds of one core to prepare a character");
  addTime("--merge-time", options.times.merge,
          "nanoseconds of one core to merge a suffix");
  addTime("--check-time", options.times.check,
          "nanoseconds of one core to prove a suffix");
}

void estimate(const PlanOptions& options) {
  Collection collection = {
      options.genomes,
      static_cast<uint64_t>(options.characters *
                            static_cast<double>(options.genomes))};
  if (options.genomes == 0) collection = collectionOf(options.places);
  printEstimate(collection, options.cluster, options.times,
                static_cast<uint64_t>(options.ranges));
}

}  // namespace

void addPlan(CLI::App& app) {
  auto options = std::make_shared<PlanOptions>();
  CLI::App* command = app.add_subcommand(
      "plan",
      "Cut the merged order of a data folder into even ranges, which "
      "palvor-kit merge --range merges, each on any machine; or tell what "
      "that costs.");
  addMergePlaces(*command, options->places);
  command->add_option("--ranges", options->ranges, "number of ranges")
      ->check(CLI::Range(1, 1 << 20));
  command->add_flag("--force", options->force,
                    "replace another plan, and remove its parts");
  addEstimate(*command, *options);
  // Genomes that are not there yet need no folder.
  command->get_option("inputdir")->required(false);
  command->get_option("prefix")->required(false);
  command->callback([options] {
    if (options->genomes == 0 && options->places.prefix.empty()) {
      throw CLI::RequiredError(options->places.inputdir.empty() ? "inputdir"
                                                                : "prefix");
    }
    if (options->estimate) return estimate(*options);
    if (options->ranges == 0) throw CLI::RequiredError("--ranges");
    planMerge(options->places, options->ranges, options->force);
  });
}

void addJoin(CLI::App& app) {
  struct Options {
    MergePlaces places;
    int jobs = 1;
    bool keep = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "join",
      "Put the parts of all planned ranges together, into the files that "
      "palvor -a -l writes.");
  addMergePlaces(*command, options->places);
  addJobs(*command, options->jobs);
  command->add_flag("--keep", options->keep, "keep the plan and the parts");
  command->callback(
      [options] { joinParts(options->places, options->jobs, options->keep); });
}

}  // namespace kit
