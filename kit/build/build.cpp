#include "kit/build/build.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "kit/amounts.h"
#include "kit/build/build_means.h"
#include "kit/build/build_stages.h"
#include "kit/build/checksums.h"
#include "kit/build/interruption.h"
#include "kit/build/machine.h"
#include "kit/build/result_folder.h"
#include "kit/build/result_manifest.h"
#include "kit/build/unfinished_folder.h"
#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/message.h"
#include "kit/record_file.h"
#include "kit/shell_word.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

class Build {
 public:
  Build(const BuildOptions& options, std::optional<ResultBefore> before)
      : options_(options),
        before_(std::move(before)),
        result_(options.result),
        load_(loadOf(options)) {}

  void run();

 private:
  void plan();
  bool isThereAlready() const;
  void testFiles() const;
  bool isIn(const ResultInput& input) const;
  bool open(UnfinishedFolder& folder);
  void goOnWith(const ResultManifest& found);
  void stateNeeds(const ResultFolder& folder) const;
  void make(UnfinishedFolder& folder);
  void sayResult() const;
  void say(const std::string& text) const {
    if (!options_.quiet) kit::say(text);
  }

  const BuildOptions& options_;
  const std::optional<ResultBefore> before_;
  const ResultFolder result_;
  BuildLoad load_;
  BuildMeans means_;
  ResultManifest manifest_;
  const std::chrono::steady_clock::time_point begun_ =
      std::chrono::steady_clock::now();
};

void testNames(const std::vector<std::string>& files) {
  if (files.empty()) throw std::runtime_error("no sequence files");
  std::set<std::string> names;
  for (const std::string& file : files) {
    if (file == "-") {
      throw std::runtime_error(
          "sequences are read from files only: they are read twice");
    }
    if (!names.insert(nameInManifest(file)).second) {
      throw FileError(file, "is named twice");
    }
  }
}

// Bytes of the files that are there in no other place.
uint64_t bytesIn(const ResultFolder& folder) {
  uint64_t bytes = 0;
  std::error_code ignored;
  for (const auto& entry :
       fs::recursive_directory_iterator(folder.path(), ignored)) {
    if (entry.is_regular_file(ignored) && entry.hard_link_count(ignored) == 1) {
      bytes += entry.file_size(ignored);
    }
  }
  return bytes;
}

void Build::run() {
  testNames(options_.files);
  if (isThere(result_.path()) && !result_.isResult() &&
      (!fs::is_directory(result_.path()) || !fs::is_empty(result_.path()))) {
    throw FileError(result_.path(), "is there, and was not left by a build");
  }
  if (before_) {
    load_.before = before_->manifest.suffixes;
    load_.arrays += before_->manifest.inputs.size();
  }
  means_ = meansFor(options_, load_);
  plan();
  if (isThereAlready()) return;
  UnfinishedFolder folder(result_);
  if (!open(folder)) make(folder);
  manifest_.run.all =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begun_)
          .count();
  sayResult();
}

// What is to be made, as the manifest will say it.
void Build::plan() {
  manifest_.version = PALVOR_VERSION;
  manifest_.command = options_.command;
  manifest_.trees = options_.trees;
  manifest_.bothStrands = options_.bothStrands;
  if (before_) manifest_.inputs = before_->manifest.inputs;
  for (StoredFile& file :
       sumFiles("", options_.files,
                {means_.jobs, "reading", buildProgress("", options_.quiet)})) {
    file.file = nameInManifest(file.file);
    manifest_.inputs.push_back({.stored = std::move(file)});
  }
  manifest_.run.jobs = means_.jobs;
  manifest_.run.memory = means_.memory;
}

// Whether an input of the plan is in the result that is added to. Throws
// FileError if another one of its name is.
bool Build::isIn(const ResultInput& input) const {
  for (const ResultInput& old : before_->manifest.inputs) {
    if (old.stored == input.stored) return true;
    if (old.stored.file == input.stored.file) {
      throw FileError(input.stored.file,
                      fmt::format("{} has one of this name, of other contents",
                                  result_.path()));
    }
  }
  return false;
}

// Whether the result needs nothing to be done.
bool Build::isThereAlready() const {
  if (!result_.isResult()) return false;
  bool there = false;
  if (before_) {
    const auto fresh = static_cast<std::ptrdiff_t>(options_.files.size());
    const auto in =
        std::count_if(manifest_.inputs.end() - fresh, manifest_.inputs.end(),
                      [&](const ResultInput& input) { return isIn(input); });
    if (in != 0 && in != fresh) {
      throw FileError(result_.path(), "some of these files are in it already");
    }
    there = in == fresh;
  } else if (!options_.restart) {
    there = sameInputs(readResultManifest(result_.path(kResultManifest)),
                       manifest_);
    if (!there) {
      throw FileError(result_.path(),
                      "holds a result of other files, contents, options or "
                      "version; --restart replaces it");
    }
  }
  if (!there) return false;
  testFiles();
  // Of a run that ended just after it had replaced a result.
  if (result_.unfinished().isResult()) UnfinishedFolder(result_).remove();
  say(fmt::format("{} is there already, and whole", result_.path()));
  return true;
}

