// A result's folder as one word of a command line, where DIR PREFIX would be
// two; and DIR without its slash.

#ifndef PALVOR_KIT_BUILD_RESULT_WORDS_H_
#define PALVOR_KIT_BUILD_RESULT_WORDS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace kit {

// The words of a command line, the program's name left out, with DIR PREFIX in
// place of a result's folder for the commands that take these, and the merged
// files' paths for `view`. DIR gets a slash at its end where only then there is
// a data folder. Other lines are returned as they are.
std::vector<std::string> expandResult(const CLI::App& app,
                                      std::vector<std::string> words);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_RESULT_WORDS_H_
