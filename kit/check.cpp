#include "kit/check.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "kit/check_arrays.h"
#include "kit/check_inputs.h"
#include "kit/check_leftovers.h"
#include "kit/check_trees.h"
#include "kit/checked_strings.h"
#include "kit/fault_log.h"
#include "kit/file_error.h"
#include "kit/json.h"
#include "kit/progress.h"
#include "kit/record_file.h"
#include "kit/standard_output.h"
#include "kit/suffix_run.h"
#include "kit/workers.h"

namespace kit {
namespace {

// Counts suffixes done, over all threads, for the progress.
class Advance {
 public:
  void begin(const std::string& what, uint64_t total) {
    what_ = what;
    total_ = total;
    done_ = 0;
  }

  void operator()(uint64_t suffixes) {
    const std::lock_guard lock(mutex_);
    done_ += suffixes;
    const uint64_t percent = total_ == 0 ? 100 : done_ * 100 / total_;
    progress_.show(fmt::format("palvor-kit: checking {}, {}%", what_, percent));
  }

 private:
  std::mutex mutex_;
  Progress progress_;
  std::string what_;
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

// Checks arrays side by side; each has inputs of its own.
void checkInputArrays(const std::vector<ArrayToCheck>& arrays,
                      const CheckedStrings& strings, FaultLog& faults,
                      Advance& advance, int jobs) {
  MetSuffixes met(strings);
  std::atomic<size_t> next = 0;
  runWorkers(jobs, [&] {
    const size_t j = next++;
    if (j >= arrays.size()) return false;
    checkPart(faults, [&] {
      checkArray(arrays[j], strings, met, faults, std::ref(advance));
    });
    return true;
  });
}

// Checks the merged array and the trees that begin with `output`; adds to
// `found` which were there.
void checkOutput(const std::string& output, const CheckedStrings& strings,
                 FaultLog& faults, Advance& advance, std::string& found) {
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
  checkPart(faults, [&] {
    MetSuffixes met(strings);
    advance.begin("the merged array", strings.total());
    checkArray({output, 0, strings.count(), 0}, strings, met, faults,
               std::ref(advance));
  });
}

// Checks everything; `found` becomes what there was to check, in words. Throws
// FileError if the strings cannot be had.
void checkAll(const CheckOptions& options, FaultLog& faults,
              std::string& found) {
  Advance advance;
  const std::string base =
      fmt::format("{0}{1}.ST/{1}", options.inputdir, options.prefix);
  const uint64_t most = options.nmerge == 0 ? UINT64_MAX : options.nmerge;
  const CheckedStrings strings(base, most, faults);
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
  checkInputArrays(arrays, strings, faults, advance, options.jobs);
  checkPart(faults, [&] {
    checkOutput(fmt::format("{0}{1}.ST/{1}", options.odir, options.opfx),
                strings, faults, advance, found);
  });
}

void orDefault(std::string& text, const std::string& otherwise) {
  if (text.empty()) text = otherwise;
}

}  // namespace

void check(CheckOptions options) {
  orDefault(options.odir, options.inputdir);
  orDefault(options.sdir, options.inputdir);
  orDefault(options.opfx, options.prefix);
  orDefault(options.spfx, options.prefix);

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
    checkAll(options, faults, found);
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
