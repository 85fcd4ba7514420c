// palvor-kit prepare: from sequence files to a data folder.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "kit/commands.h"
#include "kit/data_folder.h"
#include "kit/empty_folders.h"
#include "kit/manifest.h"
#include "kit/needs.h"
#include "kit/ordered_checksum.h"
#include "kit/preparation.h"
#include "kit/psa_source.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

enum class PsaPer { kFile, kRecord };
enum class Strands { kForward, kBoth };

struct PrepareOptions {
  std::string directory;
  std::string prefix;
  std::vector<std::string> files;
  PsaPer psaPer = PsaPer::kFile;
  Strands strands = Strands::kForward;
  Ambiguous ambiguous = Ambiguous::kSplit;
  bool withLcp = false;
  bool zeroOrigin = false;
  bool force = false;
  bool forceSpace = false;
  int jobs = 1;
  uint64_t memory = std::numeric_limits<uint64_t>::max();  // bytes
};

// ": 12 N, 3 R"
std::string listed(const LetterCounts& letters) {
  std::string list;
  for (size_t letter = 0; letter < letters.size(); letter++) {
    if (letters[letter] == 0) continue;
    list += list.empty() ? ": " : ", ";
    list += std::to_string(letters[letter]) + ' ';
    list += static_cast<char>(letter);
  }
  return list;
}

void report(const ReadingSummary& summary, const PrepareOptions& options) {
  const auto say = [](uint64_t count, const std::string& what) {
    if (count > 0) {
      std::fprintf(stderr, "palvor-kit: %llu %s\n",
                   static_cast<unsigned long long>(count), what.c_str());
    }
  };
  std::fprintf(stderr,
               "palvor-kit: %zu files, %llu records, %llu inputs, "
               "%llu characters\n",
               options.files.size(),
               static_cast<unsigned long long>(summary.records),
               static_cast<unsigned long long>(summary.inputs),
               static_cast<unsigned long long>(summary.characters));
  say(summary.ambiguous, "ambiguous characters (not A, C, G or T) found" +
                             listed(summary.letters));
  say(summary.splits, "inputs begun anew after ambiguous characters");
  say(summary.skippedRecords, "records with ambiguous characters left out");
  say(summary.emptyRecords, "records without any A, C, G or T left out");
  say(summary.emptyFiles, "files gave no input, and have no suffix array");
}

// A word that a shell takes as it stands.
std::string quoted(const std::string& word) {
  constexpr const char* kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./"
      "-+,:=@%";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
    return word;
  }
  std::string result = "'";
  for (const char c : word) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + "'";
}

// Says what the run will need, and refuses it where the disk has not got that.
// Returns the number of characters to come, 0 if it cannot be told.
uint64_t stateNeeds(const PrepareOptions& options, const DataFolder& folder) {
  const std::optional<SizeEstimate> size = estimateSize(options.files);
  if (!size) return 0;
  const uint64_t strands = options.strands == Strands::kBoth ? 2 : 1;
  const uint64_t characters = strands * size->all;
  const uint64_t disk = characters * (options.withLcp ? 20 : 16) +
                        characters / 4 + 4096 * options.files.size();
  const uint64_t memory =
      std::min(options.memory,
               memoryNeed(strands * size->longest, characters, options.jobs));
  std::fprintf(stderr,
               "palvor-kit: about %s characters: %s on disk, %s of memory\n",
               roundNumber(characters).c_str(), roundBytes(disk).c_str(),
               roundBytes(memory).c_str());
  const std::optional<uint64_t> free = freeSpace(folder.path());
  if (free && *free < disk && !options.forceSpace) {
    throw std::runtime_error(folder.path() + ": No space left: about " +
                             roundBytes(disk) + " are needed, " +
                             roundBytes(*free) +
                             " are free; --force-space goes on");
  }
  return characters;
}

// How the run was called, as far as it decides what comes out.
std::string optionsText(const PrepareOptions& options) {
  std::string text =
      options.psaPer == PsaPer::kFile ? "psa-per file" : "psa-per record";
  text += options.strands == Strands::kBoth ? ", both strands" : ", forward";
  text += options.ambiguous == Ambiguous::kSplit        ? ", split"
          : options.ambiguous == Ambiguous::kSkipRecord ? ", skip-record"
                                                        : ", error";
  if (options.withLcp) text += ", lcp";
  if (options.zeroOrigin) text += ", zero-origin";
  std::string files;
  for (const std::string& file : options.files) {
    files += std::filesystem::path(file).filename().string() + '\0';
  }
  return text + ", files " + checksumOf(files.data(), files.size());
}

// Makes the folder ready: an empty one, or what an interrupted run has
// finished.
void openFolder(const DataFolder& folder, Manifest& manifest, bool force) {
  const bool whole = std::filesystem::exists(folder.path(".stlengths"));
  if (!force && !whole && manifest.resume()) {
    std::set<std::string> names = manifest.names();
    names.insert(folder.prefix() + ".manifest.tsv");
    folder.removeAllBut(names);
    return;
  }
  folder.create(force);
  manifest.begin();
}

