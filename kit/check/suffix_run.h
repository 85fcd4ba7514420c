// A sequence of suffixes that claims to be in order, with each suffix once.

#ifndef PALVOR_KIT_CHECK_SUFFIX_RUN_H_
#define PALVOR_KIT_CHECK_SUFFIX_RUN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/check/checked_strings.h"
#include "kit/check/common_prefix.h"
#include "kit/fault_log.h"

namespace kit {

// Which suffixes have been met. Runs of different inputs may share one in
// different threads.
class MetSuffixes {
 public:
  explicit MetSuffixes(const CheckedStrings& strings)
      : strings_(strings), met_((strings.indexes() + 63) / 64) {}

  // False if the suffix had been met before.
  bool meet(const Place& place);

  // The first suffix of inputs `from` to `to` - 1 not met, if any.
  std::optional<Place> missing(uint32_t from, uint32_t to) const;

 private:
  const CheckedStrings& strings_;
  std::vector<uint64_t> met_;
};

// How a suffix follows the one before it in its run.
struct Step {
  bool first = true;     // there is none before it
  uint64_t bits = 0;     // that the two share
  bool inside = false;   // they part before the shorter one ends
  bool isEqual = false;  // neither has more bits
  bool rises = true;     // the one before does not sort after it

  // What an LCP file says of it; nothing of the first one.
  uint64_t entry() const { return bits << 1 | (inside ? 1 : 0); }
};

// The step to a suffix from another one; both must be there.
inline Step stepTo(const Place& place, const Place& before,
                   const CheckedStrings& strings, CommonPrefix& prefixes) {
  const uint64_t restBefore = strings.restBits(before);
  const uint64_t rest = strings.restBits(place);
  Step step;
  step.first = false;
  step.bits = prefixes.bits(before, place);
  step.inside = step.bits < restBefore && step.bits < rest;
  step.isEqual = step.bits == restBefore && step.bits == rest;
  step.rises =
      step.inside
          ? strings.slice(place.input, 2 * place.pos + step.bits) >> 63 != 0
          : restBefore <= rest;
  return step;
}

class SuffixRun {
 public:
  SuffixRun(const CheckedStrings& strings, MetSuffixes& met, FaultLog& faults)
      : strings_(strings), met_(met), faults_(faults), prefixes_(strings) {}

  // Takes the next suffix, which record `record` of `file` names. Reports one
  // that is not there, that was met before, or that sorts before its
  // predecessor. Nothing if it is not there.
  std::optional<Step> take(const Place& place, const std::string& file,
                           uint64_t record);

  uint64_t taken() const { return taken_; }

 private:
  const CheckedStrings& strings_;
  MetSuffixes& met_;
  FaultLog& faults_;
  CommonPrefix prefixes_;
  std::optional<Place> previous_;
  uint64_t taken_ = 0;
};

// "suffix 12 of input 3"
std::string describe(const Place& place);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_SUFFIX_RUN_H_
