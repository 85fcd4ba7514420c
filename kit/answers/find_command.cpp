// The command line of palvor-kit find.

#include <cstdint>
#include <memory>

#include "kit/answers/find.h"
#include "kit/commands.h"

namespace kit {

void addFind(CLI::App& app) {
  auto options = std::make_shared<FindOptions>();
  CLI::App* command = app.add_subcommand("find",
                                         "Look up patterns in a merged array: "
                                         "all their places on both strands, as "
                                         "BED, or how many there are.");
  addMergedOptions(*command, options->merged);
  command
      ->add_option("patterns", options->patterns,
                   "texts over A, C, G and T to look for")
      ->type_name("PATTERN");
  command
      ->add_option("-f,--file", options->file,
                   "sequences to look for, FASTA or FASTQ, plain or compressed")
      ->type_name("FASTA");
  CLI::Option* count = command->add_flag_callback(
      "--count", [options] { options->table = FindTable::kCount; },
      "print for each pattern the number of places, and of genomes with it");
  CLI::Option* genomes = command->add_flag_callback(
      "--genomes", [options] { options->table = FindTable::kGenomes; },
      "print for each pattern and genome with it the number of places");
  genomes->excludes(count);
  CLI::Option* json =
      command->add_flag("--json", options->json, "print a JSON object a line");
  command
      ->add_option(
          "--mem", options->mem,
          "print the maximal exact matches of the file's sequences, of "
          "at least so many characters, as mummer does")
      ->check(CLI::Range(uint64_t{1}, uint64_t{INT32_MAX}))
      ->type_name("L")
      ->excludes(count)
      ->excludes(genomes)
      ->excludes(json);
  command->callback([options] { find(*options); });
}

}  // namespace kit
