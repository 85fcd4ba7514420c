// PREFIX.ranges.tsv: the ranges that a merge is done in, each by itself, and
// the parts that come of it.
//
// Text, fields with tabs between them. The first line is "#collection" and the
// checksum of what is merged; the second one names the fields: number of the
// range, the first key that belongs to it and the first one that does not, as
// 16 hexadecimal digits (32 characters, two bits each; "-" if none is beyond),
// its suffixes, and the bytes that they and their LCP entries take in files.
//
// Range N's part are the files PREFIX_N.range.stpsa and PREFIX_N.range.stlcp.
// They get their names when they are whole, the .stpsa last.

#ifndef PALVOR_KIT_RANGE_PLAN_H_
#define PALVOR_KIT_RANGE_PLAN_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kit {

struct PlannedRange {
  uint64_t low = 0;              // the first key that belongs to it
  std::optional<uint64_t> high;  // the first one that does not, if any
  uint64_t suffixes = 0;

  friend bool operator==(const PlannedRange&, const PlannedRange&) = default;
};

struct RangePlan {
  std::string collection;            // checksum of what is merged
  std::vector<PlannedRange> ranges;  // all keys, in order

  uint64_t suffixes() const;

  friend bool operator==(const RangePlan&, const RangePlan&) = default;
};

// The plan of a merge whose output files begin with `output`. Throws FileError
// if there is none, or one that is not well formed: ranges that do not follow
// one another, too.
RangePlan readPlan(const std::string& output);

// Throws std::system_error.
void writePlan(const std::string& output, const RangePlan& plan);

std::string planPath(const std::string& output);
// Of a part's two files, without the kind.
std::string partPath(const std::string& output, size_t range);

enum class PartState { kMissing, kDamaged, kWhole };

// By the files' names and sizes.
PartState stateOfPart(const std::string& output, const RangePlan& plan,
                      size_t range);

// Removes the plan and all parts, also unfinished ones.
void removePlan(const std::string& output);

}  // namespace kit

#endif  // PALVOR_KIT_RANGE_PLAN_H_
