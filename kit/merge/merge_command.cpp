// The command line of palvor-kit merge.

#include <memory>

#include "kit/commands.h"
#include "kit/merge/merge.h"
#include "kit/merge/merge_options.h"
#include "kit/merge/merge_parts.h"

namespace kit {

void addMerge(CLI::App& app) {
  auto options = std::make_shared<MergeCommand>();
  auto part = std::make_shared<PartCommand>();
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
  CLI::Option* pangenome =
      command
          ->add_option("--pangenome", options->pangenome,
                       "write neither array nor trees, but what palvor-kit "
                       "pangenome tells, to this file; -: to standard output")
          ->type_name("FILE")
          ->excludes("--trees");
  addPangenomeChoice(*command, options->pangenomeChoice, pangenome);
  command
      ->add_option("--groups", options->groups,
                   "with --pangenome, table of genomes, as palvor-kit "
                   "pangenome's")
      ->type_name("TSV")
      ->needs(pangenome);
  CLI::Option* range =
      command
          ->add_option("--range", part->range,
                       "merge one range of the plan (see palvor-kit plan) into "
                       "a part")
          ->type_name("N")
          ->excludes("--ranges")
          ->excludes("--trees")
          ->excludes("--pangenome")
          ->excludes("--jobs");
  command
      ->add_option("--stage", part->stage,
                   "with --range, copy what it needs of the suffix arrays to "
                   "this folder, on a local disk, first")
      ->type_name("DIR")
      ->needs(range);
  command->callback([options, part, range] {
    if (range->count() == 0) return merge(*options);
    part->places = options->places;
    part->means = options->means;
    mergePart(*part);
  });
}

}  // namespace kit
