// Compares suffixes of a packed text, at a cost that does not grow with how
// often a long match is met again.
//
// Where two stretches of a text agree over many characters, as many pairs of
// suffixes do, each pair one character less. So long matches are remembered by
// how far the two are apart and the block of the text in which the first
// begins, and what a match is known to cover is not read again.

#ifndef PALVOR_KIT_PREPARE_SUFFIX_COMPARER_H_
#define PALVOR_KIT_PREPARE_SUFFIX_COMPARER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/prepare/input_finder.h"
#include "kit/prepare/psa_text.h"

namespace kit {

// Matches met so far; of use for several texts, one after the other.
class MatchTable {
 public:
  MatchTable();

 private:
  friend class SuffixComparer;

  // Characters [from, to) agree with those `shift` characters on, and the next
  // ones differ, or one of the inputs ends.
  struct Match {
    uint32_t text;  // number of the suffix array, plus 1
    uint32_t shift;
    uint32_t from;
    uint32_t to;
  };

  std::vector<Match> matches_;
};

class SuffixComparer {
 public:
  struct Result {
    uint64_t bits;     // that the two share
    bool firstIsLess;  // suffixes with equal characters go by position
  };

  // All three must outlive the comparer.
  SuffixComparer(const PsaText& psa, const InputFinder& finder,
                 MatchTable& table)
      : words_(psa.words.data()),
        text_(static_cast<uint32_t>(psa.number) + 1),
        finder_(finder),
        table_(table) {}

  // Compares the suffixes at two different positions, which are known to share
  // `from` characters, or to share all up to where one of them ends.
  Result compare(size_t first, size_t second, size_t from);

  // Words looked at since the last call.
  size_t takeSteps() {
    const size_t steps = steps_;
    steps_ = 0;
    return steps;
  }

 private:
  MatchTable::Match& slot(size_t shift, size_t position);
  size_t matchEnd(size_t position, size_t shift, size_t end);

  const uint32_t* words_;
  uint32_t text_;
  const InputFinder& finder_;
  MatchTable& table_;
  size_t steps_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_SUFFIX_COMPARER_H_
