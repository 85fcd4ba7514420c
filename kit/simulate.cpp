// palvor-kit simulate: random genomes, the same on every machine.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "kit/commands.h"
#include "kit/output_file.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

struct SimulateOptions {
  int genomes = 1;
  uint64_t length = 0;
  double divergence = 0;
  uint64_t seed = 1;
  std::string directory;  // empty: standard output
};

constexpr size_t kLineLength = 80;
constexpr unsigned kLongestIndel = 10;  // characters

// The standard's distributions differ between libraries; its engines do not.
class Random {
 public:
  explicit Random(uint64_t seed) : engine_(seed) {}

  char base() { return "ACGT"[engine_() >> 62]; }

  char otherBase(char base) {
    static constexpr std::string_view kBases = "ACGT";
    return kBases[(kBases.find(base) + 1 + below(3)) % 4];
  }

  // True with the given probability, in steps of 2^-53.
  bool chance(double probability) {
    return static_cast<double>(engine_() >> 11) * 0x1p-53 < probability;
  }

  unsigned below(unsigned limit) {
    return static_cast<unsigned>((engine_() >> 32) * limit >> 32);
  }

 private:
  std::mt19937_64 engine_;
};

std::string randomGenome(Random& random, uint64_t length) {
  std::string genome(length, 'A');
  for (char& c : genome) c = random.base();
  return genome;
}

// Eight in ten mutations are substitutions, one is an insertion and one a
// deletion.
std::string mutate(Random& random, const std::string& ancestor,
                   double divergence) {
  std::string genome;
  genome.reserve(ancestor.size());
  for (size_t i = 0; i < ancestor.size(); i++) {
    if (!random.chance(divergence)) {
      genome += ancestor[i];
      continue;
    }
    const unsigned kind = random.below(10);
    const unsigned length = 1 + random.below(kLongestIndel);
    if (kind < 8) {
      genome += random.otherBase(ancestor[i]);
    } else if (kind == 8) {
      genome += ancestor[i];
      for (unsigned n = 0; n < length; n++) genome += random.base();
    } else {
      i += length - 1;
    }
  }
  if (genome.empty()) genome += ancestor[0];  // all of it was deleted
  return genome;
}

std::string asFasta(const std::string& name, const std::string& genome) {
  std::string text = ">" + name + "\n";
  for (size_t i = 0; i < genome.size(); i += kLineLength) {
    text.append(genome, i, kLineLength);
    text += '\n';
  }
  return text;
}

void simulate(const SimulateOptions& options) {
  if (std::isnan(options.divergence)) {
    throw std::runtime_error("--divergence must be a number from 0 to 1");
  }
  Random random(options.seed);
  const bool independent = options.divergence >= 1;
  std::string ancestor;
  if (!independent) ancestor = randomGenome(random, options.length);
  if (!options.directory.empty()) {
    std::filesystem::create_directories(options.directory);
  }
  for (int i = 0; i < options.genomes; i++) {
    const std::string name = "genome_" + std::to_string(i);
    const std::string text = asFasta(
        name, independent ? randomGenome(random, options.length)
                          : mutate(random, ancestor, options.divergence));
    if (options.directory.empty()) {
      std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
      OutputFile file(options.directory + "/" + name + ".fa");
      file.write(text.data(), text.size());
      file.commit();
    }
  }
  finishOutput();
}

}  // namespace

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
