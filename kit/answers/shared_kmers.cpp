#include "kit/answers/shared_kmers.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kit {
namespace {

constexpr size_t kMostSetWords = 4'000'000;  // words of all sets together

}  // namespace

size_t SharedKmers::HashSet::operator()(const Set& set) const {
  uint64_t hash = 0;
  for (const uint64_t word : set) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15;
    hash ^= hash >> 29;
  }
  return hash;
}

SharedKmers::SharedKmers(const MergedInputs& inputs, const Genomes& genomes,
                         uint32_t k)
    : inputs_(inputs),
      genomes_(genomes),
      k_(k),
      canonical_(inputs.bothStrands()),
      having_((genomes.count() + 63) / 64),
      shared_(genomes.count()) {
  if (canonical_ && k % 2 == 0) {
    palindromes_ = std::make_shared<const Palindromes>(inputs, k);
  }
}

SharedKmers SharedKmers::emptied() const {
  SharedKmers other = *this;
  other.open_ = false;
  std::fill(other.having_.begin(), other.having_.end(), 0);
  other.sets_.clear();
  other.shared_ = GenomeMatrix<uint64_t>(genomes_.count());
  return other;
}

void SharedKmers::add(SharedKmers& other) {
  other.endKmer();
  other.countPairs();
  shared_.add(other.shared_);
}

void SharedKmers::take(std::span<const Suffix> suffixes,
                       std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    if (lcpCharacters(entries[i]) < k_) endKmer();
    const uint32_t input = inputNumber(suffixes[i]);
    if (inputs_.length(input) - suffixes[i].pos < k_) continue;
    const uint32_t genome = genomes_.of(input);
    having_[genome / 64] |= uint64_t{1} << genome % 64;
    last_ = suffixes[i];
    open_ = true;
  }
}

void SharedKmers::endKmer() {
  if (!open_) return;
  uint64_t weight = 1;
  // Other k-mers are met a second time, as their reverse complements.
  if (palindromes_) {
    palindromes_->eachPrefix(last_, k_ - 1, k_, [&](uint32_t) { weight = 2; });
  }
  sets_[having_] += weight;
  std::fill(having_.begin(), having_.end(), 0);
  open_ = false;
  if (sets_.size() * (having_.size() + 8) > kMostSetWords) countPairs();
}

void SharedKmers::countPairs() {
  std::vector<uint32_t> genomes;
  for (const auto& [set, kmers] : sets_) {
    genomes.clear();
    for (uint32_t i = 0; i < set.size(); i++) {
      for (uint64_t word = set[i]; word != 0; word &= word - 1) {
        genomes.push_back(64 * i +
                          static_cast<uint32_t>(std::countr_zero(word)));
      }
    }
    for (const uint32_t a : genomes) {
      for (const uint32_t b : genomes) shared_(a, b) += kmers;
    }
  }
  sets_.clear();
}

GenomeMatrix<uint64_t> SharedKmers::finish() {
  endKmer();
  countPairs();
  if (canonical_) {
    for (uint32_t a = 0; a < genomes_.count(); a++) {
      for (uint32_t b = 0; b < genomes_.count(); b++) shared_(a, b) /= 2;
    }
  }
  return std::move(shared_);
}

}  // namespace kit
