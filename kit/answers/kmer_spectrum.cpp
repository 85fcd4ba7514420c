#include "kit/answers/kmer_spectrum.h"

#include <algorithm>

namespace kit {

KmerSpectrum::KmerSpectrum(const MergedInputs& inputs, const Genomes& genomes,
                           KmerLengths k, bool canonical)
    : lengths_(inputs.lengths()),
      genomeOf_(genomes.ofInputs()),
      k_(k),
      genomes_(genomes.count()),
      common_(k.min - 1),
      rest_(k.min - 1),
      lastOf_(genomes.count()),
      changes_(size_t{k.max - k.min + 2} * genomes.count()),
      singles_(k.max - k.min + 2) {
  open_.push_back({k.min - 1, 0, 0});
  if (!canonical) return;
  palindromes_.emplace(inputs, k.max);
  ownReverses_.emplace(k, genomes.count());
}

void KmerSpectrum::take(std::span<const Suffix> suffixes,
                        std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    step(taken_ == 0 ? 0 : entries[i] >> 2);
    const uint32_t input = inputNumber(suffixes[i]);
    rest_ = lengths_[input] - suffixes[i].pos;
    uint64_t& last = lastOf_[genomeOf_[input]];
    if (last != 0) smallestWith(last - 1).repeats++;
    last = ++taken_;
    last_ = suffixes[i];
  }
}

// Goes on to a suffix that shares so many characters with the last one.
inline void KmerSpectrum::step(uint32_t common) {
  common = std::clamp(common, k_.min - 1, k_.max);
  const uint32_t shared = std::max(common, common_);
  singles_[shared - (k_.min - 1)]++;
  if (rest_ < k_.max) singles_[std::max(rest_, shared) - (k_.min - 1)]--;
  common_ = common;
  if (common > open_.back().depth) {
    open_.push_back({common, taken_ - 1, 0});
  } else if (common < open_.back().depth) {
    close(common);
  }
}

// Closes the intervals that are deeper than that.
void KmerSpectrum::close(uint32_t common) {
  Interval inner = open_.back();
  do {
    open_.pop_back();
    const uint32_t outer = std::max(common, open_.back().depth);
    const uint64_t genomes = taken_ - inner.begin - inner.repeats;
    add(genomes, outer, inner.depth);
    if (palindromes_) countPalindromes(genomes, outer, inner.depth);
    if (outer == open_.back().depth) {
      open_.back().repeats += inner.repeats;
    } else {
      open_.push_back({outer, inner.begin, inner.repeats});
    }
    inner = open_.back();
  } while (inner.depth > common);
}

// One k-mer of each length from `from` + 1 to `to`.
inline void KmerSpectrum::add(uint64_t genomes, uint32_t from, uint32_t to) {
  int64_t* column = changes_.data() + (genomes - 1);
  column[size_t{from - (k_.min - 1)} * genomes_]++;
  column[size_t{to - (k_.min - 1)} * genomes_]--;
}

// Those of the same k-mers that are their own reverse complements. They occur
// more than once, since both strands are in; and the last suffix has them.
inline void KmerSpectrum::countPalindromes(uint64_t genomes, uint32_t from,
                                           uint32_t to) {
  palindromes_->eachPrefix(
      last_, from, to, [&](uint32_t k) { ownReverses_->of(k)[genomes - 1]++; });
}

inline KmerSpectrum::Interval& KmerSpectrum::smallestWith(uint64_t suffix) {
  size_t found = 0;
  for (size_t size = open_.size(); size > 1;) {
    const size_t half = size / 2;
    if (open_[found + half].begin <= suffix) found += half;
    size -= half;
  }
  return open_[found];
}

KmerCounts KmerSpectrum::finish() {
  if (taken_ > 0) step(0);
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