// As far as that can be: why the run fails is of more use than why this does.
void removeAll(const DataFolder& folder) {
  try {
    folder.removeAllBut({});
  } catch (const std::exception&) {
  }
}

void prepare(const PrepareOptions& options) {
  const DataFolder folder(options.directory, options.prefix);
  EmptyFolders made(folder.path());
  Manifest manifest(folder.path(), folder.path(".manifest.tsv"),
                    optionsText(options));
  openFolder(folder, manifest, options.force);
  const PreparationPlan plan = {
      .files = options.files,
      .rules = {.ambiguous = options.ambiguous,
                .psaPerRecord = options.psaPer == PsaPer::kRecord,
                .bothStrands = options.strands == Strands::kBoth},
      .format = {options.withLcp, options.zeroOrigin},
      .jobs = options.jobs,
      .memory = options.memory,
      .characters = stateNeeds(options, folder)};
  ReadingSummary summary;
  size_t resumed = 0;
  {
    Preparation preparation(plan, folder, manifest);
    try {
      preparation.run();
    } catch (...) {
      // Nothing is done that could be resumed.
      if (manifest.empty()) removeAll(folder);
      throw;
    }
    summary = preparation.summary();
    resumed = preparation.resumed();
  }  // takes the progress line away
  made.keep();
  report(summary, options);
  if (resumed > 0) {
    std::fprintf(stderr,
                 "palvor-kit: %zu suffix arrays of an interrupted run stood, "
                 "and were not made again\n",
                 resumed);
  }
  std::printf("palvor %s %s -a -l%s%s\n", quoted(folder.directory()).c_str(),
              quoted(folder.prefix()).c_str(), options.zeroOrigin ? " -z" : "",
              options.withLcp ? " -Z" : "");
  finishOutput();
}

}  // namespace

void addPrepare(CLI::App& app) {
  auto options = std::make_shared<PrepareOptions>();
  CLI::App* command = app.add_subcommand(
      "prepare",
      "Turn FASTA or FASTQ files into a data folder, DIR/PREFIX.ST/, and print "
      "the palvor command that merges it.");
  command
      ->add_option("-o,--output", options->directory,
                   "directory of the data folder")
      ->type_name("DIR")
      ->required();
  command
      ->add_option("-p,--prefix", options->prefix,
                   "name of the data folder, and start of its files' names")
      ->type_name("PREFIX")
      ->required();
  command
      ->add_option("files", options->files,
                   "sequence files, plain or compressed; - is standard input")
      ->type_name("FASTA")
      ->required();
  command
      ->add_option("--psa-per", options->psaPer,
                   "one suffix array for each file, or each record")
      ->transform(CLI::CheckedTransformer(
                      std::map<std::string, PsaPer>{
                          {"file", PsaPer::kFile}, {"record", PsaPer::kRecord}})
                      .description(""))
      ->type_name("file|record")
      ->default_str("file");
  command
      ->add_option("--strands", options->strands,
                   "the inputs as they stand, or each followed by its reverse "
                   "complement as an input of its own")
      ->transform(CLI::CheckedTransformer(std::map<std::string, Strands>{
                                              {"forward", Strands::kForward},
                                              {"both", Strands::kBoth}})
                      .description(""))
      ->type_name("forward|both")
      ->default_str("forward");
  command
      ->add_option("--ambiguous", options->ambiguous,
                   "at characters other than A, C, G and T: split the input "
                   "string, skip the whole record, or stop")
      ->transform(
          CLI::CheckedTransformer(std::map<std::string, Ambiguous>{
                                      {"split", Ambiguous::kSplit},
                                      {"skip-record", Ambiguous::kSkipRecord},
                                      {"error", Ambiguous::kError}})
              .description(""))
      ->type_name("split|skip-record|error")
      ->default_str("split");
  command->add_flag("--lcp", options->withLcp,
                    "write LCP files too, for palvor's -Z");
  command->add_flag("--zero-origin", options->zeroOrigin,
                    "number the inputs from zero inside each suffix array, for "
                    "palvor's -z");
  command->add_option("-j,--jobs", options->jobs, "threads that share the work")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  command
      ->add_option("--memory", options->memory,
                   "memory to do with, such as 4G: longer texts are gone "
                   "through several times")
      ->transform(CLI::AsSizeValue(false))
      ->type_name("BYTES");
  command->add_flag("--force-space", options->forceSpace,
                    "go on where the disk seems too small");
  command->add_flag("--force", options->force,
                    "replace all files of this prefix in the data folder, "
                    "merged results included");
  command->callback([options] { prepare(*options); });
}

}  // namespace kit
