// Looks up texts in a merged suffix array by binary search.

#ifndef PALVOR_KIT_ANSWERS_SUFFIX_SEARCH_H_
#define PALVOR_KIT_ANSWERS_SUFFIX_SEARCH_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/pattern.h"
#include "kit/answers/record_series.h"
#include "kit/records.h"

namespace kit {

// Records of an array, the end not included.
struct SuffixRange {
  uint64_t begin;
  uint64_t end;

  uint64_t size() const { return end - begin; }
};

// All functions throw FileError, which names the array and the record, for one
// that names no suffix or has other prefix words than its string.
class SuffixSearch {
 public:
  // Maps <base>.stpsa, or its parts. Throws FileError if it is missing, or has
  // not one record for each suffix of the inputs, which must outlive this, as
  // the strings must.
  SuffixSearch(const MergedInputs& inputs, MergedStrings& strings,
               const std::string& base);

  // The suffixes that begin with `characters` characters of a pattern, from its
  // character `from` on; it must have them, and be 1 or more.
  SuffixRange find(const Pattern& pattern, size_t from, size_t characters);

  // The same suffixes, one by one; each is tested once more, so that an array
  // out of order gives no wrong ones.
  template <typename Take>
  void eachSuffix(const Pattern& pattern, size_t from, size_t characters,
                  Take take) {
    const SuffixRange range = find(pattern, from, characters);
    for (uint64_t i = range.begin; i < range.end; i++) {
      const Suffix& suffix = at(i);
      if (compare(suffix, pattern, 2 * from, 2 * characters) != 0) refuse(i);
      take(suffix);
    }
  }

 private:
  // A record that names a suffix.
  const Suffix& at(uint64_t index) const;
  [[noreturn]] void refuse(uint64_t index) const;
  int compare(const Suffix& suffix, const Pattern& pattern, uint64_t fromBit,
              uint64_t bits);
  void testPrefix(uint64_t index);

  const MergedInputs& inputs_;
  MergedStrings& strings_;
  MappedSeries<Suffix> array_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_SUFFIX_SEARCH_H_
