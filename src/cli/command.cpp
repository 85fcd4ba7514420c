#include "cli/command.h"

#include <cstdio>
#include <exception>

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

void runMerge(int argc, char** argv, const EngineChoice& choice) {
  const Arguments arguments = scanArguments(argc, argv);
  if (!arguments.quiet) sayOptions(arguments);
  palvor::MergeOptions options = mergeOptionsOf(arguments);
  options.processor = choice.processor;
  options.walkOnly = choice.walkOnly;
  Report report(arguments.quiet);
  report.finished(palvor::merge(options, report));
}

}  // namespace

int runCommand(int argc, char** argv, const EngineChoice& choice) {
  echoCommand(argc, argv);
  if (argc < 3) {
    sayUsage(argv[0]);
    return 1;
  }
  try {
    runMerge(argc, argv, choice);
    return 0;
  } catch (const palvor::Error& error) {
    sayError(error);
  } catch (const std::bad_alloc&) {
    sayError(palvor::Error("not enough memory"));
  }
  return 1;
}

}  // namespace cli
