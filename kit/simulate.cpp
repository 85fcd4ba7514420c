#include "kit/simulate.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

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
  std::string text = fmt::format(">{}\n", name);
  for (size_t i = 0; i < genome.size(); i += kLineLength) {
    text.append(genome, i, kLineLength);
    text += '\n';
  }
  return text;
}

}  // namespace

void simulate(const SimulateOptions& options) {
  if (std::isnan(options.divergence)) {
    throw std::runtime_error("--divergence must be a number from 0 to 1");
  }
  Random random(options.seed);
  const bool independent = options.divergence >= 1;
  std::string ancestor;
  if (!independent) ancestor = randomGenome(random, options.length);
  if (!options.directory.empty()) createFolders(options.directory);
  for (int i = 0; i < options.genomes; i++) {
    const std::string name = fmt::format("genome_{}", i);
    const std::string text = asFasta(
        name, independent ? randomGenome(random, options.length)
                          : mutate(random, ancestor, options.divergence));
    if (options.directory.empty()) {
      writeOutput(text);
    } else {
      OutputFile file(fmt::format("{}/{}.fa", options.directory, name));
      file.write(text.data(), text.size());
      file.commit();
    }
  }
  finishOutput();
}

}  // namespace kit
