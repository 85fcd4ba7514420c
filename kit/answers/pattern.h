// A text to look for.

#ifndef PALVOR_KIT_ANSWERS_PATTERN_H_
#define PALVOR_KIT_ANSWERS_PATTERN_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "kit/packed_string.h"

namespace kit {

class Pattern {
 public:
  // Takes a text of 1 or more characters over A, C, G and T.
  Pattern(std::string name, std::string text);

  const std::string& name() const { return name_; }
  const std::string& text() const { return text_; }
  uint64_t bits() const { return 2 * text_.size(); }

  // The 64 bits from a bit on, which must be one of its own; zero past the end.
  uint64_t slice(uint64_t bit) const { return packed_.slice(bit); }

  // The code of a character, 0 to 3, which must be there.
  unsigned code(size_t pos) const {
    return static_cast<unsigned>(packed_.slice(2 * pos) >> 62);
  }

  // Of the same name.
  Pattern reverseComplement() const;

 private:
  std::string name_;
  std::string text_;
  PackedString packed_;
};

// A pattern from the command line, named by itself. Letters may be in either
// case, and U is T. Throws std::runtime_error, which names the letter, for any
// other than A, C, G and T: those that stand for several bases are none.
Pattern patternOf(const std::string& word);

// Reads sequences, FASTA or FASTQ, and calls `take` for each: its name, and its
// text over ACGTN, capitals, N for every letter that stands for several bases.
// `firstAmbiguous` is the first such letter as it was written, or 0. Throws
// std::runtime_error with the file's name.
struct Query {
  std::string name;
  std::string text;
  char firstAmbiguous = 0;
};
void readQueries(const std::string& path,
                 const std::function<void(const Query& query)>& take);

// A query as a pattern. Throws std::runtime_error for an ambiguous one, as
// patternOf, and for an empty one.
//   path  of its file
Pattern patternOf(const Query& query, const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PATTERN_H_
