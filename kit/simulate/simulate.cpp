#include "kit/simulate/simulate.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/simulate/phylogeny.h"
#include "kit/simulate/random_genome.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

constexpr size_t kLineLength = 80;

std::string nameOf(int genome) { return fmt::format("genome_{}", genome); }

std::string asFasta(const std::string& name, const std::string& genome) {
  std::string text = fmt::format(">{}\n", name);
  for (size_t i = 0; i < genome.size(); i += kLineLength) {
    text.append(genome, i, kLineLength);
    text += '\n';
  }
  return text;
}

void writeFile(const std::string& path, const std::string& text) {
  OutputFile file(path);
  file.write(text.data(), text.size());
  file.commit();
}

}  // namespace

void simulate(const SimulateOptions& options) {
  if (std::isnan(options.divergence)) {
    throw std::runtime_error("--divergence must be a number from 0 to 1");
  }
  const bool independent = options.divergence >= 1;
  if (options.phylogeny && independent) {
    throw std::runtime_error("--phylogeny takes a --divergence below 1");
  }
  Random random(options.seed);
  std::string ancestor;
  if (!independent) ancestor = randomGenome(random, options.length);
  const std::string& directory = options.directory;
  if (!directory.empty()) createFolders(directory);
  const auto write = [&](int i, const std::string& genome) {
    const std::string text = asFasta(nameOf(i), genome);
    if (directory.empty()) {
      writeOutput(text);
    } else {
      writeFile(fmt::format("{}/{}.fa", directory, nameOf(i)), text);
    }
  };
  if (options.phylogeny) {
    const std::string tree = descend(random, ancestor, options.genomes,
                                     options.divergence, write, nameOf);
    if (!directory.empty()) writeFile(directory + "/phylogeny.nwk", tree);
  } else {
    for (int i = 0; i < options.genomes; i++) {
      write(i, independent ? randomGenome(random, options.length)
                           : mutate(random, ancestor, options.divergence));
    }
  }
  finishOutput();
}

}  // namespace kit
