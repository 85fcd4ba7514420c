#include "kit/check/check.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "kit/check/array_proof.h"
#include "kit/check/check_arrays.h"
#include "kit/check/check_inputs.h"
#include "kit/check/check_leftovers.h"
#include "kit/check/check_trees.h"
#include "kit/check/checked_strings.h"
#include "kit/check/suffix_run.h"
#include "kit/fault_log.h"
#include "kit/file_error.h"
#include "kit/json.h"
#include "kit/progress.h"
#include "kit/range_plan.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "kit/standard_output.h"
#include "kit/workers.h"

namespace kit {
namespace {

// Counts suffixes done, over all threads, for the progress.
class Advance {
 public:
  explicit Advance(const ProgressStyle& style) : progress_(style) {}

  void begin(const std::string& what, uint64_t total) {
    what_ = what;
    total_ = total;
    done_ = 0;
    begun_ = std::chrono::steady_clock::now();
  }

  void operator()(uint64_t suffixes) {
    const std::lock_guard lock(mutex_);
    done_ += suffixes;
    const uint64_t percent = total_ == 0 ? 100 : done_ * 100 / total_;
    progress_.show(fmt::format("checking {}, {}%{}", what_, percent,
                               timeLeft(begun_, done_, total_)));
  }

 private:
  std::mutex mutex_;
  Progress progress_;
  std::string what_;
  std::chrono::steady_clock::time_point begun_;
  uint64_t total_ = 0;
  uint64_t done_ = 0;
};

// Does a part of the check. A file that cannot be read is a fault, and ends
// that part.
template <typename Part>
void checkPart(FaultLog& faults, Part part) {
  try {
    part();
  } catch (const FileError& error) {
    faults.add(error.file(), error.reason());
  }
}

// The suffix that the parts before a range end with, if there is one. Throws
// FileError if that part is not there.
std::optional<Place> lastBefore(const std::string& output,
                                const RangePlan& plan, size_t number,
                                const CheckedStrings& strings) {
  while (number > 0) {
    const uint64_t suffixes = plan.ranges[--number].suffixes;
    if (suffixes == 0) continue;
    const std::string path = partPath(output, number) + ".stpsa";
    const RecordFile<Suffix> file(path);
    const std::vector<Suffix> last = file.read(suffixes - 1, 1);
    if (last.empty()) throw FileError(path, "not whole");
    const Place place = {inputNumber(last[0]), last[0].pos};
    if (!strings.has(place))
      throw FileError(path, "its last record is no suffix");
    return place;
  }
  return {};
}

// Checks arrays. One that is not proved right is looked through again, with a
// table of all suffixes, to tell what is wrong with it.
void checkArrays(const std::vector<ArrayToCheck>& arrays,
                 const CheckedStrings& strings, FaultLog& faults,
                 Advance& advance, int jobs) {
  const std::vector<char> right =
      proveArrays(arrays, strings, jobs, std::ref(advance));
  if (std::ranges::find(right, 0) == right.end()) return;
  MetSuffixes met(strings);
  std::atomic<size_t> next = 0;
  runWorkers(jobs, [&] {
    const size_t j = next++;
    if (j >= arrays.size()) return false;
    if (right[j] != 0) return true;
    checkPart(faults, [&] {
      checkArray(arrays[j], strings, met, faults, [](uint64_t) {});
    });
    return true;
  });
}

// Checks the merged array and the trees that begin with `output`; adds to
// `found` which were there.
void checkOutput(const std::string& output, const CheckedStrings& strings,
                 FaultLog& faults, Advance& advance, int jobs,
                 std::string& found) {
  const bool array = isThere(output + ".stpsa");
  const bool lcps = isThere(output + ".stlcp");
  const bool trees = isThere(output + ".stdiv") &&
                     StoredBytes(output + ".stdiv", 1).records() > 0;
  if (array) found += ", the merged array";
  if (array && lcps) found += " with its LCPs";
  if (trees) found += ", the suffix tree partitions";
  if (!array && !trees) {
    faults.add(output, "neither a merged array (.stpsa) nor trees (.stdiv)");
  }
  checkPart(faults, [&] {
    checkLeftovers(output, faults);
    if (!trees) return;
    MetSuffixes met(strings);
    advance.begin("the trees", strings.total());
    checkTrees(output, strings, met, faults, std::ref(advance));
  });
  if (!array) return;
  advance.begin("the merged array", strings.total());
  checkArrays({{output, 0, strings.count(), 0}}, strings, faults, advance,
              jobs);
}

// Checks the part of one range of the plan, and its seam with the one before.
void checkRange(const std::string& output, size_t number,
                const CheckedStrings& strings, FaultLog& faults,
                Advance& advance, std::string& found) {
  const RangePlan plan = readPlan(output);
  if (plan.suffixes() != strings.total()) {
    faults.add(planPath(output), fmt::format("{} suffixes, expected {}",
                                             plan.suffixes(), strings.total()));
  }
  if (number >= plan.ranges.size()) {
    throw std::runtime_error(fmt::format("there is no range {}, only 0 to {}",
                                         number, plan.ranges.size() - 1));
  }
  const PlannedRange& range = plan.ranges[number];
  ArrayPiece piece = {
      {partPath(output, number), 0, strings.count(), 0}, 0, range.suffixes};
  piece.low = range.low;
  piece.high = range.high;
  for (const char* kind : {".stpsa", ".stlcp"}) {
    const size_t size = kind[3] == 'p' ? sizeof(Suffix) : sizeof(LcpEntry);
    const uint64_t records =
        StoredBytes(piece.array.path + kind, size).records();
    if (records != range.suffixes) {
      faults.add(
          piece.array.path + kind,
          fmt::format("{} records, planned are {}", records, range.suffixes));
    }
  }
  piece.before = lastBefore(output, plan, number, strings);
  advance.begin(fmt::format("range {}", number), range.suffixes);
  const auto fault = PieceProver(strings).prove(piece, std::ref(advance));
  if (fault) faults.add(fault->file, fault->record, fault->reason);
  found += fmt::format(", range {} of {}, {} suffixes", number,
                       plan.ranges.size(), range.suffixes);
}

void orDefault(std::string& text, const std::string& otherwise) {
  if (text.empty()) text = otherwise;
}

}  // namespace

void checkFolder(CheckOptions options, FaultLog& faults, std::string& found) {
  orDefault(options.odir, options.inputdir);
  orDefault(options.sdir, options.inputdir);
  orDefault(options.opfx, options.prefix);
  orDefault(options.spfx, options.prefix);

  Advance advance(options.progress);
  const std::string base =
      fmt::format("{0}{1}.ST/{1}", options.inputdir, options.prefix);
  const uint64_t most = options.nmerge == 0 ? UINT64_MAX : options.nmerge;
  const CheckedStrings strings(base, most, faults);
  const std::string output =
      fmt::format("{0}{1}.ST/{1}", options.odir, options.opfx);
  if (options.range) {
    found = fmt::format("{} inputs", strings.count());
    checkPart(faults, [&] {
      checkRange(output, *options.range, strings, faults, advance, found);
    });
    return;
  }
  const std::string arraysFolder =
      fmt::format("{}{}.ST/", options.sdir, options.spfx);
  const auto arrays = listArrays(
      fmt::format("{}{}.stplengths", arraysFolder, options.prefix),
      arraysFolder + options.spfx, options.zeroOrigin, strings, faults);
  const bool some = strings.count() < strings.countInFolder();
  found = some ? fmt::format("the first {} of {} inputs", strings.count(),
                             strings.countInFolder())
               : fmt::format("{} inputs", strings.count());
  found += fmt::format(", {} suffix arrays", arrays.size());

  const std::string table = base + ".inputs.tsv";
  checkPart(faults, [&] {
    if (isThere(table)) checkInputTable(table, arrays, strings, faults);
  });
  advance.begin("the suffix arrays", strings.total());
  checkArrays(arrays, strings, faults, advance, options.jobs);
  checkPart(faults, [&] {
    checkOutput(output, strings, faults, advance, options.jobs, found);
  });
}

void check(const CheckOptions& options) {
  FaultLog faults(options.goOn, options.json);
  std::string found;
  bool complete = false;
  const auto finish = [&] {
    if (options.json) {
      writeOutput(jsonLine({{"faults", faults.count()},
                            {"complete", complete},
                            {"checked", found}}));
    } else if (complete && faults.count() == 0) {
      writeOutput(fmt::format("all right: {}\n", found));
    }
    finishOutput();
  };
  try {
    checkFolder(options, faults, found);
    complete = true;
  } catch (const CheckStopped&) {
    finish();
    throw std::runtime_error("stopped at the first fault (see --all)");
  } catch (const FileError& error) {
    faults.note(error.file(), std::nullopt, error.reason());
    finish();
    throw std::runtime_error("the rest cannot be checked without that file");
  } catch (const std::exception&) {
    finish();
    throw;
  }
  finish();
  if (faults.count() > 0) {
    throw std::runtime_error(fmt::format("{} faults found", faults.count()));
  }
}

}  // namespace kit
