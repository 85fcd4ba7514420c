// The command line of palvor-kit report.

#include <memory>

#include "kit/answers/report.h"
#include "kit/commands.h"

namespace kit {

void addReport(CLI::App& app) {
  auto options = std::make_shared<ReportOptions>();
  CLI::App* command = app.add_subcommand(
      "report",
      "Write a page for a browser about the genomes of a merged array: what is "
      "in it, what they share for every k, how far they are from each other.");
  addMergedOptions(*command, options->merged);
  command->add_option("--min-k", options->k.min, "shortest k-mers")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command->add_option("--max-k", options->k.max, "longest k-mers")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command
      ->add_option("-k,--kmer", options->distanceK,
                   "length of the k-mers that distances are told by")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command
      ->add_option("--page", options->page,
                   "file to write, instead of PREFIX.report.html beside the "
                   "merged array; the file for MultiQC goes beside it")
      ->type_name("FILE");
  command
      ->add_option("--log", options->log,
                   "what palvor, or GNU time -v, wrote to standard error: the "
                   "page tells its times and memory")
      ->type_name("FILE");
  command->callback([options] { report(*options); });
}

}  // namespace kit
