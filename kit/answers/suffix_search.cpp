#include "kit/answers/suffix_search.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "kit/answers/merged_array.h"
#include "kit/file_error.h"

namespace kit {

SuffixSearch::SuffixSearch(const MergedInputs& inputs, MergedStrings& strings,
                           const std::string& base)
    : inputs_(inputs),
      strings_(strings),
      array_(seriesFiles(base, "stpsa", "-a")) {
  testRecordCount(array_.name(), array_.size(), inputs);
}

SuffixRange SuffixSearch::find(const Pattern& pattern, size_t from,
                               size_t characters) {
  const uint64_t fromBit = 2 * from;
  const uint64_t bits = 2 * characters;
  // Where the first one with it is, and then the first one after those. What is
  // known of both is kept, so that the second search is short.
  uint64_t low = 0, high = array_.size(), above = array_.size();
  while (low < high) {
    const uint64_t middle = low + (high - low) / 2;
    const int order = compare(at(middle), pattern, fromBit, bits);
    if (order < 0) {
      low = middle + 1;
    } else {
      if (order > 0) {
        // One that begins with the pattern was met further on.
        if (high < above) refuse(middle);
        above = middle;
      }
      high = middle;
    }
  }
  SuffixRange range = {low, low};
  while (range.end < above) {
    const uint64_t middle = range.end + (above - range.end) / 2;
    const int order = compare(at(middle), pattern, fromBit, bits);
    if (order < 0) refuse(middle);
    if (order > 0) {
      above = middle;
    } else {
      range.end = middle + 1;
    }
  }
  // An array of other inputs would be found out by one of these.
  if (range.begin < array_.size()) testPrefix(range.begin);
  if (range.size() > 1) testPrefix(range.end - 1);
  return range;
}

// Below 0: the suffix comes before those that begin with the pattern; 0: it is
// one of these; above 0: it comes after them.
int SuffixSearch::compare(const Suffix& suffix, const Pattern& pattern,
                          uint64_t fromBit, uint64_t bits) {
  const uint32_t input = inputNumber(suffix);
  const uint64_t rest = 2 * uint64_t{inputs_.length(input) - suffix.pos};
  const uint64_t most = std::min(rest, bits);
  uint64_t own = prefixBits(suffix);
  uint64_t wanted = pattern.slice(fromBit);
  uint64_t common = 0;
  while (own == wanted && common + 64 < most) {
    common += 64;
    own = strings_.slice(input, 2 * uint64_t{suffix.pos} + common);
    wanted = pattern.slice(fromBit + common);
  }
  common += static_cast<uint64_t>(std::countl_zero(own ^ wanted));
  if (common >= most) return rest < bits ? -1 : 0;
  return own < wanted ? -1 : 1;
}

const Suffix& SuffixSearch::at(uint64_t index) const {
  const Suffix& suffix = array_[index];
  const uint32_t input = inputNumber(suffix);
  if (input < inputs_.count() && suffix.pos < inputs_.length(input)) {
    return suffix;
  }
  throw FileError(array_.name(),
                  fmt::format("record {}: there is no suffix {} of "
                              "input {}",
                              index, suffix.pos, input));
}

void SuffixSearch::refuse(uint64_t index) const {
  throw FileError(array_.name(),
                  fmt::format("record {}: not in ascending order", index));
}

void SuffixSearch::testPrefix(uint64_t index) {
  testPrefixWords(array_.name(), at(index), index, inputs_, strings_);
}

}  // namespace kit
