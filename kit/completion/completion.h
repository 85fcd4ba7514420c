// Shell completions, made of the program's own commands and options.

#ifndef PALVOR_KIT_COMPLETION_COMPLETION_H_
#define PALVOR_KIT_COMPLETION_COMPLETION_H_

#include <string>

namespace CLI {
class App;
}

namespace kit {

enum class Shell { kBash, kZsh, kFish };

// The script that a shell loads to complete the program's words: commands,
// options, values that are one of a few words, and files and folders where such
// are wanted, which the name of an option's type tells ("DIR", "FASTA").
std::string completionScript(const CLI::App& app, Shell shell);

}  // namespace kit

#endif  // PALVOR_KIT_COMPLETION_COMPLETION_H_
