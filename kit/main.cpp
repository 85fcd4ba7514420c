// palvor-kit: makes data folders for palvor, and looks into them.

#include <cstdio>
#include <exception>

#include "kit/commands.h"

namespace {

int run(int argc, char** argv) {
  CLI::App app(
      "Makes and reads the files of palvor, which merges suffix arrays.",
      "palvor-kit");
  app.set_version_flag("--version", "palvor-kit " PALVOR_VERSION);
  app.require_subcommand(1);
  kit::addPrepare(app);
  kit::addCheck(app);
  kit::addSimulate(app);
  kit::addView(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "palvor-kit: error: out of memory\n");
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "palvor-kit: error: %s\n", error.what());
    return 1;
  }
}
