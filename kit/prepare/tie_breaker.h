// Puts suffixes that begin alike into order by what follows.

#ifndef PALVOR_KIT_PREPARE_TIE_BREAKER_H_
#define PALVOR_KIT_PREPARE_TIE_BREAKER_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/prepare/input_finder.h"
#include "kit/prepare/key_sorter.h"
#include "kit/prepare/psa_text.h"
#include "kit/prepare/repeat_budget.h"
#include "kit/prepare/suffix_comparer.h"

namespace kit {

// Buffers that one thread uses again and again.
struct TieBuffers {
  MatchTable matches;
  std::vector<uint64_t> keys;
  std::vector<uint32_t> positions;
};

class TieBreaker {
 public:
  // All of these must outlive the tie breaker.
  TieBreaker(const PsaText& psa, const InputFinder& finder,
             RepeatBudget& budget, const KeySorter& sorter, TieBuffers& buffers)
      : words_(psa.words.data()),
        finder_(finder),
        budget_(budget),
        sorter_(sorter),
        buffers_(buffers),
        comparer_(psa, finder, buffers.matches) {}

  // Orders the suffixes at these positions, which share `depth` characters, or
  // all up to where one ends. shared[i], but shared[0], becomes the number of
  // bits that suffix i shares with the one before it; where that ends first, it
  // may be more than the suffix has.
  // Throws TooRepetitive when the budget is spent.
  void settle(std::span<uint32_t> positions, size_t depth,
              std::span<uint32_t> shared);

 private:
  void compareAll(std::span<uint32_t> positions, size_t depth,
                  std::span<uint32_t> shared);
  size_t settleEnded(std::span<uint32_t> positions, size_t depth,
                     std::span<uint32_t> shared);
  void settleByKeys(std::span<uint32_t> positions, size_t depth,
                    std::span<uint32_t> shared);

  const uint32_t* words_;
  const InputFinder& finder_;
  RepeatBudget& budget_;
  const KeySorter& sorter_;
  TieBuffers& buffers_;
  SuffixComparer comparer_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_TIE_BREAKER_H_
