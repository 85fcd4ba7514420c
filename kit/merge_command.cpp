// The command line of palvor-kit merge.

#include <memory>

#include "kit/commands.h"
#include "kit/merge.h"
#include "kit/merge_options.h"

namespace kit {

void addMerge(CLI::App& app) {
  auto options = std::make_shared<MergeCommand>();
  CLI::App* command =
      app.add_subcommand("merge",
                         "Merge a data folder by several threads, into the "
                         "files that palvor -a -l "
                         "writes, or into suffix tree partitions.");
  addMergePlaces(*command, options->places);
  addMergeMeans(*command, options->means);
  command
      ->add_option(
          "--ranges", options->ranges,
          "ranges that the merged order is cut into, 8 for each thread "
          "if not given; what is written does not depend on it, but "
          "for trees")
      ->check(CLI::Range(1, 1 << 20));
  command->add_flag("--trees", options->trees,
                    "write suffix tree partitions instead of an array");
  command
      ->add_option("-n", options->treeNodes,
                   "with --trees, records of a tree, as palvor's -n")
      ->check(CLI::Range(2, 178956970))
      ->type_name("NODES");
  command->callback([options] { merge(*options); });
}

}  // namespace kit
