// The program with another version of the engine, for tests and measurements:
// its files and lines are the same.

#include "cli/command.h"

int main(int argc, char** argv) {
  return cli::runCommand(argc, argv,
                         {palvor::Processor::PALVOR_VARIANT, PALVOR_WALK_ONLY});
}
