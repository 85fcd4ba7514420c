// Sorts the suffixes of one bucket.
//
// A key is as much of a suffix's text, past what the bucket shares, as the
// suffix's index in the bucket leaves room for in 64 bits; the keys are sorted
// by a vectorised quicksort, and what they leave open is settled by the text.

#ifndef PALVOR_KIT_PREPARE_BUCKET_SORTER_H_
#define PALVOR_KIT_PREPARE_BUCKET_SORTER_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/prepare/input_finder.h"
#include "kit/prepare/key_sorter.h"
#include "kit/prepare/psa_text.h"
#include "kit/prepare/repeat_budget.h"
#include "kit/prepare/tie_breaker.h"

namespace kit {

// A bucket in order, by rank.
struct SortedBucket {
  std::span<const uint32_t> positions;
  std::span<const uint64_t> texts;   // the first 32 characters (charactersAt)
  std::span<const uint32_t> shared;  // bits shared with the one before, but for
                                     // the first; where one of the two ends
                                     // first, it may be more than that has
};

// One thread's; its buffers grow to the largest bucket and are used again.
class BucketSorter {
 public:
  // Sorts the suffixes at these positions, one or more, all of which begin with
  // the `bits` bits (1 to 16) that are the number `bucket`. The result is valid
  // until the next call. Throws TooRepetitive when the budget is spent.
  SortedBucket sort(const PsaText& psa, const InputFinder& finder,
                    RepeatBudget& budget, std::span<const uint32_t> positions,
                    size_t bits, size_t bucket);

 private:
  void sortKeys(const uint32_t* words, std::span<const uint32_t> positions,
                size_t bits, size_t bucket);

  KeySorter sorter_;
  TieBuffers tieBuffers_;
  std::vector<uint64_t> texts_;
  std::vector<uint32_t> tails_;  // by index: the text that no key has room for
  std::vector<uint32_t> positions_;
  std::vector<uint32_t> shared_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_BUCKET_SORTER_H_
