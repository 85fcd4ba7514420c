#include "kit/answers/common_substrings.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace kit {
namespace {

void addTo(uint64_t* set, uint32_t genome) {
  set[genome / 64] |= uint64_t{1} << genome % 64;
}

bool isIn(const uint64_t* set, uint32_t genome) {
  return (set[genome / 64] >> genome % 64 & 1) != 0;
}

// Calls take(genome) for those in 64 of a set's bits.
template <typename Take>
void eachOf(uint64_t bits, size_t word, Take take) {
  for (; bits != 0; bits &= bits - 1) {
    take(static_cast<uint32_t>(64 * word) +
         static_cast<uint32_t>(std::countr_zero(bits)));
  }
}

}  // namespace

CommonSubstrings::CommonSubstrings(const Genomes& genomes)
    : genomes_(genomes),
      setWords_((genomes.count() + 63) / 64),
      all_(setWords_),
      sums_(genomes.count()),
      withAll_(genomes.count()),
      intervals_(*this) {
  for (uint32_t g = 0; g < genomes.count(); g++) addTo(all_.data(), g);
}

void CommonSubstrings::take(std::span<const Suffix> suffixes,
                            std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    if (begun_) intervals_.step(lcpCharacters(entries[i]));
    genome_ = genomes_.of(inputNumber(suffixes[i]));
    begun_ = true;
  }
}

void CommonSubstrings::open(size_t slot) {
  if (slot >= full_.size()) {
    full_.resize(slot + 1);
    sets_.resize((slot + 1) * setWords_);
    counts_.resize((slot + 1) * genomes_.count());
  }
  full_[slot] = false;
  std::fill_n(setOf(slot), setWords_, 0);
  std::fill_n(countsOf(slot), genomes_.count(), 0);
}

void CommonSubstrings::addSuffix(size_t slot, uint32_t depth) {
  if (full_[slot]) {
    withAll_[genome_] += depth;
    return;
  }
  uint64_t* counts = countsOf(slot);
  uint64_t* set = setOf(slot);
  const bool joins = !isIn(set, genome_);
  for (size_t w = 0; w < setWords_; w++) {
    eachOf(set[w], w, [&](uint32_t g) {
      sums_(genome_, g) += depth;
      if (joins) sums_(g, genome_) += counts[g] * depth;
    });
  }
  counts[genome_]++;
  if (!joins) return;
  addTo(set, genome_);
  full_[slot] = std::equal(all_.begin(), all_.end(), set);
}

void CommonSubstrings::merge(size_t slot, uint32_t depth) {
  // What has met all others has nothing to find.
  if (full_[slot] && full_[slot + 1]) return;
  uint64_t* counts = countsOf(slot);
  uint64_t* set = setOf(slot);
  const uint64_t* innerCounts = countsOf(slot + 1);
  const uint64_t* innerSet = setOf(slot + 1);
  meet(innerSet, innerCounts, set, depth);
  meet(set, counts, innerSet, depth);
  for (size_t w = 0; w < setWords_; w++) {
    eachOf(innerSet[w], w, [&](uint32_t g) { counts[g] += innerCounts[g]; });
    set[w] |= innerSet[w];
  }
  full_[slot] = std::equal(all_.begin(), all_.end(), set);
}

void CommonSubstrings::meet(const uint64_t* set, const uint64_t* counts,
                            const uint64_t* others, uint32_t depth) {
  for (size_t w = 0; w < setWords_; w++) {
    eachOf(others[w] & ~set[w], w, [&](uint32_t b) {
      for (size_t v = 0; v < setWords_; v++) {
        eachOf(set[v], v,
               [&](uint32_t a) { sums_(a, b) += counts[a] * depth; });
      }
    });
  }
}

void CommonSubstrings::add(CommonSubstrings& other) {
  sums_.add(other.finish());
}

GenomeMatrix<uint64_t> CommonSubstrings::finish() {
  if (begun_) intervals_.finish();
  for (uint32_t a = 0; a < genomes_.count(); a++) {
    for (uint32_t b = 0; b < genomes_.count(); b++) {
      if (a != b) sums_(a, b) += withAll_[a];
    }
  }
  return std::move(sums_);
}

GenomeMatrix<double> acsDistances(const GenomeMatrix<uint64_t>& sums,
                                  const std::vector<uint64_t>& lengths) {
  // How far a is from b: the logarithm of b's length by the average, less what
  // that is of a and itself.
  const auto oneWay = [&](uint32_t a, uint32_t b) {
    const auto own = static_cast<double>(lengths[a]);
    const auto other = static_cast<double>(lengths[b]);
    if (sums(a, b) == 0) return std::numeric_limits<double>::infinity();
    const double average = static_cast<double>(sums(a, b)) / own;
    return std::log(other) / average - 2 * std::log(own) / own;
  };
  GenomeMatrix<double> distances(sums.genomes());
  for (uint32_t a = 0; a < sums.genomes(); a++) {
    for (uint32_t b = 0; b < sums.genomes(); b++) {
      if (a != b) distances(a, b) = (oneWay(a, b) + oneWay(b, a)) / 2;
    }
  }
  return distances;
}

}  // namespace kit
