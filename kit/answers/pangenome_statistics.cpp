#include "kit/answers/pangenome_statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kit {
namespace {

// Logarithms of 0!, 1!, ..., n!.
std::vector<double> logFactorials(uint32_t n) {
  std::vector<double> logs(n + 1);
  for (uint32_t i = 1; i <= n; i++) logs[i] = logs[i - 1] + std::log(i);
  return logs;
}

std::vector<uint32_t> oneToAll(uint32_t genomes) {
  std::vector<uint32_t> numbers(genomes);
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

}  // namespace

std::vector<double> chancesOfAtLeast(uint32_t genomes, uint32_t chosen,
                                     uint32_t wanted) {
  const std::vector<double> logs = logFactorials(genomes);
  const auto choose = [&](uint32_t n, uint32_t k) {
    return logs[n] - logs[k] - logs[n - k];
  };
  const uint32_t others = chosen - wanted + 1;
  std::vector<double> chances(genomes + 1);
  // A k-mer that one genome more has is among enough where it was before, and
  // where one genome was missing and this one is chosen.
  for (uint32_t have = 0; have < genomes; have++) {
    double added = 0;
    if (have + 1 >= wanted && genomes - have >= others) {
      const double missedByOne =
          std::exp(choose(have, wanted - 1) + choose(genomes - have, others) -
                   choose(genomes, chosen));
      added = missedByOne * others / (genomes - have);
    }
    chances[have + 1] = chances[have] + added;
  }
  return chances;
}

uint32_t quorumOf(double quorum, uint32_t genomes) {
  // A product that should be a whole number may be a little more.
  const double wanted = std::ceil(quorum * genomes - 1e-9);
  return std::clamp(static_cast<uint32_t>(std::max(wanted, 1.0)), uint32_t{1},
                    genomes);
}

ExpectedCounts::ExpectedCounts(uint32_t genomes, std::optional<double> quorum)
    : ExpectedCounts(genomes, quorum, oneToAll(genomes)) {}

ExpectedCounts::ExpectedCounts(uint32_t genomes, std::optional<double> quorum,
                               std::span<const uint32_t> chosen) {
  for (const uint32_t some : chosen) {
    const uint32_t wanted = quorum ? quorumOf(*quorum, some) : 1;
    chances_.push_back(chancesOfAtLeast(genomes, some, wanted));
  }
}

std::vector<double> ExpectedCounts::of(std::span<const uint64_t> counts) const {
  std::vector<double> expected;
  for (const std::vector<double>& chances : chances_) {
    double sum = 0;
    for (size_t i = 0; i < counts.size(); i++) {
      sum += static_cast<double>(counts[i]) * chances[i + 1];
    }
    expected.push_back(sum);
  }
  return expected;
}

std::optional<double> heapsAlpha(std::span<const double> growth) {
  double n = 0, x = 0, y = 0, xx = 0, xy = 0;
  for (size_t i = 1; i < growth.size(); i++) {
    const double added = growth[i] - growth[i - 1];
    if (added <= 1e-9 * growth[i]) continue;
    const double logGenomes = std::log(i + 1);
    const double logAdded = std::log(added);
    n += 1;
    x += logGenomes;
    y += logAdded;
    xx += logGenomes * logGenomes;
    xy += logGenomes * logAdded;
  }
  if (n < 2) return std::nullopt;
  return -(n * xy - x * y) / (n * xx - x * x);
}

HillNumbers hillNumbers(std::span<const uint64_t> counts) {
  double incidences = 0;
  for (size_t i = 0; i < counts.size(); i++) {
    incidences += static_cast<double>(counts[i]) * static_cast<double>(i + 1);
  }
  if (incidences == 0) return {0, 0};
  double entropy = 0, squares = 0;
  for (size_t i = 0; i < counts.size(); i++) {
    const auto number = static_cast<double>(counts[i]);
    const double share = static_cast<double>(i + 1) / incidences;
    entropy -= number * share * std::log(share);
    squares += number * share * share;
  }
  return {std::exp(entropy), 1 / squares};
}

}  // namespace kit
