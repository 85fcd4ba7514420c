#include "targets.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/report.h"
#include "kit/commands.h"
#include "merge_results.h"
#include "palvor/merge.h"
#include "watch.h"

namespace {

using Words = std::vector<std::string>;

// The values of -n by a byte's low four bits, and what its high four choose.
// Small buffers, so that small cases fill them more than once.
constexpr const char* kMostNodes[] = {nullptr, "1",  "2",  "3",   "4",  "5",
                                      "6",     "7",  "8",  "9",   "11", "16",
                                      "23",    "32", "64", "1000"};
constexpr std::pair<const char*, const char*> kBuffers[] = {
    {"-M", "4096"}, {"-M", "15"},  {"-M", "16"},  {"-M", "32"},
    {"-M", "48"},   {"-M", "64"},  {"-M", "80"},  {"-M", "96"},
    {"-M", "112"},  {"-M", "128"}, {"-M", "512"}, {nullptr, nullptr},
    {"-m", "64"},   {"-m", "128"}, {"-m", "200"}, {"-m", "1000"}};
static_assert(std::size(kMostNodes) == 16 && std::size(kBuffers) == 16);

std::vector<char*> pointersTo(Words& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Runs the merge as palvor does, but that memory which is not there is a
// finding. Sets `options` to what the words say. `caseBytes` are those of the
// case.
int runPalvor(Words words, size_t caseBytes, palvor::MergeOptions& options) {
  words.insert(words.begin(), "palvor");
  std::vector<char*> pointers = pointersTo(words);
  try {
    const cli::Arguments arguments =
        cli::scanArguments(static_cast<int>(words.size()), pointers.data());
    if (!arguments.quiet) cli::sayOptions(arguments);
    options = cli::mergeOptionsOf(arguments);
    cli::Report report(arguments.quiet, "");
    const palvor::MergeReport merged = palvor::merge(options, report);
    report.finished(merged);
    testRequest(merged.memory, caseBytes);
    return 0;
  } catch (const palvor::Error& error) {
    cli::sayError(error);
    return 1;
  } catch (const std::bad_alloc&) {
    require(false, "a case asks for more memory than there is");
  } catch (const std::length_error&) {
    require(false, "a case asks for more memory than there can be");
  }
  return 1;
}

// Runs one command as palvor-kit's `main` does, but that memory which is not
// there is a finding: cases are small.
int runKit(void (*add)(CLI::App&), Words arguments) {
  arguments.insert(arguments.begin(), "palvor-kit");
  CLI::App app("", "palvor-kit");
  app.require_subcommand(1);
  add(app);
  try {
    app.parse(static_cast<int>(arguments.size()), pointersTo(arguments).data());
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 1;
  } catch (const std::bad_alloc&) {
    require(false, "a case asks for more memory than there is");
  } catch (const std::length_error&) {
    require(false, "a case asks for more memory than there can be");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "palvor-kit: error: %s\n", error.what());
    return 1;
  }
  return 0;
}

void addFlags(Words& words, uint8_t byte, const Words& flags) {
  for (size_t i = 0; i < flags.size(); i++) {
    if (bitOf(byte, static_cast<int>(i))) words.push_back(flags[i]);
  }
}

int merge(FuzzInput& input, const CaseFolder& folder, bool toArray) {
  Words words = {folder.root(), "x"};
  addFlags(words, input.takeByte(),
           {"-Z", "-U", "-H", "-f", "-z", "-q", "-X", toArray ? "-l" : "-R"});
  const uint8_t sizes = input.takeByte();
  if (const char* nodes = kMostNodes[sizes & 15]) {
    words.insert(words.end(), {"-n", nodes});
  }
  if (const auto& [letter, value] = kBuffers[sizes >> 4]; letter != nullptr) {
    words.insert(words.end(), {letter, value});
  }
  const uint8_t more = input.takeByte();
  if (bitOf(more, 0)) words.emplace_back("-C");
  if (const int cap = more >> 1 & 3; cap != 0) {
    words.insert(words.end(), {"-N", std::to_string(cap)});
  }
  if (toArray) words.emplace_back("-a");
  folder.fill(input);
  palvor::MergeOptions options;
  const int status = runPalvor(words, input.size(), options);
  if (status == 0) {
    (toArray ? testMergedArray : testMergedTrees)(folder, options);
  }
  return status;
}

int mergeToArray(FuzzInput& input, const CaseFolder& folder) {
  return merge(input, folder, true);
}

int mergeToTrees(FuzzInput& input, const CaseFolder& folder) {
  return merge(input, folder, false);
}

// Merges a folder that must be all right, to an array or to small trees, and
// checks what comes out.
void testMerge(const CaseFolder& folder, size_t caseBytes, bool toTrees,
               const Words& mergeOptions, const Words& checkOptions) {
  Words words = {folder.root(), "x", "-p", "y", "-q", "-M", "4096"};
  words.insert(words.end(), mergeOptions.begin(), mergeOptions.end());
  const Words mode = toTrees ? Words{"-n", "64"} : Words{"-a", "-l"};
  words.insert(words.end(), mode.begin(), mode.end());
  palvor::MergeOptions options;
  require(runPalvor(words, caseBytes, options) == 0, "the merge failed");
  // Without suffixes there is no tree, and without a tree check has no proof.
  if (!toTrees || !folder.read("y.ST/y.stdiv").empty()) {
    words = {"check", folder.root(), "x", "-p", "y"};
    words.insert(words.end(), checkOptions.begin(), checkOptions.end());
    require(runKit(kit::addCheck, words) == 0, "the merge is not all right");
  }
}

int check(FuzzInput& input, const CaseFolder& folder) {
  Words words = {"check", folder.root(), "x"};
  const uint8_t options = input.takeByte();
  addFlags(words, options, {"--all", "--json", "-z"});
  folder.fill(input);
  const int status = runKit(kit::addCheck, words);
  // With -z the merge refuses some partitions that check can make out.
  if (status == 0 && !bitOf(options, 2)) {
    testMerge(folder, input.size(), bitOf(options, 3), {}, {});
  }
  return status;
}

int view(FuzzInput& input, const CaseFolder& folder) {
  Words words = {"view"};
  const uint8_t options = input.takeByte();
  const std::string from = std::to_string(input.takeByte());
  const std::string count = std::to_string(input.takeByte());
  const bool dot = bitOf(options, 1);
  addFlags(words, options, {"--json", "--dot"});
  if (bitOf(options, 2)) {
    words.insert(words.end(), {"--data", folder.path("x.ST")});
  }
  if (bitOf(options, 3)) {
    words.insert(words.end(), {"--from", from, "--count", count});
  }
  for (const std::string& file : folder.fill(input)) {
    if (!dot || file.ends_with(".stree")) words.push_back(file);
  }
  return runKit(kit::addView, words);
}

int prepare(FuzzInput& input, const CaseFolder& folder) {
  const uint8_t options = input.takeByte();
  Words words = {"prepare", "-o", folder.root(), "-p", "x"};
  addFlags(words, options, {"--lcp", "--zero-origin"});
  if (bitOf(options, 2)) words.insert(words.end(), {"--psa-per", "record"});
  constexpr const char* kAmbiguous[] = {"split", "skip-record", "error",
                                        "split"};
  words.insert(words.end(), {"--ambiguous", kAmbiguous[options >> 3 & 3]});
  folder.write("genome", input.takeRest());
  words.push_back(folder.path("genome"));
  if (bitOf(options, 5)) words.push_back(folder.path("genome"));
  const int status = runKit(kit::addPrepare, words);
  if (status == 0) {
    Words merging;
    addFlags(merging, options, {"-Z", "-z"});
    testMerge(folder, input.size(), bitOf(options, 6), merging,
              bitOf(options, 1) ? Words{"-z"} : Words{});
  }
  return status;
}

// A table of as many inputs as the lengths file has, each of a file of its own;
// with both strands, each two.
void writeInputTable(const CaseFolder& folder, bool bothStrands) {
  const std::string lengths = folder.read("x.ST/x.stlengths");
  std::string table;
  for (size_t i = 0; 4 * i + 4 <= lengths.size(); i++) {
    uint32_t length = 0;
    std::memcpy(&length, lengths.data() + 4 * i, 4);
    const size_t file = bothStrands ? i / 2 : i;
    const bool reverse = bothStrands && i % 2 == 1;
    table += std::to_string(i) + "\t" + std::to_string(i) + "\tf" +
             std::to_string(file) + "\ts\t0\t" + std::to_string(length) +
             (reverse ? "\t-\n" : "\t+\n");
  }
  folder.write("x.ST/x.inputs.tsv", table);
}

int answer(FuzzInput& input, const CaseFolder& folder) {
  const uint8_t options = input.takeByte();
  const unsigned number = input.takeByte();
  folder.fill(input);
  writeInputTable(folder, bitOf(options, 3));
  const auto words = [&](const char* command, const Words& more) {
    Words result = {command, folder.root(), "x"};
    result.insert(result.end(), more.begin(), more.end());
    if (bitOf(options, 4)) result.emplace_back("--json");
    return result;
  };
  const unsigned variant = options >> 5 & 3;
  const std::string k = std::to_string(1 + number);
  const std::string few = std::to_string(1 + number % 8);
  switch (options & 7) {
    case 0:
      return runKit(kit::addPangenome, words("pangenome", {"--max-k", k}));
    case 1: {
      // Letters that stand for several bases are refused as a pattern.
      folder.write("query", variant == 0 ? ">q\nCCGATTTTAAAC\n"
                                         : ">q\nGATTACANNCCGATTTTAAAC\n");
      const Words more[] = {
          {"A", "GAT", "TTTTTTTTTTTTTTTTTTTTA", "-f", folder.path("query")},
          {"C", "CG", "--count"},
          {"GATTACA", "A", "--genomes"},
          {"--mem", few, "-f", folder.path("query")}};
      return runKit(kit::addFind, words("find", more[variant]));
    }
    case 2:
      return runKit(kit::addDistance, words("distance", {"-k", k, "--acs"}));
    case 3:
      return runKit(
          kit::addShared,
          words("shared",
                variant == 0 ? Words{} : Words{"--mums", "--min-length", few}));
    case 4:
      return runKit(
          kit::addMarkers,
          words("markers", variant == 0 ? Words{"--unique"}
                                        : Words{"--in", "f0", "--out", "f1"}));
    case 5: {
      constexpr const char* kArrays[] = {"bwt", "sa", "lcp", "da"};
      return runKit(kit::addExport, words("export", {kArrays[variant]}));
    }
    case 6:
      return runKit(kit::addReport,
                    {"report", folder.root(), "x", "--max-k", k, "-k", few,
                     "--page", folder.path("page.html")});
    default: {
      Words merging = words("merge", {"--pangenome", "-", "--max-k", k,
                                      "--ranges", few, "-j", "2"});
      addFlags(merging, static_cast<uint8_t>(variant), {"-Z", "-z"});
      return runKit(kit::addMerge, merging);
    }
  }
}

constexpr std::pair<const char*, Target> kTargets[] = {
    {"array", mergeToArray}, {"tree", mergeToTrees}, {"check", check},
    {"view", view},          {"prepare", prepare},   {"answer", answer},
};

}  // namespace

Target findTarget(const std::string& name) {
  for (const auto& [known, target] : kTargets) {
    if (name == known) return target;
  }
  return nullptr;
}
