// The options that choose what is told of k-mers.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "kit/answers/pangenome_table.h"
#include "kit/word_choice.h"

namespace kit {

void addPangenomeChoice(CLI::App& command, PangenomeChoice& choice,
                        CLI::Option* needed) {
  std::vector<CLI::Option*> added;
  added.push_back(
      command.add_option("--min-k", choice.k.min, "shortest k-mers")
          ->check(CLI::Range(1, 1000))
          ->capture_default_str());
  added.push_back(command.add_option("--max-k", choice.k.max, "longest k-mers")
                      ->check(CLI::Range(1, 1000))
                      ->capture_default_str());
  added.push_back(command
                      .add_option("--quorum", choice.quorums,
                                  "parts of the genomes that have what is core")
                      ->check(CLI::Range(0.0, 1.0))
                      ->delimiter(',')
                      ->allow_extra_args(false)
                      ->capture_default_str());
  CLI::Option* canonical = command.add_flag_callback(
      "--canonical", [&choice] { choice.canonical = true; },
      "count a k-mer and its reverse complement as one: the default where both "
      "strands are in");
  added.push_back(canonical);
  added.push_back(command
                      .add_flag_callback(
                          "--no-canonical",
                          [&choice] { choice.canonical = false; },
                          "count them apart")
                      ->excludes(canonical));
  CLI::Option* table =
      command
          .add_option("--table", choice.table,
                      "print a line for each k (summary), for each k and "
                      "number of genomes that have a k-mer (histogram), or "
                      "for each k and number of genomes taken (growth)")
          ->transform(
              oneOf<PangenomeTable>({{"summary", PangenomeTable::kSummary},
                                     {"histogram", PangenomeTable::kHistogram},
                                     {"growth", PangenomeTable::kGrowth}}))
          ->type_name("summary|histogram|growth")
          ->default_str("summary");
  added.push_back(table);
  added.push_back(
      command.add_flag("--json", choice.json, "print a JSON object for each k")
          ->excludes(table));
  if (needed == nullptr) return;
  for (CLI::Option* option : added) option->needs(needed);
}

}  // namespace kit
