#include "kit/prepare/bucket_sorter.h"

#include <bit>

namespace kit {
namespace {

// How many suffixes ahead the text is asked for.
constexpr size_t kAhead = 16;

}  // namespace

// Leaves the texts in order in texts_, and the positions in positions_.
void BucketSorter::sortKeys(const uint32_t* words,
                            std::span<const uint32_t> positions, size_t bits,
                            size_t bucket) {
  const size_t count = positions.size();
  const uint64_t indexMask = std::bit_ceil(count) - 1;
  // The bits below the mask are lost in a key, but for the topmost ones, which
  // the bucket's bits have made room for.
  const uint64_t tailMask = indexMask >> bits;
  uint64_t* keys = texts_.data();
  for (size_t i = 0; i < count; i++) {
    if (i + kAhead < count) {
      __builtin_prefetch(words + positions[i + kAhead] / kCharactersPerWord);
    }
    const uint64_t text = charactersAt(words, positions[i]);
    keys[i] = (text << bits & ~indexMask) | i;
    if (tailMask != 0) tails_[i] = static_cast<uint32_t>(text & tailMask);
  }
  sorter_(keys, count);
  const uint64_t start = static_cast<uint64_t>(bucket) << (64 - bits);
  for (size_t i = 0; i < count; i++) {
    const size_t index = keys[i] & indexMask;
    positions_[i] = positions[index];
    keys[i] = start | (keys[i] & ~indexMask) >> bits;
    if (tailMask != 0) keys[i] |= tails_[index];
  }
}

SortedBucket BucketSorter::sort(const PsaText& psa, const InputFinder& finder,
                                RepeatBudget& budget,
                                std::span<const uint32_t> positions,
                                size_t bits, size_t bucket) {
  const size_t count = positions.size();
  if (texts_.size() < count) {
    texts_.resize(count);
    tails_.resize(count);
    positions_.resize(count);
    shared_.resize(count);
  }
  const uint32_t* words = psa.words.data();
  sortKeys(words, positions, bits, bucket);

  TieBreaker ties(psa, finder, budget, sorter_, tieBuffers_);
  const uint64_t tailMask = (std::bit_ceil(count) - 1) >> bits;
  const size_t known = static_cast<size_t>(64 - std::popcount(tailMask));
  for (size_t i = 1; i < count;) {
    const uint64_t unequal = (texts_[i] ^ texts_[i - 1]) & ~tailMask;
    if (unequal != 0) {
      shared_[i++] = static_cast<uint32_t>(std::countl_zero(unequal));
      continue;
    }
    const size_t first = i - 1;
    while (i < count && ((texts_[i] ^ texts_[first]) & ~tailMask) == 0) i++;
    ties.settle({positions_.data() + first, i - first}, known / 2,
                {shared_.data() + first, i - first});
    if (tailMask == 0) continue;
    for (size_t j = first; j < i; j++) {
      texts_[j] = charactersAt(words, positions_[j]);
    }
  }
  budget.earn(count);
  return {{positions_.data(), count},
          {texts_.data(), count},
          {shared_.data(), count}};
}

}  // namespace kit
