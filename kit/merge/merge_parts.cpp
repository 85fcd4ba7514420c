#include "kit/merge/merge_parts.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "kit/amounts.h"
#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/merge/array_output.h"
#include "kit/merge/collection_checksum.h"
#include "kit/merge/engine_error.h"
#include "kit/merge/range_sink.h"
#include "kit/merge/staged_slices.h"
#include "kit/message.h"
#include "kit/progress.h"
#include "kit/range_plan.h"
#include "kit/range_work.h"
#include "kit/record_file.h"
#include "palvor/range/cuts.h"
#include "palvor/range/ranges.h"

namespace kit {
namespace {

// What no other process on any machine is called.
std::string workerName() {
  std::array<char, 256> host = {};
  if (::gethostname(host.data(), host.size() - 1) != 0) host[0] = '\0';
  std::string name = fmt::format("{}-{}", host.data(), ::getpid());
  std::ranges::replace(name, '/', '-');
  return name;
}

RangePlan makePlan(const RangeMerger& merger, int ranges) {
  RangePlan plan;
  plan.collection = checksumOfCollection(merger);
  const std::vector<uint64_t> cuts =
      callEngine([&] { return palvor::chooseCuts(merger.files(), ranges); });
  const std::vector<int64_t> counts =
      callEngine([&] { return palvor::countSuffixes(merger.files(), cuts); });
  for (size_t r = 0; r < counts.size(); r++) {
    PlannedRange range;
    range.low = r == 0 ? 0 : cuts[r - 1];
    if (r < cuts.size()) range.high = cuts[r];
    range.suffixes = static_cast<uint64_t>(counts[r]);
    plan.ranges.push_back(range);
  }
  return plan;
}

// The slices of one range of a plan.
palvor::MergeRange cutOut(const RangeMerger& merger, const RangePlan& plan,
                          size_t number) {
  const PlannedRange& planned = plan.ranges[number];
  std::vector<uint64_t> cuts;
  if (planned.low != 0) cuts.push_back(planned.low);
  const size_t index = cuts.size();
  if (planned.high) cuts.push_back(*planned.high);
  palvor::MergeRange range = callEngine([&] {
    return std::move(
        palvor::cutRanges(merger.files(), merger.strings(), cuts)[index]);
  });
  if (static_cast<uint64_t>(range.suffixes()) != planned.suffixes) {
    throw FileError(
        planPath(merger.output()),
        fmt::format("range {} has {} suffixes, planned are {}: plan "
                    "again with --force",
                    number, range.suffixes(), planned.suffixes));
  }
  return range;
}

void copyInto(const OutputFile& to, uint64_t offset, const std::string& path) {
  constexpr uint64_t kBlock = 1 << 22;  // bytes
  const RecordFile<char> from(path);
  for (uint64_t at = 0; at < from.size(); at += kBlock) {
    const std::vector<char> block = from.read(at, kBlock);
    to.writeAt(offset + at, block.data(), block.size());
  }
}

// "3", "3 and 5", "3, 5 and 7 more"
std::string listed(const std::vector<size_t>& numbers) {
  constexpr size_t kListed = 5;
  std::string list = std::to_string(numbers[0]);
  for (size_t i = 1; i < numbers.size(); i++) {
    if (i == kListed) {
      return list + fmt::format(" and {} more", numbers.size() - i);
    }
    list +=
        (i + 1 == numbers.size() ? " and " : ", ") + std::to_string(numbers[i]);
  }
  return list;
}

void testAllWhole(const std::string& output, const RangePlan& plan) {
  std::vector<size_t> missing;
  for (size_t r = 0; r < plan.ranges.size(); r++) {
    const PartState state = stateOfPart(output, plan, r);
    if (state == PartState::kMissing) missing.push_back(r);
    if (state == PartState::kDamaged) {
      throw FileError(
          partPath(output, r) + ".stpsa",
          fmt::format("not whole, or its .stlcp is not: {} suffixes "
                      "are planned; palvor-kit merge --range {} "
                      "makes it again",
                      plan.ranges[r].suffixes, r));
    }
  }
  if (missing.empty()) return;
  throw std::runtime_error(
      fmt::format("{} of {} parts are missing: of range {}", missing.size(),
                  plan.ranges.size(), listed(missing)));
}

}  // namespace

void planMerge(const MergePlaces& places, int ranges, bool force) {
  const RangeMerger merger(places);
  const RangePlan plan = makePlan(merger, ranges);
  createFolders(merger.outputFolder());
  const std::string path = planPath(merger.output());
  const bool isThereYet = isThere(path);
  if (isThereYet && !force && readPlan(merger.output()) != plan) {
    throw FileError(path,
                    "another plan is there; --force replaces it, and removes "
                    "its parts");
  }
  if (!isThereYet || force) {
    removePlan(merger.output());
    writePlan(merger.output(), plan);
  }
  say(fmt::format("{} suffixes in {} ranges, {}, in {}",
                  roundNumber(plan.suffixes()), plan.ranges.size(),
                  isThereYet && !force ? "as planned before" : "planned",
                  path));
}

void mergePart(const PartCommand& command) {
  RangeMerger merger(command.places);
  const std::string& output = merger.output();
  const RangePlan plan = readPlan(output);
  testFresh(plan, merger);
  if (command.range >= plan.ranges.size()) {
    throw std::runtime_error(fmt::format("there is no range {}, only 0 to {}",
                                         command.range,
                                         plan.ranges.size() - 1));
  }
  if (stateOfPart(output, plan, command.range) == PartState::kWhole) {
    say(fmt::format("the part of range {} is there", command.range));
    return;
  }
  const MemoryShares shares =
      shareMemory({merger.stringBytes(), merger.files().count(), 3, 0},
                  command.places.readLcps, command.means);
  merger.load();
  merger.findLikes(command.means.memory - shares.total(1));
  auto range =
      std::make_shared<palvor::MergeRange>(cutOut(merger, plan, command.range));
  const auto count = static_cast<int64_t>(plan.ranges[command.range].suffixes);
  std::optional<StagedSlices> staged;
  if (!command.stage.empty()) {
    staged.emplace(command.stage, workerName(), merger, *range,
                   command.places.readLcps);
    merger.readArraysFrom(staged->place());
  }

  const std::string path = partPath(output, command.range);
  OutputFile suffixes(path + ".stpsa", workerName());
  OutputFile entries(path + ".stlcp", workerName());
  suffixes.allocate(sizeof(Suffix) * static_cast<uint64_t>(count));
  entries.allocate(sizeof(LcpEntry) * static_cast<uint64_t>(count));
  RangeBuffers buffers(shares.outputRecords);
  RangeWork work(fmt::format("merging range {}", command.range), 1,
                 static_cast<uint64_t>(count));
  RangeSink sink({suffixes, entries}, {0, count, range->entry}, buffers,
                 [&](uint64_t done) { work.advance(done); });
  merger.merge(range, shares, sink);
  if (readPlan(output) != plan) {
    throw FileError(planPath(output), "was replaced while range " +
                                          std::to_string(command.range) +
                                          " was merged");
  }
  entries.commit();
  suffixes.commit();
}

void joinParts(const MergePlaces& places, int jobs, bool keep) {
  const RangeMerger merger(places);
  const std::string& output = merger.output();
  const RangePlan plan = readPlan(output);
  testFresh(plan, merger);
  testAllWhole(output, plan);
  ArrayOutput array(output, plan.suffixes());
  std::vector<uint64_t> firsts = {0};
  for (const PlannedRange& range : plan.ranges) {
    firsts.push_back(firsts.back() + range.suffixes);
  }
  RangeWork work("joining", plan.ranges.size(), plan.suffixes());
  work.run(jobs, [&] {
    return [&](size_t r) {
      const std::string part = partPath(output, r);
      const auto& [suffixes, entries] = array.files();
      copyInto(suffixes, sizeof(Suffix) * firsts[r], part + ".stpsa");
      copyInto(entries, sizeof(LcpEntry) * firsts[r], part + ".stlcp");
      work.advance(plan.ranges[r].suffixes);
    };
  });
  array.commit();
  if (!keep) removePlan(output);
}

}  // namespace kit
