// palvor-kit check: proves a data folder and what palvor made of it, from the
// definitions and without the merge's code.

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "kit/check_arrays.h"
#include "kit/check_trees.h"
#include "kit/checked_strings.h"
#include "kit/commands.h"
#include "kit/fault_log.h"
#include "kit/progress.h"
#include "kit/record_file.h"
#include "kit/suffix_run.h"
#include "kit/table_printer.h"
#include "kit/workers.h"

namespace kit {
namespace {

struct CheckOptions {
  std::string inputdir;
  std::string prefix;
  std::string odir, opfx, sdir, spfx;  // as palvor's; empty: not given
  bool zeroOrigin = false;
  bool goOn = false;
  bool json = false;
  int jobs = 1;
};

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
    progress_.show("palvor-kit: checking " + what_ + ", " +
                   std::to_string(percent) + "%");
  }

 private:
  std::mutex mutex_;
  Progress progress_;
  std::string what_;
  uint64_t total_ = 0;
  uint64_t done_ = 0;
};

// The suffix arrays that a data folder should hold.
std::vector<ArrayToCheck> listArrays(const CheckOptions& options,
                                     const std::string& sarrayFolder,
                                     const CheckedStrings& strings,
                                     FaultLog& faults) {
  const std::string sarrayBase = sarrayFolder + options.spfx;
  const std::string partsPath = sarrayFolder + options.prefix + ".stplengths";
  std::vector<uint32_t> inputs(strings.count(), 1);  // per array
  if (std::filesystem::exists(partsPath) &&
      std::filesystem::file_size(partsPath) >= 4) {
    inputs = RecordFile<uint32_t>(partsPath).read(0, UINT64_MAX);
  }
  std::vector<ArrayToCheck> arrays;
  uint64_t first = 0;
  for (size_t j = 0; j < inputs.size(); j++) {
    const uint64_t end = first + inputs[j];
    if (end > strings.count()) break;
    arrays.push_back({sarrayBase + "_" + std::to_string(j),
                      static_cast<uint32_t>(first), static_cast<uint32_t>(end),
                      options.zeroOrigin ? static_cast<uint32_t>(first) : 0});
    first = end;
  }
  if (arrays.size() != inputs.size() || first != strings.count()) {
    faults.add(partsPath, "the partitions do not cover the " +
                              std::to_string(strings.count()) +
                              " inputs just once");
  }
  return arrays;
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
    checkArray(arrays[j], strings, met, faults, std::ref(advance));
    return true;
  });
}

bool holdsSomething(const std::string& path) {
  return std::filesystem::exists(path) && std::filesystem::file_size(path) > 0;
}

// Checks everything; returns what was found to check, in words.
std::string checkAll(const CheckOptions& options, FaultLog& faults) {
  Advance advance;
  const std::string base =
      options.inputdir + options.prefix + ".ST/" + options.prefix;
  const CheckedStrings strings(base, faults);
  const std::string sarrayFolder = options.sdir + options.spfx + ".ST/";
  const auto arrays = listArrays(options, sarrayFolder, strings, faults);
  advance.begin("the suffix arrays", strings.total());
  checkInputArrays(arrays, strings, faults, advance, options.jobs);

  const std::string output =
      options.odir + options.opfx + ".ST/" + options.opfx;
  std::string found = std::to_string(strings.count()) + " inputs, " +
                      std::to_string(arrays.size()) + " suffix arrays";
  const bool array = std::filesystem::exists(output + ".stpsa");
  const bool trees = holdsSomething(output + ".stdiv");
  if (array) {
    MetSuffixes met(strings);
    advance.begin("the merged array", strings.total());
    checkArray({output, 0, strings.count(), 0}, strings, met, faults,
               std::ref(advance));
    found += ", the merged array";
    if (std::filesystem::exists(output + ".stlcp")) found += " with its LCPs";
  }
  if (trees) {
    MetSuffixes met(strings);
    advance.begin("the trees", strings.total());
    checkTrees(output, strings, met, faults, std::ref(advance));
    found += ", the suffix tree partitions";
  }
  if (!array && !trees) {
    faults.add(output, "neither a merged array (.stpsa) nor trees (.stdiv)");
  }
  return found;
}

void check(CheckOptions options) {
  const auto orDefault = [](std::string& text, const std::string& otherwise) {
    if (text.empty()) text = otherwise;
  };
  orDefault(options.odir, options.inputdir);
  orDefault(options.sdir, options.inputdir);
  orDefault(options.opfx, options.prefix);
  orDefault(options.spfx, options.prefix);

  FaultLog faults(options.goOn, options.json);
  std::string found;
  try {
    found = checkAll(options, faults);
  } catch (const CheckStopped&) {
    finishOutput();
    throw std::runtime_error("stopped at the first fault (see --all)");
  }
  if (options.json) {
    std::printf("{\"faults\":%llu,\"checked\":%s}\n",
                static_cast<unsigned long long>(faults.count()),
                jsonText(found).c_str());
  } else if (faults.count() == 0) {
    std::printf("all right: %s\n", found.c_str());
  }
  finishOutput();
  if (faults.count() > 0) {
    throw std::runtime_error(std::to_string(faults.count()) + " faults found");
  }
}

}  // namespace

void addCheck(CLI::App& app) {
  auto options = std::make_shared<CheckOptions>();
  CLI::App* command = app.add_subcommand(
      "check",
      "Prove a data folder and what palvor made of it, a merged array, suffix "
      "tree partitions or both, from the definitions. Exit status 0 only if "
      "all is right.");
  command
      ->add_option("inputdir", options->inputdir,
                   "palvor's input folder, with its trailing /")
      ->required();
  command->add_option("prefix", options->prefix, "palvor's input file prefix")
      ->required();
  command->add_option("-o", options->odir, "output folder, as palvor's -o");
  command->add_option("-p", options->opfx, "output prefix, as palvor's -p");
  command->add_option("-S", options->sdir,
                      "folder of the suffix arrays, as palvor's -S");
  command->add_option("-s", options->spfx,
                      "prefix of the suffix arrays, as palvor's -s");
  command->add_flag("-z", options->zeroOrigin,
                    "inputs are numbered from zero in every suffix array");
  command->add_flag("--all", options->goOn,
                    "report all faults, instead of stopping at the first");
  command->add_flag("--json", options->json, "report as JSON lines");
  command
      ->add_option("-j,--jobs", options->jobs, "suffix arrays to check at once")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  command->callback([options] { check(*options); });
}

}  // namespace kit
