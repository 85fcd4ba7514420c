#include "cli/command.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>

#include "cli/arguments.h"
#include "cli/report.h"
#include "cli/usage.h"

namespace cli {
namespace {

void echoCommand(int argc, char** argv) {
  say("Command(%d): ", argc);
  for (int i = 0; i < argc; i++) std::fprintf(stderr, "%s ", argv[i]);
  std::fputc('\n', stderr);
  say("Version: %s\n", version());
}

// What may be wrong with the sizes of the buffers.
std::string oddBuffers(const Arguments& arguments) {
  std::string odd;
  for (const OddNumber& number : arguments.oddNumbers) {
    if (number.letter == 'm' || number.letter == 'M') {
      odd += "; " + number.told();
    }
  }
  return odd;
}

// A question for whoever gave a folder without its "/", and so named none.
std::string missingSlash(const palvor::DataPlace& place,
                         const std::string& file) {
  const std::string& folder = place.folder;
  const std::string data = place.prefix + ".ST";
  const bool named = file.starts_with(folder + data + "/");
  if (!named || folder.empty() || folder.ends_with('/')) return "";
  std::error_code ignored;
  return std::filesystem::is_directory(folder + "/" + data, ignored)
             ? "Did you mean " + folder + "/ ?"
             : "";
}

int runMerge(int argc, char** argv, const EngineChoice& choice) {
  const Arguments arguments = scanArguments(argc, argv);
  if (!arguments.quiet) sayOptions(arguments);
  palvor::MergeOptions options = mergeOptionsOf(arguments);
  options.processor = choice.processor;
  options.walkOnly = choice.walkOnly;
  Report report(arguments.quiet, oddBuffers(arguments));
  try {
    report.finished(palvor::merge(options, report));
    return 0;
  } catch (const palvor::Error& error) {
    std::string hint = missingSlash(options.input, error.file());
    if (hint.empty()) hint = missingSlash(options.arrays, error.file());
    sayError(error, hint);
    return 1;
  }
}

}  // namespace

int runCommand(int argc, char** argv, const EngineChoice& choice) {
  echoCommand(argc, argv);
  if (argc < 3) {
    sayUsage(argv[0]);
    return 1;
  }
  try {
    return runMerge(argc, argv, choice);
  } catch (const palvor::Error& error) {
    sayError(error);
  } catch (const std::bad_alloc&) {
    sayError(palvor::Error("not enough memory"));
  }
  return 1;
}

}  // namespace cli
