// The input strings of a merged order, mapped into memory one by one as they
// are needed, so that a question about a few places reads a few pages. Those
// that fill no page, as most contigs, are read: more of them are there than the
// system lets a process map.

#ifndef PALVOR_KIT_ANSWERS_MERGED_STRINGS_H_
#define PALVOR_KIT_ANSWERS_MERGED_STRINGS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/answers/merged_inputs.h"

namespace kit {

class MergedStrings {
 public:
  // The inputs must outlive this. Nothing is mapped yet.
  explicit MergedStrings(const MergedInputs& inputs)
      : inputs_(inputs), mapped_(inputs.count()) {}
  ~MergedStrings() { unmapAll(); }
  MergedStrings(const MergedStrings&) = delete;
  MergedStrings& operator=(const MergedStrings&) = delete;

  // The 64 bits of an input, which must be there, from a bit on; any bits past
  // its end. Throws FileError if its file cannot be mapped or is too short.
  uint64_t slice(uint32_t input, uint64_t bit) {
    const uint32_t* words = wordsOf(input);
    const uint64_t count = wordCount(input);
    const uint64_t first = bit / 32;
    const auto word = [&](uint64_t index) {
      return uint64_t{index < count ? words[index] : 0};
    };
    const uint64_t pair = word(first) << 32 | word(first + 1);
    const unsigned shift = bit % 32;
    return shift == 0 ? pair : pair << shift | word(first + 2) >> (32 - shift);
  }

  // The code of a character, 0 to 3, which must be there.
  unsigned code(uint32_t input, uint64_t pos) {
    return wordsOf(input)[pos / 16] >> (30 - 2 * (pos % 16)) & 3;
  }

  // Asks for the memory around a character that will be needed soon.
  void prefetch(uint32_t input, uint64_t pos) {
    __builtin_prefetch(wordsOf(input) + pos / 16);
  }

 private:
  uint64_t wordCount(uint32_t input) const {
    return (uint64_t{inputs_.length(input)} + 15) / 16;
  }
  const uint32_t* wordsOf(uint32_t input) {
    const uint32_t* words = mapped_[input];
    return words != nullptr ? words : map(input);
  }
  // Whether it fills no page.
  bool isShort(uint32_t input) const { return wordCount(input) < 1024; }
  const uint32_t* read(uint32_t input, const std::string& path);
  const uint32_t* map(uint32_t input);
  void unmapAll();

  const MergedInputs& inputs_;
  std::vector<const uint32_t*> mapped_;  // null: neither mapped nor read
  std::vector<std::vector<uint32_t>> read_;
  uint32_t mappedCount_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MERGED_STRINGS_H_
