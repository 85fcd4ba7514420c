#include "kit/build/build_stages.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>

#include "kit/build/checksums.h"
#include "kit/check/check.h"
#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/input_table.h"
#include "kit/merge/merge.h"
#include "kit/message.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

// Ranges begin trees of their own: so long ones that this costs nothing, and
// so many that threads even out, whatever their number, so that the same trees
// come out.
constexpr uint64_t kTreeRange = 1 << 21;  // suffixes
constexpr uint64_t kMostTreeRanges = 256;

double secondsSince(std::chrono::steady_clock::time_point begun) {
  const auto spent = std::chrono::steady_clock::now() - begun;
  return std::chrono::duration<double>(spent).count();
}

// Adds what the work takes, in seconds.
template <typename Work>
void timed(double& seconds, Work work) {
  const auto begun = std::chrono::steady_clock::now();
  work();
  seconds = secondsSince(begun);
}

// What may change in a file that is read twice.
std::vector<fs::file_time_type> timesOf(const std::vector<std::string>& files) {
  std::vector<fs::file_time_type> times;
  for (const std::string& file : files) {
    std::error_code failure;
    times.push_back(fs::last_write_time(file, failure));
  }
  return times;
}

}  // namespace

ProgressStyle buildProgress(const std::string& stage, bool quiet) {
  using namespace std::chrono_literals;
  return {.stage = stage, .patience = 2s, .plainEvery = 30s, .silent = quiet};
}

ProgressStyle BuildStages::progress(int stage) const {
  return buildProgress(
      fmt::format("stage {} of {}, ", stage, options_.check ? 4 : 3),
      options_.quiet);
}

void BuildStages::say(const std::string& text) const {
  if (!options_.quiet) kit::say(text);
}

void BuildStages::save() const {
  writeResultManifest(manifest_, folder_.path(kUnfinishedManifest));
}

void BuildStages::run(uint64_t characters) {
  RunFigures& run = manifest_.run;
  if (!sumsStand()) {
    manifest_.outputs.clear();
    manifest_.checked.clear();
    save();
    timed(run.prepare, [&] { prepare(characters); });
    timed(run.merge, [&] { merge(); });
    timed(run.checksums, [&] { sum(); });
    save();
  }
  if (options_.check && manifest_.checked.empty()) {
    timed(run.check, [&] { check(); });
    save();
  }
}

// Whether the data folder is complete, and as an earlier run has left it.
bool BuildStages::sumsStand() {
  if (manifest_.outputs.empty()) return false;
  try {
    const std::vector<StoredFile> found =
        sumFiles(folder_.path(""), namesOf(manifest_.outputs),
                 {means_.jobs, "testing what stands", progress(3)});
    const auto [other, expected] =
        std::ranges::mismatch(found, manifest_.outputs);
    if (other == found.end()) {
      say(
          fmt::format("prepared and merged already: {} files, whose checksums "
                      "stand",
                      found.size()));
      return true;
    }
    say(fmt::format("{} is not as it was written: made again", other->file));
  } catch (const FileError& error) {
    say(fmt::format("{}: made again", error.what()));
  }
  return false;
}

void BuildStages::prepare(uint64_t characters) {
  // Without its lengths file a folder is one to go on with.
  removeFile(folder_.dataBase() + ".stlengths");
  const PrepareOptions options = {
      .directory = folder_.path(),
      .prefix = kResultPrefix,
      .files = options_.files,
      .rules = {.bothStrands = options_.bothStrands},
      .format = {},
      .ownFolder = true,
      .jobs = means_.jobs,
      .memory = means_.memory};
  std::optional<PreparedBefore> before;
  if (before_ != nullptr) {
    before = {DataFolder(before_->folder.path(), kResultPrefix), {}};
    for (const ResultInput& input : before_->manifest.inputs) {
      before->files.push_back(input.stored.file);
    }
  }
  const auto times = timesOf(options_.files);
  const PrepareResult result = prepareFolder(options, characters, progress(1),
                                             before ? &*before : nullptr);
  if (!options_.quiet) sayWhatWasRead(result, options_.files.size());
  if (result.resumed > 0) manifest_.run.resumed = true;
  const auto now = timesOf(options_.files);
  for (size_t i = 0; i < times.size(); i++) {
    if (times[i] != now[i]) {
      throw FileError(options_.files[i], "changed while it was read");
    }
  }
  countInputs();
}

// Counts what came of each file.
void BuildStages::countInputs() {
  std::map<std::string, ResultInput*> byName;
  for (ResultInput& input : manifest_.inputs) {
    input.records = input.strings = input.characters = 0;
    byName[input.stored.file] = &input;
  }
  manifest_.suffixes = 0;
  const InputOrigin* last = nullptr;
  const std::vector<InputOrigin> origins =
      readInputTable(folder_.dataBase() + ".inputs.tsv");
  for (const InputOrigin& origin : origins) {
    ResultInput& input = *byName.at(nameInManifest(origin.file));
    const bool sameRecord = last != nullptr && last->file == origin.file &&
                            last->sequence == origin.sequence &&
                            (origin.reverse || last->offset < origin.offset);
    if (!sameRecord) input.records++;
    input.strings++;
    input.characters += origin.length;
    manifest_.suffixes += origin.length;
    last = &origin;
  }
}

void BuildStages::merge() {
  MergeCommand command;
  command.places.inputdir = folder_.path("");
  command.places.prefix = kResultPrefix;
  command.means = {means_.jobs, means_.memory};
  command.trees = options_.trees;
  if (command.trees) {
    command.ranges = static_cast<int>(std::clamp(
        manifest_.suffixes / kTreeRange, uint64_t{1}, kMostTreeRanges));
  }
  command.sayNeeds = false;
  command.progress = progress(2);
  kit::merge(command);
}

std::vector<std::string> BuildStages::dataFiles() const {
  const std::string name = std::string(kResultPrefix) + ".ST/";
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(folder_.path(name))) {
    files.push_back(name + entry.path().filename().string());
  }
  std::ranges::sort(files);
  return files;
}

void BuildStages::sum() {
  manifest_.outputs = sumFiles(folder_.path(""), dataFiles(),
                               {means_.jobs, "summing up", progress(3)});
  testTakenOver();
}

// What was taken over from another result must be as it was made.
void BuildStages::testTakenOver() const {
  if (before_ == nullptr) return;
  std::map<std::string, const StoredFile*> byName;
  for (const StoredFile& file : manifest_.outputs) byName[file.file] = &file;
  const std::string numbered = fmt::format("{0}.ST/{0}_", kResultPrefix);
  for (const StoredFile& file : before_->manifest.outputs) {
    if (!file.file.starts_with(numbered) || file.file.ends_with(".stree")) {
      continue;
    }
    const auto found = byName.find(file.file);
    if (found == byName.end() || *found->second != file) {
      throw FileError(before_->folder.path(file.file),
                      "not as it was when the result was built");
    }
  }
}

void BuildStages::check() {
  FaultLog faults({});
  std::string found;
  CheckOptions options;
  options.inputdir = folder_.path("");
  options.prefix = kResultPrefix;
  options.jobs = means_.jobs;
  options.progress = progress(4);
  try {
    checkFolder(options, faults, found);
  } catch (const CheckStopped&) {
    throw std::runtime_error(
        "the result is not right; --restart begins anew. If that does not help "
        "either, please report it");
  }
  manifest_.checked = found;
}

}  // namespace kit
