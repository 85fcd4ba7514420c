// The option --strands of all commands that make inputs of sequences.

#ifndef PALVOR_KIT_STRANDS_OPTION_H_
#define PALVOR_KIT_STRANDS_OPTION_H_

namespace CLI {
class App;
}

namespace kit {

// Adds it. The choice must outlive the command.
void addStrands(CLI::App& command, bool& bothStrands);

}  // namespace kit

#endif  // PALVOR_KIT_STRANDS_OPTION_H_
