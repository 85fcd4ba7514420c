#include "kit/prepare/position_buckets.h"

#include <algorithm>
#include <bit>

namespace kit {
namespace {

constexpr size_t kMostBits = 12;

// About as many buckets as suffixes in each: then the index of a suffix in its
// bucket needs no more bits than the bucket's number makes known.
size_t bucketBits(size_t characters) {
  const auto width = static_cast<size_t>(std::bit_width(characters));
  return std::clamp<size_t>((width + 1) / 2, 2, kMostBits);
}

}  // namespace

PositionBuckets::PositionBuckets(const PsaText& psa, const InputFinder& finder,
                                 size_t chunks)
    : psa_(psa),
      finder_(finder),
      chunks_(chunks),
      bits_(bucketBits(psa.characters)),
      next_(chunks) {}

// Calls take(bucket, position) for all suffixes that begin in the chunk.
template <typename Take>
void PositionBuckets::forEachSuffix(size_t chunk, Take take) const {
  const size_t words = psa_.words.size();
  const size_t from = words * chunk / chunks_;
  const size_t to = words * (chunk + 1) / chunks_;
  if (from == to) return;
  const size_t shift = 64 - bits_;
  const auto takeWord = [&](size_t word, size_t count) {
    const uint64_t pair =
        static_cast<uint64_t>(psa_.words[word]) << 32 | psa_.words[word + 1];
    for (size_t i = 0; i < count; i++) {
      take(pair << (2 * i) >> shift, kCharactersPerWord * word + i);
    }
  };
  for (size_t input = finder_.find(kCharactersPerWord * from);
       input < psa_.inputs.size(); input++) {
    const InputString& string = psa_.inputs[input];
    const size_t first = string.begin / kCharactersPerWord;
    const size_t whole = first + string.length / kCharactersPerWord;
    const size_t last = string.length % kCharactersPerWord;
    if (first >= to) return;
    const size_t end = std::min(to, whole);
    for (size_t word = std::max(from, first); word < end; word++) {
      takeWord(word, kCharactersPerWord);
    }
    if (last > 0 && from <= whole && whole < to) takeWord(whole, last);
  }
}

void PositionBuckets::count(size_t chunk) {
  std::vector<uint32_t>& counts = next_[chunk];
  counts.assign(buckets(), 0);
  forEachSuffix(chunk, [&](size_t bucket, size_t) { counts[bucket]++; });
}

void PositionBuckets::sumUp() {
  starts_.assign(buckets() + 1, 0);
  uint32_t sum = 0;
  for (size_t bucket = 0; bucket < buckets(); bucket++) {
    starts_[bucket] = sum;
    for (std::vector<uint32_t>& next : next_) {
      const uint32_t count = next[bucket];
      next[bucket] = sum;
      sum += count;
    }
    largest_ = std::max<size_t>(largest_, sum - starts_[bucket]);
  }
  starts_[buckets()] = sum;
  findShortLast();
}

// A suffix of so few characters comes before all others of its bucket: the last
// one is as short only if all of the bucket are.
void PositionBuckets::findShortLast() {
  lastRests_.assign(buckets(), ~uint32_t{0});
  std::vector<uint32_t> shortOnes(buckets()), longest(buckets());
  for (const InputString& input : psa_.inputs) {
    const size_t most = std::min(input.length, bits_ / 2);
    for (size_t rest = 1; rest <= most; rest++) {
      const uint64_t text =
          charactersAt(psa_.words.data(), input.begin + input.length - rest);
      const size_t bucket = text >> (64 - bits_);
      shortOnes[bucket]++;
      longest[bucket] = std::max(longest[bucket], static_cast<uint32_t>(rest));
    }
  }
  for (size_t bucket = 0; bucket < buckets(); bucket++) {
    if (shortOnes[bucket] == size(bucket)) lastRests_[bucket] = longest[bucket];
  }
}

void PositionBuckets::spread(size_t chunk, size_t first, size_t end,
                             uint32_t* to) {
  uint32_t* next = next_[chunk].data();
  uint32_t* base = to - starts_[first];
  if (first == 0 && end == buckets()) {
    forEachSuffix(chunk, [=](size_t bucket, size_t position) {
      base[next[bucket]++] = static_cast<uint32_t>(position);
    });
  } else {
    forEachSuffix(chunk, [=](size_t bucket, size_t position) {
      if (bucket - first < end - first) {
        base[next[bucket]++] = static_cast<uint32_t>(position);
      }
    });
  }
}

}  // namespace kit
