// The command line of palvor-kit distance.

#include <memory>
#include <string>

#include "kit/answers/distance.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"
#include "kit/word_choice.h"

namespace kit {

void addDistance(CLI::App& app) {
  auto options = std::make_shared<DistanceOptions>();
  CLI::App* command = app.add_subcommand(
      "distance",
      "Tell what each two genomes of a merged array share, and how far they "
      "are from each other: k-mers, Mash distance, average common substrings; "
      "as a table, a PHYLIP matrix, or a tree.");
  addMergedOptions(*command, options->merged);
  command->add_option("-k,--kmer", options->k, "lengths of k-mers")
      ->check(CLI::Range(1, 1000))
      ->delimiter(',')
      ->allow_extra_args(false)
      ->capture_default_str();
  CLI::Option* acs =
      command->add_flag("--acs", options->acs,
                        "tell average common substrings too, in the table");
  CLI::Option* json =
      command->add_flag("--json", options->json, "print a JSON object a line");
  command
      ->add_option("--format", options->format,
                   "print a table, a square matrix, or the tree of neighbour "
                   "joining")
      ->transform(oneOf<DistanceFormat>({{"tsv", DistanceFormat::kTsv},
                                         {"phylip", DistanceFormat::kPhylip},
                                         {"newick", DistanceFormat::kNewick}}))
      ->type_name("tsv|phylip|newick")
      ->default_str("tsv")
      ->excludes(json)
      ->excludes(acs);
  command
      ->add_option("--measure", options->measure,
                   "the distances of the matrix or the tree")
      ->transform(
          oneOf<DistanceMeasure>({{"mash", DistanceMeasure::kMash},
                                  {"jaccard", DistanceMeasure::kJaccard},
                                  {"acs", DistanceMeasure::kAcs}}))
      ->type_name("mash|jaccard|acs")
      ->default_str("mash");
  addJobs(*command, options->jobs);
  command->callback([options] { distance(*options); });
}

}  // namespace kit
