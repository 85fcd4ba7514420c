#include "kit/answers/kmer_spectrum.h"

#include <algorithm>
#include <stdexcept>

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

KmerSpectrum::KmerSpectrum(const MergedInputs& inputs, const Genomes& genomes,
                           KmerLengths k, bool canonical)
    : lengths_(inputs.lengths()),
      genomeOf_(genomes.ofInputs()),
      k_(k),
      genomes_(genomes.count()),
      intervals_(*this, genomes.count(), k.min - 1, k.max),
      common_(k.min - 1),
      rest_(k.min - 1),
      changes_(size_t{k.max - k.min + 2} * genomes.count()),
      singles_(k.max - k.min + 2) {
  if (!canonical) return;
  palindromes_.emplace(inputs, k.max);
  ownReverses_.emplace(k, genomes.count());
}

void KmerSpectrum::take(std::span<const Suffix> suffixes,
                        std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    const bool first = intervals_.taken() == 0;
    const uint32_t common = intervals_.clamped(first ? 0 : entries[i] >> 2);
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
      [&](uint32_t k) { ownReverses_->of(k)[interval.genomes - 1]++; });
}

KmerCounts KmerSpectrum::finish() {
  countSingles(k_.min - 1);
  intervals_.finish();
  KmerCounts counts(k_, genomes_);
  std::vector<int64_t> row(genomes_);
  for (uint32_t k = k_.min; k <= k_.max; k++) {
    const size_t index = k - k_.min;
    row[0] += singles_[index];
    for (uint32_t g = 0; g < genomes_; g++) {
      row[g] += changes_[index * genomes_ + g];
      auto count = static_cast<uint64_t>(row[g]);
      // The others are there twice, as themselves and as their reverses.
      if (ownReverses_) count = (count + ownReverses_->of(k)[g]) / 2;
      counts.of(k)[g] = count;
    }
  }
  return counts;
}

}  // namespace kit
