#include "kit/simulate/random_genome.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kit {
namespace {

constexpr unsigned kLongestIndel = 10;       // characters
constexpr unsigned kLongestRegion = 20'000;  // characters
constexpr unsigned kRegionsInGenome = 20;    // so many would fill it, at least

// For each mutation.
constexpr double kInversions = 4e-4;
constexpr double kLosses = 2e-3;
constexpr double kGains = 2e-3;

// A number whose mean is `expected`.
unsigned numberOf(Random& random, double expected) {
  const auto whole = static_cast<unsigned>(expected);
  return whole + (random.chance(expected - whole) ? 1 : 0);
}

// A part of a genome: its first character, and how many.
struct Region {
  size_t begin;
  size_t length;
};

Region regionOf(Random& random, const std::string& genome) {
  const auto size = static_cast<unsigned>(genome.size());
  const unsigned longest = std::min(size / kRegionsInGenome, kLongestRegion);
  const unsigned length = 1 + random.below(std::max(longest, 1U));
  return {random.below(size - length + 1), length};
}

char complement(char base) {
  static constexpr std::string_view kBases = "ACGT";
  return kBases[3 - kBases.find(base)];
}

void invert(std::string& genome, const Region& region) {
  const auto begin = genome.begin() + static_cast<std::ptrdiff_t>(region.begin);
  const auto end = begin + static_cast<std::ptrdiff_t>(region.length);
  std::reverse(begin, end);
  std::transform(begin, end, begin, complement);
}

}  // namespace

char Random::otherBase(char base) {
  static constexpr std::string_view kBases = "ACGT";
  return kBases[(kBases.find(base) + 1 + below(3)) % 4];
}

std::string randomGenome(Random& random, uint64_t length) {
  std::string genome(length, 'A');
  for (char& c : genome) c = random.base();
  return genome;
}

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

void rearrange(Random& random, std::string& genome, double divergence) {
  const double mutations = divergence * static_cast<double>(genome.size());
  for (unsigned n = numberOf(random, mutations * kInversions); n > 0; n--) {
    invert(genome, regionOf(random, genome));
  }
  for (unsigned n = numberOf(random, mutations * kLosses); n > 0; n--) {
    const Region lost = regionOf(random, genome);
    if (lost.length < genome.size()) genome.erase(lost.begin, lost.length);
  }
  for (unsigned n = numberOf(random, mutations * kGains); n > 0; n--) {
    const Region gained = regionOf(random, genome);
    genome.insert(gained.begin, randomGenome(random, gained.length));
  }
}

}  // namespace kit
