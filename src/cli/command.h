// The program palvor, but for `main`.

#ifndef PALVOR_CLI_COMMAND_H_
#define PALVOR_CLI_COMMAND_H_

#include "palvor/simd/target.h"

namespace cli {

// What no command line says: which of the versions of the engine runs. All give
// the same files and lines.
struct EngineChoice {
  palvor::Processor processor = palvor::Processor::kBest;
  bool walkOnly = false;  // by walks of the merge list
};

// Runs the command line, prints what it has to say, and returns the exit
// status.
int runCommand(int argc, char** argv, const EngineChoice& choice = {});

}  // namespace cli

#endif  // PALVOR_CLI_COMMAND_H_
