#include "kit/answers/kmer_spectrum.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kit {

bool isCanonical(const MergedInputs& inputs, std::optional<bool> wish) {
  const bool canonical = wish.value_or(inputs.bothStrands());
  if (canonical && !inputs.bothStrands()) {
    throw std::runtime_error(
        "--canonical needs both strands of every sequence (see prepare "
        "--strands both)");
  }
  return canonical;
}

std::vector<uint64_t> kmerTotals(const MergedInputs& inputs, KmerLengths k,
                                 bool canonical) {
  std::vector<uint64_t> totals(k.max - k.min + 1);
  for (uint32_t i = 0; i < inputs.count(); i += canonical ? 2 : 1) {
    const uint32_t length = inputs.length(i);
    for (uint32_t n = k.min; n <= std::min(k.max, length); n++) {
      totals[n - k.min] += length - n + 1;
    }
  }
  return totals;
}

void KmerTally::add(const KmerTally& other) {
  counts_.add(other.counts_);
  if (ownReverses_) ownReverses_->add(*other.ownReverses_);
}

KmerCounts KmerTally::result() const {
  KmerCounts result = counts_;
  if (!ownReverses_) return result;
  for (uint32_t k = result.k().min; k <= result.k().max; k++) {
    const auto own = ownReverses_->of(k);
    for (uint32_t g = 0; g < result.genomes(); g++) {
      result.of(k)[g] = (result.of(k)[g] + own[g]) / 2;
    }
  }
  return result;
}

std::shared_ptr<const Palindromes> palindromesFor(const MergedInputs& inputs,
                                                  KmerLengths k,
                                                  bool canonical) {
  if (!canonical) return nullptr;
  return std::make_shared<const Palindromes>(inputs, k.max);
}

KmerSpectrum::KmerSpectrum(const MergedInputs& inputs, const Genomes& genomes,
                           KmerLengths k,
                           std::shared_ptr<const Palindromes> palindromes)
    : lengths_(inputs.lengths()),
      genomeOf_(genomes.ofInputs()),
      k_(k),
      genomes_(genomes.count()),
      intervals_(*this, genomes.count(), k.min - 1, k.max),
      common_(k.min - 1),
      rest_(k.min - 1),
      changes_(size_t{k.max - k.min + 2} * genomes.count()),
      singles_(k.max - k.min + 2),
      palindromes_(std::move(palindromes)),
      tally_(k, genomes.count(), palindromes_ != nullptr) {}

void KmerSpectrum::take(std::span<const Suffix> suffixes,
                        std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    const bool first = intervals_.taken() == 0;
    const uint32_t common =
        intervals_.clamped(first ? 0 : lcpCharacters(entries[i]));
    countSingles(common);
    const uint32_t input = inputNumber(suffixes[i]);
    intervals_.take(common, genomeOf_[input]);
    rest_ = lengths_[input] - suffixes[i].pos;
    last_ = suffixes[i];
  }
}

// The k-mers that only the last suffix has, which shares so many characters
// with the next one.
inline void KmerSpectrum::countSingles(uint32_t common) {
  const uint32_t shared = std::max(common, common_);
  singles_[shared - (k_.min - 1)]++;
  if (rest_ < k_.max) singles_[std::max(rest_, shared) - (k_.min - 1)]--;
  common_ = common;
}

// One k-mer of each length between the two depths.
inline void KmerSpectrum::close(const GenomeInterval& interval) {
  int64_t* column = changes_.data() + (interval.genomes - 1);
  column[size_t{interval.outer - (k_.min - 1)} * genomes_]++;
  column[size_t{interval.depth - (k_.min - 1)} * genomes_]--;
  if (palindromes_) countPalindromes(interval);
}

// Those of the same k-mers that are their own reverse complements. They occur
// more than once, since both strands are in.
inline void KmerSpectrum::countPalindromes(const GenomeInterval& interval) {
  palindromes_->eachPrefix(
      last_, interval.outer, interval.depth,
      [&](uint32_t k) { tally_.ownReverses().of(k)[interval.genomes - 1]++; });
}

KmerTally KmerSpectrum::finish() {
  countSingles(k_.min - 1);
  intervals_.finish();
  std::vector<int64_t> row(genomes_);
  for (uint32_t k = k_.min; k <= k_.max; k++) {
    const size_t index = k - k_.min;
    row[0] += singles_[index];
    for (uint32_t g = 0; g < genomes_; g++) {
      row[g] += changes_[index * genomes_ + g];
      tally_.counts().of(k)[g] = static_cast<uint64_t>(row[g]);
    }
  }
  return std::move(tally_);
}

}  // namespace kit
