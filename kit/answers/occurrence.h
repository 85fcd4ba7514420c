// Where a text stands in the genomes' sequences.

#ifndef PALVOR_KIT_ANSWERS_OCCURRENCE_H_
#define PALVOR_KIT_ANSWERS_OCCURRENCE_H_

#include <compare>
#include <cstdint>
#include <vector>

#include "kit/answers/merged_inputs.h"

namespace kit {

// A stretch of a sequence, read in one direction. Ordered by sequence, as the
// inputs come, and by start.
struct Occurrence {
  uint32_t input;  // that holds the stretch as the sequence was given
  uint32_t start;  // of the stretch in that input, in characters
  bool reverse;    // the text is the reverse complement of the stretch

  auto operator<=>(const Occurrence&) const = default;
};

// Characters `pos` to `pos` + `characters` - 1 of an input, which must be
// there.
inline Occurrence occurrenceOf(const MergedInputs& inputs, uint32_t input,
                               uint32_t pos, uint64_t characters) {
  const bool reverse = inputs.origin(input).reverse;
  const auto end = static_cast<uint32_t>(pos + characters);
  const uint32_t start = reverse ? inputs.length(input) - end : pos;
  return {inputs.forwardOf(input), start, reverse};
}

// Sorts the occurrences of a text. One that is its own reverse complement
// occurs twice where both strands are in: forward stays.
void sortOccurrences(std::vector<Occurrence>& occurrences);

// Where the stretch begins in the sequence, in characters from 0.
inline uint64_t startInSequence(const MergedInputs& inputs,
                                const Occurrence& occurrence) {
  return inputs.origin(occurrence.input).offset + occurrence.start;
}

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_OCCURRENCE_H_
