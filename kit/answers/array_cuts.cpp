#include "kit/answers/array_cuts.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "kit/records.h"

namespace kit {
namespace {

// So many that the last threads to end wait little for each other.
uint64_t wantedPieces(const MergedArray& array, int jobs) {
  const uint64_t wanted = jobs == 1 ? 1 : 8 * static_cast<uint64_t>(jobs);
  return std::clamp<uint64_t>(array.size(), 1, wanted);
}

uint64_t prefixAt(const MergedArray& array, uint64_t record) {
  return prefixBits(array.records(record, 1)[0]);
}

// The first record that has these prefix words or greater ones.
uint64_t firstWith(const MergedArray& array, uint64_t prefix) {
  uint64_t begin = 0, end = array.size();
  while (begin < end) {
    const uint64_t middle = begin + (end - begin) / 2;
    if (prefixAt(array, middle) < prefix) {
      begin = middle + 1;
    } else {
      end = middle;
    }
  }
  return begin;
}

// Of the genomes that count, those that were met.
class MetGenomes {
 public:
  explicit MetGenomes(const std::vector<bool>& counted) : rest_(counted) {}

  void add(uint32_t genome) {
    if (rest_[genome]) count_++;
    rest_[genome] = false;
  }
  uint32_t count() const { return count_; }

 private:
  std::vector<bool> rest_;  // not met yet
  uint32_t count_ = 0;
};

// The suffixes around a cut.
class CutSides {
 public:
  // Looks at the records from `begin` to `end` - 1, on either side of it.
  CutSides(const MergedArray& array, const Genomes& genomes, uint64_t begin,
           uint64_t cut, uint64_t end)
      : cut_(cut - begin) {
    array.passPart(begin, end,
                   [&](std::span<const Suffix> suffixes,
                       std::span<const LcpEntry> entries) {
                     for (size_t i = 0; i < suffixes.size(); i++) {
                       genomes_.push_back(genomes.of(inputNumber(suffixes[i])));
                       common_.push_back(lcpCharacters(entries[i]));
                     }
                   });
  }

  // Whether those that share as much with the ones at the cut as these do are
  // of enough genomes.
  bool isBeforeAmong(MetGenomes met, uint32_t enough) const {
    for (size_t i = cut_; i-- > 0;) {
      met.add(genomes_[i]);
      if (met.count() >= enough) return true;
      if (common_[i] < common_[cut_]) return false;
    }
    return false;
  }
  bool isBehindAmong(MetGenomes met, uint32_t enough) const {
    for (size_t i = cut_; i < common_.size(); i++) {
      if (common_[i] < common_[cut_]) return false;
      met.add(genomes_[i]);
      if (met.count() >= enough) return true;
    }
    return false;
  }

 private:
  size_t cut_;  // of these
  std::vector<uint32_t> genomes_;
  std::vector<uint32_t> common_;  // characters shared with the one before
};

}  // namespace

ArrayCuts evenCuts(const MergedArray& array, int jobs) {
  const uint64_t size = array.size(), pieces = wantedPieces(array, jobs);
  ArrayCuts cuts;
  for (uint64_t i = 0; i <= pieces; i++) {
    cuts.push_back(size / pieces * i + std::min(i, size % pieces));
  }
  return cuts;
}

ArrayCuts cutsBelow(const MergedArray& array, int jobs, uint32_t most) {
  const ArrayCuts even = evenCuts(array, jobs);
  // Suffixes that begin alike stay together: a small part of a piece.
  uint32_t characters = 1;
  while (characters < most &&
         uint64_t{1} << 2 * characters < 16 * even.size()) {
    characters++;
  }
  const uint64_t kept = ~uint64_t{0} << (64 - 2 * characters);
  ArrayCuts cuts = {0};
  for (size_t i = 1; i + 1 < even.size(); i++) {
    const uint64_t cut = firstWith(array, prefixAt(array, even[i]) & kept);
    if (cut > cuts.back()) cuts.push_back(cut);
  }
  cuts.push_back(array.size());
  return cuts;
}

ArrayCuts cutsAmong(const MergedArray& array, ArrayCuts cuts,
                    const Genomes& genomes, const std::vector<bool>& counted,
                    uint32_t enough) {
  const uint64_t looked =
      std::max(uint64_t{4096}, 64 * uint64_t{genomes.count()});  // records
  ArrayCuts kept = {0};
  for (size_t i = 1; i + 1 < cuts.size(); i++) {
    // Within the pieces on either side, since each tells by itself.
    const uint64_t cut = cuts[i];
    const CutSides sides(array, genomes,
                         cut - std::min(cut - kept.back(), looked), cut,
                         cut + std::min(cuts[i + 1] - cut, looked));
    const MetGenomes none(counted);
    if (sides.isBeforeAmong(none, enough) &&
        sides.isBehindAmong(none, enough)) {
      kept.push_back(cut);
    }
  }
  kept.push_back(array.size());
  return kept;
}

uint32_t sharedAcross(const MergedArray& array, const ArrayCuts& cuts) {
  uint32_t most = 0;
  for (size_t i = 1; i + 1 < cuts.size(); i++) {
    most = std::max(most, lcpCharacters(array.entry(cuts[i])));
  }
  return most;
}

}  // namespace kit
