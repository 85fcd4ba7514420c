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
  bool first;     // there is none before it
  uint64_t bits;  // that the two share
  bool inside;    // they part before the shorter one ends
};

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
