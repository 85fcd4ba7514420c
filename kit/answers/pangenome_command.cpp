// The command line of palvor-kit pangenome.

#include <map>
#include <memory>
#include <string>

#include "kit/answers/pangenome.h"
#include "kit/commands.h"

namespace kit {

void addPangenome(CLI::App& app) {
  auto options = std::make_shared<PangenomeOptions>();
  CLI::App* command = app.add_subcommand(
      "pangenome",
      "Tell how many k-mers the genomes of a merged array share, for every k: "
      "how many occur in 1, 2, ... genomes, what more genomes add, what all "
      "have in common.");
  addMergedOptions(*command, options->merged);
  command->add_option("--min-k", options->k.min, "shortest k-mers")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command->add_option("--max-k", options->k.max, "longest k-mers")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command
      ->add_option("--quorum", options->quorums,
                   "parts of the genomes that have what is core")
      ->check(CLI::Range(0.0, 1.0))
      ->delimiter(',')
      ->capture_default_str();
  CLI::Option* canonical = command->add_flag_callback(
      "--canonical", [options] { options->canonical = true; },
      "count a k-mer and its reverse complement as one: the default where both "
      "strands are in");
  command
      ->add_flag_callback(
          "--no-canonical", [options] { options->canonical = false; },
          "count them apart")
      ->excludes(canonical);
  const std::map<std::string, PangenomeTable> tables = {
      {"summary", PangenomeTable::kSummary},
      {"histogram", PangenomeTable::kHistogram},
      {"growth", PangenomeTable::kGrowth}};
  CLI::Option* table =
      command
          ->add_option("--table", options->table,
                       "print a line for each k (summary), for each k and "
                       "number of genomes that have a k-mer (histogram), or "
                       "for each k and number of genomes taken (growth)")
          ->transform(CLI::CheckedTransformer(tables).description(""))
          ->type_name("summary|histogram|growth")
          ->default_str("summary");
  command->add_flag("--json", options->json, "print a JSON object for each k")
      ->excludes(table);
  command->callback([options] { pangenome(*options); });
}

}  // namespace kit
