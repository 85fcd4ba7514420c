#include "kit/range_plan.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>
#include <numeric>
#include <string_view>
#include <system_error>

#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCollection = "#collection\t";
constexpr std::string_view kFields = "#range\tlow\thigh\tsuffixes\tbytes";
constexpr uint64_t kSuffixBytes = sizeof(Suffix) + sizeof(LcpEntry);

std::vector<std::string_view> split(std::string_view text, char by) {
  std::vector<std::string_view> parts;
  for (size_t end; (end = text.find(by)) != std::string_view::npos;) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

std::optional<uint64_t> numberOf(std::string_view text, int base) {
  uint64_t number = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return number;
}

// The range of a line that is to follow another; nothing if it is none.
std::optional<PlannedRange> rangeOf(std::string_view line,
                                    const std::vector<PlannedRange>& before) {
  const auto fields = split(line, '\t');
  if (fields.size() != 5) return {};
  const auto number = numberOf(fields[0], 10);
  const auto low = numberOf(fields[1], 16);
  const auto high = numberOf(fields[2], 16);
  const auto suffixes = numberOf(fields[3], 10);
  const auto bytes = numberOf(fields[4], 10);
  if (!number || !low || !suffixes || !bytes) return {};
  if (!high && fields[2] != "-") return {};
  const bool follows =
      before.empty() ? *low == 0 : before.back().high == std::optional(*low);
  if (number != before.size() || !follows || (high && *high <= *low)) return {};
  if (*suffixes > UINT64_MAX / kSuffixBytes ||
      *bytes != kSuffixBytes * *suffixes) {
    return {};
  }
  return PlannedRange{*low, high, *suffixes};
}

std::string linesOf(const RangePlan& plan) {
  std::string lines =
      fmt::format("{}{}\n{}\n", kCollection, plan.collection, kFields);
  for (size_t r = 0; r < plan.ranges.size(); r++) {
    const PlannedRange& range = plan.ranges[r];
    lines += fmt::format("{}\t{:016x}\t{}\t{}\t{}\n", r, range.low,
                         range.high ? fmt::format("{:016x}", *range.high) : "-",
                         range.suffixes, kSuffixBytes * range.suffixes);
  }
  return lines;
}

bool hasSize(const std::string& path, uint64_t bytes) {
  std::error_code failure;
  return fs::file_size(path, failure) == bytes && !failure;
}

// Whether a file is one of a part's, or has yet to become it.
bool isOfPart(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return false;
  name.remove_prefix(prefix.size());
  if (!name.starts_with('_')) return false;
  const size_t digits = name.find_first_not_of("0123456789", 1);
  if (digits == std::string_view::npos || digits == 1) return false;
  name.remove_prefix(digits);
  for (const std::string_view kind : {".range.stpsa", ".range.stlcp"}) {
    if (name.starts_with(kind)) {
      return name == kind || name.ends_with(kPartSuffix);
    }
  }
  return false;
}

}  // namespace

uint64_t RangePlan::suffixes() const {
  return std::accumulate(
      ranges.begin(), ranges.end(), uint64_t{0},
      [](uint64_t sum, const PlannedRange& r) { return sum + r.suffixes; });
}

std::string planPath(const std::string& output) {
  return output + ".ranges.tsv";
}

std::string partPath(const std::string& output, size_t range) {
  return fmt::format("{}_{}.range", output, range);
}

RangePlan readPlan(const std::string& output) {
  const std::string path = planPath(output);
  if (!isThere(path)) {
    throw FileError(path, "there is no plan; palvor-kit plan makes it");
  }
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  const std::string_view text(bytes.data(), bytes.size());
  std::vector<std::string_view> lines = split(text, '\n');
  const auto refuse = [&](size_t line) {
    throw FileError(path, fmt::format("line {} is not that of a plan; plan "
                                      "again with --force",
                                      line));
  };
  if (!lines.back().empty()) refuse(lines.size());
  lines.pop_back();
  RangePlan plan;
  if (lines.empty() || !lines[0].starts_with(kCollection)) refuse(1);
  plan.collection = lines[0].substr(kCollection.size());
  if (lines.size() < 2 || lines[1] != kFields) refuse(2);
  for (size_t l = 2; l < lines.size(); l++) {
    const auto range = rangeOf(lines[l], plan.ranges);
    if (!range) refuse(l + 1);
    plan.ranges.push_back(*range);
  }
  if (plan.ranges.empty() || plan.ranges.back().high) refuse(lines.size() + 1);
  return plan;
}

void writePlan(const std::string& output, const RangePlan& plan) {
  OutputFile file(planPath(output));
  const std::string lines = linesOf(plan);
  file.write(lines.data(), lines.size());
  file.commit();
}

PartState stateOfPart(const std::string& output, const RangePlan& plan,
                      size_t range) {
  const std::string path = partPath(output, range);
  if (!isThere(path + ".stpsa")) return PartState::kMissing;
  const uint64_t suffixes = plan.ranges[range].suffixes;
  const bool whole = hasSize(path + ".stpsa", sizeof(Suffix) * suffixes) &&
                     hasSize(path + ".stlcp", sizeof(LcpEntry) * suffixes);
  return whole ? PartState::kWhole : PartState::kDamaged;
}

void removePlan(const std::string& output) {
  removeFile(planPath(output));
  const fs::path base(output);
  std::vector<fs::path> parts;
  std::error_code failure;
  fs::directory_iterator entry(base.parent_path(), failure);
  while (!failure && entry != fs::directory_iterator()) {
    if (isOfPart(entry->path().filename().string(), base.filename().string())) {
      parts.push_back(entry->path());
    }
    entry.increment(failure);
  }
  if (failure && failure != std::errc::no_such_file_or_directory) {
    throw FileError(base.parent_path().string(), failure.message());
  }
  for (const fs::path& part : parts) removeFile(part.string());
}

}  // namespace kit
