#include "kit/answers/unique_matches.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kit {

UniqueMatches::UniqueMatches(const MergedInputs& inputs, const Genomes& genomes,
                             MergedStrings& strings, uint32_t shortest,
                             uint32_t fewest,
                             std::function<void(const UniqueMatch&)> take)
    : inputs_(inputs),
      genomes_(genomes),
      strings_(strings),
      fewest_(std::max(fewest, uint32_t{2})),
      take_(std::move(take)),
      recent_(std::bit_ceil(genomes.count())),
      intervals_(*this, genomes.count(), shortest - 1, UINT32_MAX) {}

void UniqueMatches::take(std::span<const Suffix> suffixes,
                         std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    const bool first = intervals_.taken() == 0;
    const uint32_t common =
        intervals_.clamped(first ? 0 : lcpCharacters(entries[i]));
    const uint64_t index = intervals_.taken();
    // What closes now does not have this suffix, but may have as many as are
    // remembered.
    intervals_.take(common, genomes_.of(inputNumber(suffixes[i])));
    recent_[index & (recent_.size() - 1)] = suffixes[i];
  }
}

void UniqueMatches::close(const GenomeInterval& interval) {
  const uint64_t suffixes = interval.end - interval.begin;
  if (interval.genomes < suffixes || suffixes < fewest_) return;
  if (extendsLeft(interval)) return;
  UniqueMatch match{interval.depth, {}};
  for (uint64_t i = interval.begin; i < interval.end; i++) {
    const Suffix& suffix = at(i);
    match.occurrences.push_back(
        occurrenceOf(inputs_, inputNumber(suffix), suffix.pos, interval.depth));
  }
  // Inputs of a genome need not follow each other, but its occurrence is one.
  std::sort(match.occurrences.begin(), match.occurrences.end(),
            [&](const Occurrence& a, const Occurrence& b) {
              return genomes_.of(a.input) < genomes_.of(b.input);
            });
  // It is found as its reverse complement too.
  if (match.occurrences[0].reverse) return;
  take_(match);
}

// Whether the same character is before all of them.
bool UniqueMatches::extendsLeft(const GenomeInterval& interval) {
  const auto before = [&](const Suffix& suffix) {
    return suffix.pos == 0 ? -1
                           : static_cast<int>(strings_.code(inputNumber(suffix),
                                                            suffix.pos - 1));
  };
  const int first = before(at(interval.begin));
  if (first < 0) return false;
  for (uint64_t i = interval.begin + 1; i < interval.end; i++) {
    if (before(at(i)) != first) return false;
  }
  return true;
}

}  // namespace kit
