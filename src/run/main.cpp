// palvor: merges partial suffix arrays into one global suffix order.

#include <cstdio>

#include "run/arguments.h"
#include "run/driver.h"
#include "run/options.h"
#include "run/usage.h"
#include "support/report.h"

namespace {

void echoCommand(int argc, char** argv) {
  say("Command(%d): ", argc);
  for (int i = 0; i < argc; i++) std::fprintf(stderr, "%s ", argv[i]);
  std::fputc('\n', stderr);
  say("Version: %s\n", Version());
}

}  // namespace

int main(int argc, char** argv) {
  echoCommand(argc, argv);
  if (argc < 3) return pusage(argv[0]);
  const PathArguments paths = scanArguments(argc, argv);
  if (quiet == 0) listOptions(paths);
  return runMerge(paths);
}
