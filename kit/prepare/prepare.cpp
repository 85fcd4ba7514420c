#include "kit/prepare/prepare.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "kit/amounts.h"
#include "kit/empty_folders.h"
#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/message.h"
#include "kit/ordered_checksum.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/manifest.h"
#include "kit/prepare/preparation.h"
#include "kit/prepare/size_estimate.h"
#include "kit/record_file.h"
#include "kit/shell_word.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

// ": 12 N, 3 R"
std::string listed(const LetterCounts& letters) {
  std::string list;
  for (size_t letter = 0; letter < letters.size(); letter++) {
    if (letters[letter] == 0) continue;
    list += fmt::format("{}{} {}", list.empty() ? ": " : ", ", letters[letter],
                        static_cast<char>(letter));
  }
  return list;
}

// Says what the run will need, and refuses it where the disk has not got that.
// Returns the number of characters to come, 0 if it cannot be told.
uint64_t stateNeeds(const PrepareOptions& options, const DataFolder& folder) {
  const std::optional<SizeEstimate> size = estimateSize(options.files);
  if (!size) return 0;
  const uint64_t strands = options.rules.bothStrands ? 2 : 1;
  const uint64_t characters = strands * size->all;
  const uint64_t disk = characters * (options.format.withLcp ? 20 : 16) +
                        characters / 4 + 4096 * options.files.size();
  const uint64_t memory =
      std::min(options.memory,
               memoryNeed(strands * size->longest, characters, options.jobs));
  say(fmt::format("about {} characters: {} on disk, {} of memory",
                  roundNumber(characters), roundBytes(disk),
                  roundBytes(memory)));
  const std::optional<uint64_t> free = freeSpace(folder.directory());
  if (free && *free < disk && !options.forceSpace) {
    throw FileError(folder.directory(),
                    fmt::format("No space left: about {} are needed, {} are "
                                "free; --force-space goes on",
                                roundBytes(disk), roundBytes(*free)));
  }
  return characters;
}

// How the run was called, as far as it decides what comes out.
std::string optionsText(const PrepareOptions& options,
                        const PreparedBefore* before) {
  const ReadingRules& rules = options.rules;
  std::string text = rules.psaPerRecord ? "psa-per record" : "psa-per file";
  text += rules.bothStrands ? ", both strands" : ", forward";
  text += rules.ambiguous == Ambiguous::kSplit        ? ", split"
          : rules.ambiguous == Ambiguous::kSkipRecord ? ", skip-record"
                                                      : ", error";
  if (options.format.withLcp) text += ", lcp";
  if (options.format.zeroOrigin) text += ", zero-origin";
  std::string files;
  const auto add = [&](const std::vector<std::string>& paths) {
    for (const std::string& file : paths) {
      files += std::filesystem::path(file).filename().string() + '\0';
    }
  };
  if (before != nullptr) add(before->files);
  add(options.files);
  return text + ", files " + checksumOf(files.data(), files.size());
}

// Makes the folder ready: an empty one, or what an interrupted run has
// finished.
void openFolder(const DataFolder& folder, Manifest& manifest,
                const PrepareOptions& options) {
  const bool whole = isThere(folder.path(".stlengths"));
  if (!options.force && !whole && manifest.resume()) {
    std::set<std::string> names = manifest.names();
    names.insert(folder.prefix() + ".manifest.tsv");
    folder.removeAllBut(names);
    return;
  }
  folder.create(options.force || options.ownFolder);
  manifest.begin();
}

// As far as that can be: why the run fails is of more use than why this does.
void removeAll(const DataFolder& folder) {
  try {
    folder.removeAllBut({});
  } catch (const std::exception&) {
  }
}

}  // namespace

PrepareResult prepareFolder(const PrepareOptions& options, uint64_t characters,
                            const ProgressStyle& progress,
                            const PreparedBefore* before) {
  const DataFolder folder(options.directory, options.prefix);
  EmptyFolders made(folder.path());
  Manifest manifest(folder.path(), folder.path(".manifest.tsv"),
                    optionsText(options, before));
  openFolder(folder, manifest, options);
  PreparationPlan plan = {.files = options.files,
                          .rules = options.rules,
                          .format = options.format,
                          .jobs = options.jobs,
                          .memory = options.memory,
                          .characters = characters,
                          .progress = progress};
  if (before != nullptr) {
    plan.base = readBase(before->folder);
    takeOver(before->folder, plan.base, folder);
    manifest.adopt(plan.base.arrays);
  }
  Preparation preparation(plan, folder, manifest);
  try {
    preparation.run();
  } catch (...) {
    // Nothing is done that could be resumed.
    if (manifest.empty()) removeAll(folder);
    throw;
  }
  made.keep();
  return {preparation.summary(), preparation.resumed()};
}

void sayWhatWasRead(const PrepareResult& result, size_t files) {
  const ReadingSummary& summary = result.summary;
  const auto count = [](uint64_t number, const std::string& what) {
    if (number > 0) say(fmt::format("{} {}", number, what));
  };
  say(fmt::format("{} files, {} records, {} inputs, {} characters", files,
                  summary.records, summary.inputs, summary.characters));
  count(summary.ambiguous, "ambiguous characters (not A, C, G or T) found" +
                               listed(summary.letters));
  count(summary.splits, "inputs begun anew after ambiguous characters");
  count(summary.skippedRecords, "records with ambiguous characters left out");
  count(summary.emptyRecords, "records without any A, C, G or T left out");
  count(summary.emptyFiles,
        "files gave no input, and have no suffix array, first " +
            summary.emptyFile);
  count(result.resumed,
        "suffix arrays of an interrupted run stood, and were not made again");
}

void prepare(const PrepareOptions& options) {
  const DataFolder folder(options.directory, options.prefix);
  sayWhatWasRead(prepareFolder(options, stateNeeds(options, folder)),
                 options.files.size());
  // A prefix of its own, so that no trees are left beside the array.
  writeOutput(fmt::format(
      "palvor {} {} -p {} -a -l{}{}\n", shellWord(folder.directory()),
      shellWord(folder.prefix()), shellWord(folder.prefix() + "-array"),
      options.format.zeroOrigin ? " -z" : "",
      options.format.withLcp ? " -Z" : ""));
  finishOutput();
}

}  // namespace kit
