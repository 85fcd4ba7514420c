// The rows of a merged order as other programs have them: with a terminator at
// the end of each input.
//
// Terminators are less than all characters, and each is less than those of
// later inputs. So the first rows are those of the terminators themselves, one
// for each input, and of suffixes with the same text those of earlier inputs
// come first, which palvor leaves to chance.

#ifndef PALVOR_KIT_ANSWERS_SUFFIX_ROWS_H_
#define PALVOR_KIT_ANSWERS_SUFFIX_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "kit/answers/merged_inputs.h"
#include "kit/records.h"

namespace kit {

struct SuffixRow {
  uint32_t input;
  uint32_t pos;     // in the input; its length: that of the terminator
  uint32_t common;  // characters shared with the row before; the first: 0
};

class SuffixRows {
 public:
  using Take = std::function<void(std::span<const SuffixRow> rows)>;

  // Hands on the terminators' rows at once, and others as they come. The inputs
  // must outlive this.
  SuffixRows(const MergedInputs& inputs, Take take);

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // To be called once, when all suffixes were taken.
  void finish();

 private:
  void settleEqualOnes();

  const MergedInputs& inputs_;
  Take take_;
  std::vector<SuffixRow> rows_;  // those of the last text may be unsorted
  size_t firstEqual_ = 0;        // where they begin
  uint64_t lastRest_ = 0;        // characters of the last one
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_SUFFIX_ROWS_H_
