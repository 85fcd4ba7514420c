#include "palvor/text/likeness.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "palvor/text/kmer_table.h"
#include "palvor/text/sampled_kmers.h"

namespace palvor {
namespace {

constexpr uint32_t kWindow = 2048;        // characters read at once
constexpr uint64_t kReadWhole = 4 << 20;  // characters in all
constexpr uint32_t kEvery = 4;            // of so many windows one is read
constexpr uint32_t kMayBeJudged = 32;     // k-mers that are enough for a string
constexpr uint32_t kLikes = 50;           // one k-mer in so many

struct Sample {
  uint64_t taken = 0;
  uint64_t found = 0;  // elsewhere, too

  bool like(uint32_t every) const {
    return found >= 2 && found * every * kLikes >= taken;
  }
};

// The first position from `from` on, below `end`, where GAAT or GACT stands, as
// at one of 128 positions of unrelated text; or `end`, behind which the string
// has kKmerReach characters.
uint32_t nextSparse(const PackedString& string, uint32_t from, uint32_t end) {
  constexpr uint64_t kFirstBits = 0xAAAAAAAAAAAAAAAA;
  for (; from < end; from += 29) {
    const uint64_t characters = manyCharacters(string, from);
    const uint64_t first = characters & kFirstBits;
    const uint64_t second = characters << 1 & kFirstBits;
    const uint64_t found = first & ~second &                 // G
                           ~(first << 2) & ~(second << 2) &  // A
                           ~(first << 4) &                   // A or C
                           (first << 6) & (second << 6);     // T
    if (found == 0) continue;
    const auto distance = static_cast<uint32_t>(std::countl_zero(found)) / 2;
    return std::min(end, from + distance);
  }
  return end;
}

// Whether a few characters stand there over and over, in which nothing may be
// found to look at.
bool repeatsItself(const PackedString& string, uint32_t position) {
  if (lengthOf(string) - position < 2 * kKmerReach) return false;
  const uint64_t characters = manyCharacters(string, position);
  for (uint32_t unit = 1; unit <= 4; unit++) {
    if (manyCharacters(string, position + unit) == characters) return true;
  }
  return false;
}

class Sampler {
 public:
  Sampler(std::span<const PackedString> strings, uint64_t characters)
      : strings_(strings),
        every_(characters <= kReadWhole ? 1 : kEvery),
        table_(characters / 128 / every_),
        samples_(strings.size()) {}

  std::vector<bool> sample() {
    for (size_t s = 0; s < strings_.size(); s++) {
      const uint32_t length = lengthOf(strings_[s]);
      if (length <= kKmerReach) continue;
      const uint32_t end = length - kKmerReach;
      for (uint32_t group = 0; group < end; group += every_ * kWindow) {
        // Another window of each group, so that strings that are shifted
        // against each other meet.
        random_ = random_ * 6364136223846793005U + 1442695040888963407U;
        const uint32_t window =
            every_ == 1 ? 0 : static_cast<uint32_t>(random_ >> 40) % every_;
        const uint64_t from = group + uint64_t{window} * kWindow;
        if (from < end) {
          read(s, static_cast<uint32_t>(from),
               static_cast<uint32_t>(std::min<uint64_t>(end, from + kWindow)));
        }
        if (end - group <= every_ * kWindow) break;
      }
    }
    return judge();
  }

 private:
  void read(size_t s, uint32_t from, uint32_t end) {
    const PackedString& string = strings_[s];
    if (repeatsItself(string, from)) {
      samples_[s].taken++;
      samples_[s].found++;
    }
    for (uint32_t at = nextSparse(string, from, end); at < end;
         at = nextSparse(string, at + 1, end)) {
      samples_[s].taken++;
      const uint32_t first =
          table_.findOrAdd(kmerHash(string, at), static_cast<uint32_t>(s));
      if (first == KmerTable::kNone) continue;
      samples_[s].found++;
      if (first != s) samples_[first].found++;
    }
  }

  std::vector<bool> judge() const {
    Sample all;
    for (const Sample& sample : samples_) {
      all.taken += sample.taken;
      all.found += sample.found;
    }
    std::vector<bool> like(strings_.size());
    for (size_t s = 0; s < strings_.size(); s++) {
      if (lengthOf(strings_[s]) <= kKmerReach) continue;
      const Sample& sample = samples_[s];
      like[s] = (sample.taken >= kMayBeJudged ? sample : all).like(every_);
    }
    return like;
  }

  std::span<const PackedString> strings_;
  uint32_t every_;
  KmerTable table_;
  std::vector<Sample> samples_;
  uint64_t random_ = 0;
};

}  // namespace

std::vector<bool> stringsWithLikes(std::span<const PackedString> strings) {
  uint64_t characters = 0;
  for (const PackedString& string : strings) characters += lengthOf(string);
  return Sampler(strings, characters).sample();
}

}  // namespace palvor
