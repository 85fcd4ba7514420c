#include "kit/check/check.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <optional>
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
#include "kit/folders.h"
#include "kit/json.h"
#include "kit/range_plan.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "kit/standard_output.h"
#include "kit/work_progress.h"
#include "kit/workers.h"

namespace kit {
namespace {

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

// A folder or prefix of other files, which is the inputs' unless it is given.
const std::string& orElse(const std::string& given,
                          const std::string& otherwise) {
  return given.empty() ? otherwise : given;
}

class FolderCheck {
 public:
  // Loads the strings.
  FolderCheck(const CheckOptions& options, FaultLog& faults, std::string& found)
      : options_(options),
        faults_(faults),
        found_(found),
        base_(dataBase(options.inputdir, options.prefix)),
        output_(dataBase(orElse(options.odir, options.inputdir),
                         orElse(options.opfx, options.prefix))),
        strings_(base_, options.nmerge == 0 ? UINT64_MAX : options.nmerge,
                 faults) {}

  void run();

 private:
  void checkInputs();
  void checkArrays(const std::vector<ArrayToCheck>& arrays,
                   const std::string& what);
  void checkOutput();
  void checkOutputTrees();
  void checkRange(size_t number);
  void checkPartSize(const std::string& path, size_t recordBytes,
                     uint64_t planned);

  // Does a part of the check. A file that cannot be read is a fault, and ends
  // that part.
  template <typename Part>
  void checkPart(Part part) {
    try {
      part();
    } catch (const FileError& error) {
      faults_.add(error.file(), error.reason());
    }
  }

  const CheckOptions& options_;
  FaultLog& faults_;
  std::string& found_;        // what was checked, in words
  const std::string base_;    // of the inputs' files, without the kind
  const std::string output_;  // of the merged ones
  const CheckedStrings strings_;
};

void FolderCheck::run() {
  if (options_.range) {
    found_ = fmt::format("{} inputs", strings_.count());
    checkPart([&] { checkRange(*options_.range); });
    return;
  }
  checkInputs();
  checkPart([&] { checkOutput(); });
}

// Checks the suffix arrays, and what the table of inputs says of them.
void FolderCheck::checkInputs() {
  const std::string& prefix = orElse(options_.spfx, options_.prefix);
  const std::string folder =
      fmt::format("{}{}.ST/", orElse(options_.sdir, options_.inputdir), prefix);
  const auto arrays =
      listArrays(fmt::format("{}{}.stplengths", folder, options_.prefix),
                 folder + prefix, options_.zeroOrigin, strings_, faults_);
  const bool some = strings_.count() < strings_.countInFolder();
  found_ = some ? fmt::format("the first {} of {} inputs", strings_.count(),
                              strings_.countInFolder())
                : fmt::format("{} inputs", strings_.count());
  found_ += fmt::format(", {} suffix arrays", arrays.size());

  const std::string table = base_ + ".inputs.tsv";
  checkPart([&] {
    if (isThere(table)) checkInputTable(table, arrays, strings_, faults_);
  });
  checkArrays(arrays, "checking the suffix arrays");
}

// One that is read but not proved right is looked through again, with a table
// of all suffixes, to tell what is wrong with it.
void FolderCheck::checkArrays(const std::vector<ArrayToCheck>& arrays,
                              const std::string& what) {
  std::vector<ArrayVerdict> verdicts;
  {
    WorkProgress progress(what, strings_.total(), options_.progress);
    verdicts = proveArrays(arrays, strings_, options_.jobs,
                           [&](uint64_t done) { progress.add(done); });
  }
  if (std::ranges::all_of(verdicts, &ArrayVerdict::isRight)) return;
  MetSuffixes met(strings_);
  std::atomic<size_t> next = 0;
  runWorkers(options_.jobs, [&] {
    const size_t j = next++;
    if (j >= arrays.size()) return false;
    if (verdicts[j].isRight) return true;
    checkPart([&] {
      if (verdicts[j].unread) throw *verdicts[j].unread;
      checkArray(arrays[j], strings_, met, faults_, [](uint64_t) {});
    });
    return true;
  });
}

// Checks the merged array and the trees, whichever are there.
void FolderCheck::checkOutput() {
  const bool array = isThere(output_ + ".stpsa");
  const bool lcps = isThere(output_ + ".stlcp");
  const bool trees = isThere(output_ + ".stdiv") &&
                     StoredBytes(output_ + ".stdiv", 1).records() > 0;
  if (array) found_ += ", the merged array";
  if (array && lcps) found_ += " with its LCPs";
  if (trees) found_ += ", the suffix tree partitions";
  if (!array && !trees) {
    faults_.add(output_, "neither a merged array (.stpsa) nor trees (.stdiv)");
  }
  checkPart([&] {
    checkLeftovers(output_, faults_);
    if (trees) checkOutputTrees();
  });
  if (array) {
    checkArrays({{output_, 0, strings_.count(), 0}},
                "checking the merged array");
  }
}

void FolderCheck::checkOutputTrees() {
  MetSuffixes met(strings_);
  WorkProgress progress("checking the trees", strings_.total(),
                        options_.progress);
  checkTrees(output_, strings_, met, faults_,
             [&](uint64_t done) { progress.add(done); });
}

// Checks the part of one range of the plan, and its seam with the one before.
void FolderCheck::checkRange(size_t number) {
  const RangePlan plan = readPlan(output_);
  if (plan.suffixes() != strings_.total()) {
    faults_.add(planPath(output_),
                fmt::format("{} suffixes, expected {}", plan.suffixes(),
                            strings_.total()));
  }
  if (number >= plan.ranges.size()) {
    throw std::runtime_error(fmt::format("there is no range {}, only 0 to {}",
                                         number, plan.ranges.size() - 1));
  }
  const PlannedRange& range = plan.ranges[number];
  const std::string path = partPath(output_, number);
  checkPartSize(path + ".stpsa", sizeof(Suffix), range.suffixes);
  checkPartSize(path + ".stlcp", sizeof(LcpEntry), range.suffixes);
  ArrayPiece piece = {{path, 0, strings_.count(), 0}, 0, range.suffixes};
  piece.low = range.low;
  piece.high = range.high;
  piece.before = lastBefore(output_, plan, number, strings_);
  WorkProgress progress(fmt::format("checking range {}", number),
                        range.suffixes, options_.progress);
  const auto fault = PieceProver(strings_).prove(
      piece, [&](uint64_t done) { progress.add(done); });
  if (fault) faults_.add(fault->file, fault->record, fault->reason);
  found_ += fmt::format(", range {} of {}, {} suffixes", number,
                        plan.ranges.size(), range.suffixes);
}

void FolderCheck::checkPartSize(const std::string& path, size_t recordBytes,
                                uint64_t planned) {
  const uint64_t records = StoredBytes(path, recordBytes).records();
  if (records == planned) return;
  faults_.add(path,
              fmt::format("{} records, planned are {}", records, planned));
}

}  // namespace

void checkFolder(const CheckOptions& options, FaultLog& faults,
                 std::string& found) {
  FolderCheck(options, faults, found).run();
}

void check(const CheckOptions& options) {
  FaultLog faults({options.goOn, options.json});
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
