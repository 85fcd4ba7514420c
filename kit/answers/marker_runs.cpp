#include "kit/answers/marker_runs.h"

#include <algorithm>
#include <bit>

namespace kit {

MarkerRuns::MarkerRuns(const Genomes& genomes,
                       const std::vector<uint32_t>& kinds, MarkerTable& table)
    : genomes_(genomes),
      kinds_(kinds),
      table_(table),
      writer_(table),
      set_((genomes.count() + 63) / 64) {}

void MarkerRuns::take(std::span<const Suffix> suffixes,
                      std::span<const LcpEntry> entries) {
  const size_t had = places_.size();
  places_.resize(had + suffixes.size());
  shares_.resize(had + suffixes.size());
  // The very first suffix has none before it, and begins a run.
  uint32_t kind = had == 0 ? UINT32_MAX : kindOf(had - 1);
  uint32_t least = had == 0 ? 0 : shares_[had - 1].others;
  for (size_t i = 0; i < suffixes.size(); i++) {
    const uint32_t input = inputNumber(suffixes[i]);
    // Is settled with all of these.
    table_.prefetch(input, suffixes[i].pos);
    const uint32_t before =
        had + i == 0 ? 0
                     : std::min(lcpCharacters(entries[i]), table_.longest());
    const bool begins = kinds_[input] != kind;
    least = begins ? before : std::min(least, before);
    lastRun_ = begins ? had + i : lastRun_;
    kind = kinds_[input];
    places_[had + i] = {input, suffixes[i].pos};
    shares_[had + i] = {before, least};
  }
  if (lastRun_ > 0) endRuns(lastRun_);
}

// Settles those before a suffix, which there must be.
void MarkerRuns::endRuns(size_t end) {
  uint32_t least = 0;
  for (size_t i = end; i-- > 0;) {
    const uint32_t next = shares_[i + 1].before;
    least = kindOf(i) != kindOf(i + 1) ? next : std::min(least, next);
    shares_[i].others = std::max(shares_[i].others, least);
  }
  settle(end);
  const auto removed = static_cast<std::ptrdiff_t>(end);
  places_.erase(places_.begin(), places_.begin() + removed);
  shares_.erase(shares_.begin(), shares_.begin() + removed);
  lastRun_ = 0;
}

void MarkerRuns::settle(size_t end) {
  for (size_t i = 0; i < end; i++) {
    const uint32_t others = shares_[i].others;
    if (shares_[i + 1].before <= others) {
      if (!table_.isWanted(places_[i].input)) continue;
      writer_.settle(places_[i], others + 1);
      continue;
    }
    // Neighbours that share more with it tell the same.
    const size_t begin = i;
    while (i + 1 < end && shares_[i + 1].before > others) i++;
    settleTogether(begin, i + 1);
  }
}

void MarkerRuns::settleTogether(size_t begin, size_t end) {
  const auto places = std::span(places_).subspan(begin, end - begin);
  const uint32_t length = shares_[begin].others + 1;
  if (!writer_.settle(places, length)) return;
  std::fill(set_.begin(), set_.end(), 0);
  for (const MarkerPlace& place : places) {
    if (!table_.isWanted(place.input)) continue;
    const uint32_t genome = genomes_.of(place.input);
    set_[genome / 64] |= uint64_t{1} << genome % 64;
  }
  int genomes = 0;
  for (const uint64_t word : set_) genomes += std::popcount(word);
  writer_.add(places, {static_cast<uint32_t>(genomes), 0}, length);
}

void MarkerRuns::finish() {
  if (!places_.empty()) {
    // As if there were one more, which shares nothing.
    places_.push_back(places_.back());
    shares_.push_back({0, 0});
    endRuns(places_.size() - 1);
  }
  table_.add(writer_);
}

}  // namespace kit
