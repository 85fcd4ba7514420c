// The command lines of palvor-kit plan and palvor-kit join.

#include <memory>

#include "kit/commands.h"
#include "kit/merge_options.h"
#include "kit/merge_parts.h"

namespace kit {

void addPlan(CLI::App& app) {
  struct Options {
    MergePlaces places;
    int ranges = 0;
    bool force = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "plan",
      "Cut the merged order of a data folder into even ranges, which "
      "palvor-kit merge --range merges, each on any machine.");
  addMergePlaces(*command, options->places);
  command->add_option("--ranges", options->ranges, "number of ranges")
      ->check(CLI::Range(1, 1 << 20))
      ->required();
  command->add_flag("--force", options->force,
                    "replace another plan, and remove its parts");
  command->callback([options] {
    planMerge(options->places, options->ranges, options->force);
  });
}

void addJoin(CLI::App& app) {
  struct Options {
    MergePlaces places;
    bool keep = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "join",
      "Put the parts of all planned ranges together, into the files that "
      "palvor -a -l writes.");
  addMergePlaces(*command, options->places);
  command->add_flag("--keep", options->keep, "keep the plan and the parts");
  command->callback([options] { joinParts(options->places, options->keep); });
}

}  // namespace kit
