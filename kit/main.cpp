// palvor-kit: makes data folders for palvor, and looks into them.

#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "kit/build/result_words.h"
#include "kit/commands.h"
#include "kit/message.h"
#include "kit/usage_error.h"

namespace {

int fail(const std::string& reason) {
  kit::say("error: " + reason);
  return 1;
}

int run(int argc, char** argv) {
  CLI::App app(
      "Makes and reads the files of palvor, which merges suffix arrays.",
      "palvor-kit");
  app.set_version_flag("--version", "palvor-kit " PALVOR_VERSION);
  app.require_subcommand(1);
  kit::addCommands(app);
  if (argc < 2) return fail("which command?\n\n" + app.help());
  try {
    std::vector<std::string> words =
        kit::expandResult(app, {argv + 1, argv + argc});
    std::reverse(words.begin(), words.end());  // as the parser wants them
    app.parse(std::move(words));
  } catch (const CLI::Success& asked) {  // help, or the version
    app.exit(asked);
    std::cout.flush();
    if (!std::cout) return fail("can't write to standard output");
  } catch (const CLI::ParseError& error) {
    return fail(kit::explainUsageError(app, error));
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    return fail("out of memory");
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
