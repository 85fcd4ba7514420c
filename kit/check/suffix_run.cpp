#include "kit/check/suffix_run.h"

#include <fmt/format.h>

namespace kit {

bool MetSuffixes::meet(const Place& place) {
  const uint64_t index = strings_.index(place);
  const uint64_t mask = uint64_t{1} << (index % 64);
  uint64_t& word = met_[index / 64];
  const bool isNew = (word & mask) == 0;
  word |= mask;
  return isNew;
}

std::optional<Place> MetSuffixes::missing(uint32_t from, uint32_t to) const {
  for (uint32_t input = from; input < to; input++) {
    for (uint64_t pos = 0; pos < strings_.length(input); pos++) {
      const Place place = {input, pos};
      const uint64_t index = strings_.index(place);
      const uint64_t word = met_[index / 64];
      if (index % 64 == 0 && word == ~uint64_t{0}) {
        pos += 63;
      } else if ((word >> (index % 64) & 1) == 0) {
        return place;
      }
    }
  }
  return std::nullopt;
}

std::optional<Step> SuffixRun::take(const Place& place, const std::string& file,
                                    uint64_t record) {
  taken_++;
  if (!strings_.has(place)) {
    faults_.add(file, record, fmt::format("there is no {}", describe(place)));
    return std::nullopt;
  }
  if (!met_.meet(place)) {
    faults_.add(file, record,
                fmt::format("{} is there a second time", describe(place)));
  }
  const Step step =
      previous_ ? stepTo(place, *previous_, strings_, prefixes_) : Step();
  if (!step.rises) {
    faults_.add(file, record,
                fmt::format("{} sorts before {}, which stands before it",
                            describe(place), describe(*previous_)));
  }
  previous_ = place;
  return step;
}

std::string describe(const Place& place) {
  return fmt::format("suffix {} of input {}", place.pos, place.input);
}

}  // namespace kit
