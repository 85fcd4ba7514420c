#include "kit/answers/range_kmers.h"

#include <algorithm>
#include <utility>

namespace kit {
namespace {

// The k-mers of more than `from` and at most `to` characters that a suffix
// begins with.
struct Beginnings {
  uint32_t from;
  uint32_t to;
};

// Counts them, once each, or takes them off.
//   palindromesTo  no palindrome of more characters is counted
void count(KmerTally& tally, const Palindromes* palindromes,
           const RangeEdge& edge, Beginnings kmers, uint32_t palindromesTo,
           uint64_t times) {
  if (kmers.from >= kmers.to) return;
  // Of each k: genomes that share as many characters, or more.
  std::vector<uint32_t> having(kmers.to - kmers.from);
  for (const uint32_t shared : edge.shared) {
    if (shared <= kmers.from) continue;
    having[std::min(shared, kmers.to) - kmers.from - 1]++;
  }
  for (size_t i = having.size() - 1; i > 0; i--) having[i - 1] += having[i];
  for (uint32_t k = kmers.from + 1; k <= kmers.to; k++) {
    tally.counts().of(k)[having[k - kmers.from - 1] - 1] += times;
  }
  palindromesTo = std::min(palindromesTo, kmers.to);
  if (palindromes == nullptr || palindromesTo <= kmers.from) return;
  palindromes->eachPrefix(
      edge.suffix, kmers.from, palindromesTo, [&](uint32_t k) {
        tally.ownReverses().of(k)[having[k - kmers.from - 1] - 1] += times;
      });
}

constexpr uint64_t kOnce = 1;
constexpr uint64_t kTakenOff = UINT64_MAX;  // sums are those of all ranges

}  // namespace

RangeKmers::RangeKmers(const MergedInputs& inputs, const Genomes& genomes,
                       KmerLengths k,
                       std::shared_ptr<const Palindromes> palindromes)
    : lengths_(inputs.lengths()),
      genomeOf_(genomes.ofInputs()),
      k_(k),
      palindromes_(std::move(palindromes)),
      spectrum_(inputs, genomes, k, palindromes_) {
  edges_.first.shared.assign(genomes.count(), k.min - 1);
}

uint32_t RangeKmers::clamped(uint32_t characters) const {
  return std::clamp(characters, k_.min - 1, k_.max);
}

uint32_t RangeKmers::restOf(const Suffix& suffix) const {
  return clamped(lengths_[inputNumber(suffix)] - suffix.pos);
}

void RangeKmers::takeFirst(const Suffix& suffix) {
  RangeEdge& first = edges_.first;
  first.suffix = suffix;
  first.rest = restOf(suffix);
  first.neighbour = k_.min - 1;
  first.shared[genomeOf_[inputNumber(suffix)]] = first.rest;
  edges_.common = first.rest;
}

void RangeKmers::take(std::span<const Suffix> suffixes,
                      std::span<const LcpEntry> entries) {
  if (suffixes.empty()) return;
  size_t i = 0;
  if (edges_.suffixes == 0) takeFirst(suffixes[i++]);
  // Until nothing is shared with the first one any more.
  for (; i < suffixes.size() && edges_.common >= k_.min; i++) {
    edges_.common = std::min(edges_.common, clamped(lcpCharacters(entries[i])));
    if (edges_.suffixes + i == 1) edges_.first.neighbour = edges_.common;
    uint32_t& shared = edges_.first.shared[genomeOf_[inputNumber(suffixes[i])]];
    shared = std::max(shared, edges_.common);
  }
  edges_.last.suffix = suffixes.back();
  edges_.suffixes += suffixes.size();
  if (edges_.suffixes > 1) {
    edges_.last.neighbour = clamped(lcpCharacters(entries.back()));
  }
  spectrum_.take(suffixes, entries);
}

RangeEdges RangeKmers::finish(KmerTally& tally) {
  if (edges_.suffixes == 0) return std::move(edges_);
  RangeEdge& last = edges_.last;
  last.rest = restOf(last.suffix);
  if (edges_.suffixes == 1) last.neighbour = k_.min - 1;
  for (uint32_t g = 0; g < edges_.first.shared.size(); g++) {
    last.shared.push_back(spectrum_.sharedWithLast(g));
  }
  last.shared[genomeOf_[inputNumber(last.suffix)]] = last.rest;
  tally.add(spectrum_.finish());
  // What was counted of the edges as if there were no other range. Of k-mers
  // that occur once there, none was seen to be a palindrome.
  count(tally, palindromes_.get(), edges_.first,
        {k_.min - 1, edges_.first.rest}, edges_.first.neighbour, kTakenOff);
  count(tally, palindromes_.get(), last, {edges_.common, last.rest},
        last.neighbour, kTakenOff);
  return std::move(edges_);
}

RangeSeams::RangeSeams(KmerLengths k, uint32_t genomes,
                       std::shared_ptr<const Palindromes> palindromes,
                       KmerTally& tally)
    : k_(k), palindromes_(std::move(palindromes)), tally_(tally) {
  open_.rest = k.min - 1;
  open_.shared.assign(genomes, k.min - 1);
}

void RangeSeams::take(const RangeEdges& edges, LcpEntry entry) {
  if (edges.suffixes == 0) return;
  const uint32_t common = std::min({std::max(lcpCharacters(entry), k_.min - 1),
                                    open_.rest, edges.first.rest});
  count(tally_, palindromes_.get(), open_, {common, open_.rest}, k_.max, kOnce);
  // What goes on from before into the range, and ends there.
  RangeEdge first = edges.first;
  for (size_t g = 0; g < first.shared.size(); g++) {
    first.shared[g] =
        std::max(first.shared[g], std::min(open_.shared[g], common));
  }
  count(tally_, palindromes_.get(), first, {edges.common, first.rest}, k_.max,
        kOnce);
  open_ = edges.last;
  for (size_t g = 0; g < first.shared.size(); g++) {
    open_.shared[g] =
        std::max(open_.shared[g], std::min(first.shared[g], edges.common));
  }
}

void RangeSeams::finish() {
  count(tally_, palindromes_.get(), open_, {k_.min - 1, open_.rest}, k_.max,
        kOnce);
}

RangeCounts::RangeCounts(const MergedInputs& inputs, const Genomes& genomes,
                         KmerLengths k,
                         std::shared_ptr<const Palindromes> palindromes,
                         size_t ranges)
    : inputs_(inputs),
      genomes_(genomes),
      k_(k),
      palindromes_(std::move(palindromes)),
      edges_(ranges),
      tally_(k, genomes.count(), palindromes_ != nullptr) {}

void RangeCounts::add(size_t range, RangeKmers& kmers, LcpEntry entry) {
  const std::lock_guard lock(mutex_);
  edges_[range] = {kmers.finish(tally_), entry};
  suffixes_ += edges_[range].edges.suffixes;
}

KmerCounts RangeCounts::finish() {
  RangeSeams seams(k_, genomes_.count(), palindromes_, tally_);
  for (const Edges& range : edges_) seams.take(range.edges, range.entry);
  seams.finish();
  return tally_.result();
}

}  // namespace kit