// Throws FileError if a file of the result is missing or cut short.
void Build::testFiles() const {
  const ResultManifest found =
      readResultManifest(result_.path(kResultManifest));
  for (const StoredFile& file : found.outputs) {
    const std::string fault = result_.faultOf(file.file, file.bytes);
    if (fault.empty()) continue;
    throw FileError(result_.path(file.file),
                    fault + (before_ ? "" : "; --restart makes it again"));
  }
}

// Takes over what an interrupted run has left in the folder. True if that was
// all but the name.
bool Build::open(UnfinishedFolder& folder) {
  if (folder.folder().isResult() && !options_.restart) {
    const ResultManifest whole =
        readResultManifest(folder.folder().path(kResultManifest));
    if (sameInputs(whole, manifest_)) {
      manifest_ = whole;
      folder.publish(manifest_);
      return true;
    }
    folder.clear();  // a result that has been replaced
  }
  if (options_.restart) folder.clear();
  if (const auto found = folder.found()) goOnWith(*found);
  return false;
}

void Build::goOnWith(const ResultManifest& found) {
  const std::string part = result_.unfinished().path();
  if (!samePlan(found, manifest_)) {
    throw FileError(part,
                    "was begun with other files, options or version; --restart "
                    "begins anew");
  }
  say(fmt::format("going on with {}, which an interrupted run has left", part));
  manifest_.run.resumed = true;
  bool same = true;
  for (size_t i = 0; i < found.inputs.size(); i++) {
    if (found.inputs[i].stored == manifest_.inputs[i].stored) continue;
    say(fmt::format("{} has changed: what was made of it is made again",
                    manifest_.inputs[i].stored.file));
    same = false;
  }
  if (!same) return;
  manifest_.inputs = found.inputs;
  manifest_.suffixes = found.suffixes;
  manifest_.outputs = found.outputs;
  manifest_.checked = found.checked;
}

// Says what the build will need, and refuses it where the disk has not got it.
void Build::stateNeeds(const ResultFolder& folder) const {
  if (load_.all() == 0) return;
  say(needsText(options_, load_, means_));
  const uint64_t need = diskNeed(options_, load_);
  const uint64_t there = bytesIn(folder);
  const auto free = freeSpace(folder.path());
  if (free && there < need && *free < need - there) {
    throw FileError(folder.path(),
                    fmt::format("No space left: about {} are needed, {} are "
                                "free",
                                roundBytes(need - there), roundBytes(*free)));
  }
}

void Build::make(UnfinishedFolder& folder) {
  const InterruptionNote note;
  try {
    stateNeeds(folder.folder());
    BuildStages(options_, means_, folder.folder(),
                before_ ? &*before_ : nullptr, manifest_)
        .run(load_.fresh);
    manifest_.run.all =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begun_)
            .count();
    manifest_.run.peakMemory = peakMemory();
    folder.publish(manifest_);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    // Worth keeping if there is a suffix array.
    const std::string listed = folder.folder().dataBase() + ".manifest.tsv";
    std::error_code ignored;
    if (!fs::exists(listed, ignored)) {
      folder.remove();
      throw;
    }
    throw std::runtime_error(
        fmt::format("{}\npalvor-kit: {} keeps what is done; the same command "
                    "goes on with it",
                    error.what(), folder.folder().path()));
  }
}

void Build::sayResult() const {
  if (options_.quiet) return;
  const std::string result = shellWord(result_.path());
  writeOutput(fmt::format(
      "{}: {} genomes, {} suffixes, {}\n", result_.path(), genomesOf(manifest_),
      manifest_.suffixes,
      manifest_.checked.empty() ? "not proved" : "proved to be right"));
  uint64_t bytes = 0;
  for (const StoredFile& file : manifest_.outputs) bytes += file.bytes;
  writeOutput(
      fmt::format("time {}, memory {}, disk {}\n", clockTime(manifest_.run.all),
                  roundBytes(manifest_.run.peakMemory), roundBytes(bytes)));
  if (manifest_.trees) {
    writeOutput(fmt::format("next: palvor-kit view {}\n", result));
  } else {
    writeOutput(
        fmt::format("next: palvor-kit find {0} GATTACAGATTACA\n"
                    "      palvor-kit pangenome {0}\n",
                    result));
  }
  finishOutput();
}

}  // namespace

void build(const BuildOptions& options) { Build(options, {}).run(); }

void addTo(const BuildOptions& options) {
  const ResultFolder folder(options.result);
  if (!folder.isResult()) {
    throw FileError(folder.path(), "no result of a build");
  }
  ResultBefore before = {folder,
                         readResultManifest(folder.path(kResultManifest))};
  BuildOptions all = options;
  all.trees = before.manifest.trees;
  all.bothStrands = before.manifest.bothStrands;
  Build(all, std::move(before)).run();
}

}  // namespace kit
