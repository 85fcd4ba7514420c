#include "kit/simulate/phylogeny.h"

#include <fmt/format.h>

#include <string>

namespace kit {
namespace {

// What the branches of one tree share.
struct Descent {
  Random& random;
  const GenomeSink& sink;
  const std::function<std::string(int)>& nameOf;
};

std::string split(const Descent& descent, const std::string& genome, int first,
                  int genomes, double left);

// The branch to `genomes` genomes from number `first` on, from one that they
// lie `left` mutations for a character from.
std::string branch(const Descent& descent, const std::string& ancestor,
                   int first, int genomes, double left) {
  Random& random = descent.random;
  const double length = genomes == 1 ? left : left * random.fraction();
  std::string genome = mutate(random, ancestor, length);
  rearrange(random, genome, length);
  return fmt::format("{}:{:.9f}",
                     split(descent, genome, first, genomes, left - length),
                     length);
}

std::string split(const Descent& descent, const std::string& genome, int first,
                  int genomes, double left) {
  if (genomes == 1) {
    descent.sink(first, genome);
    return descent.nameOf(first);
  }
  const int some = 1 + static_cast<int>(descent.random.below(
                           static_cast<unsigned>(genomes - 1)));
  const std::string one = branch(descent, genome, first, some, left);
  return fmt::format(
      "({},{})", one,
      branch(descent, genome, first + some, genomes - some, left));
}

}  // namespace

std::string descend(Random& random, const std::string& ancestor, int genomes,
                    double divergence, const GenomeSink& sink,
                    const std::function<std::string(int)>& nameOf) {
  const Descent descent = {random, sink, nameOf};
  const std::string tree =
      genomes == 1
          ? fmt::format("({})", branch(descent, ancestor, 0, 1, divergence))
          : split(descent, ancestor, 0, genomes, divergence);
  return tree + ";\n";
}

}  // namespace kit
