// Finds all occurrences of patterns, on both strands, whatever strands were
// merged.

#ifndef PALVOR_KIT_ANSWERS_PATTERN_FINDER_H_
#define PALVOR_KIT_ANSWERS_PATTERN_FINDER_H_

#include <functional>
#include <utility>
#include <vector>

#include "kit/answers/merged_inputs.h"
#include "kit/answers/occurrence.h"
#include "kit/answers/pattern.h"
#include "kit/records.h"

namespace kit {

using TakeSuffix = std::function<void(const Suffix& suffix)>;

// Calls `take` for each suffix that begins with a pattern.
using FindSuffixes =
    std::function<void(const Pattern& pattern, const TakeSuffix& take)>;

class PatternFinder {
 public:
  // The inputs must outlive this.
  PatternFinder(const MergedInputs& inputs, FindSuffixes find)
      : inputs_(inputs), find_(std::move(find)) {}

  // The occurrences of a pattern and of its reverse complement, each once, in
  // order: a pattern that is its own reverse complement occurs forward.
  std::vector<Occurrence> find(const Pattern& pattern) const;

 private:
  const MergedInputs& inputs_;
  FindSuffixes find_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PATTERN_FINDER_H_
