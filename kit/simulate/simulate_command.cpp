// The command line of palvor-kit simulate.

#include <cstdint>
#include <memory>

#include "kit/commands.h"
#include "kit/simulate/simulate.h"

namespace kit {

void addSimulate(CLI::App& app) {
  auto options = std::make_shared<SimulateOptions>();
  CLI::App* command = app.add_subcommand(
      "simulate",
      "Make random genomes that descend from one ancestor, as FASTA. The same "
      "options give the same genomes everywhere.");
  command->add_option("--genomes", options->genomes, "how many")
      ->check(CLI::Range(1, 1'000'000))
      ->required();
  command->add_option("--length", options->length, "characters of the ancestor")
      ->check(CLI::Range(uint64_t{1}, uint64_t{1'073'741'823}))
      ->required();
  command
      ->add_option("--divergence", options->divergence,
                   "mutations for each character of the ancestor: 8 in 10 are "
                   "substitutions, the others insertions and deletions of 1 to "
                   "10 characters; 1 gives independent random genomes")
      ->check(CLI::Range(0.0, 1.0))
      ->required();
  command->add_flag("--phylogeny", options->phylogeny,
                    "let the genomes descend from each other along a random "
                    "tree, DIR/phylogeny.nwk, with inversions and with regions "
                    "gained and lost");
  command->add_option("--seed", options->seed, "start of the random numbers")
      ->capture_default_str();
  command
      ->add_option("-o,--output", options->directory,
                   "write one file for each genome, DIR/genome_<i>.fa, instead "
                   "of all to standard output")
      ->type_name("DIR");
  command->callback([options] { simulate(*options); });
}

}  // namespace kit
