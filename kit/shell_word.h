// Words of printed commands.

#ifndef PALVOR_KIT_SHELL_WORD_H_
#define PALVOR_KIT_SHELL_WORD_H_

#include <string>

namespace kit {

// The text as one word that a shell takes as it stands: in quotation marks, if
// it needs them.
std::string shellWord(const std::string& text);

}  // namespace kit

#endif  // PALVOR_KIT_SHELL_WORD_H_
