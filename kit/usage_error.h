// What to say about a command line that cannot be understood.

#ifndef PALVOR_KIT_USAGE_ERROR_H_
#define PALVOR_KIT_USAGE_ERROR_H_

#include <CLI/CLI.hpp>
#include <string>

namespace kit {

// Names the word that is not known, with the nearest known one, or, if all
// words are, what else the parser found wrong; then where to read on.
//   app  the program, just after its parse function threw the error
std::string explainUsageError(const CLI::App& app,
                              const CLI::ParseError& error);

// The same for a command that does not exist.
std::string unknownCommand(const CLI::App& app, const std::string& word);

}  // namespace kit

#endif  // PALVOR_KIT_USAGE_ERROR_H_
