// The scripts that complete the words of these commands, one for each shell.

#ifndef PALVOR_KIT_COMPLETION_SHELL_SCRIPTS_H_
#define PALVOR_KIT_COMPLETION_SHELL_SCRIPTS_H_

#include <string>
#include <string_view>
#include <vector>

#include "kit/completion/command_entries.h"

namespace kit {

std::string bashScript(const std::vector<CommandEntry>& commands);
std::string zshScript(const std::vector<CommandEntry>& commands);
std::string fishScript(const std::vector<CommandEntry>& commands);

// A text in single quotation marks.
//   mark  stands for such a mark within it; in bash and zsh it ends the text,
//         which begins again behind it
std::string inQuotes(std::string_view text, std::string_view mark = R"('\'')");

}  // namespace kit

#endif  // PALVOR_KIT_COMPLETION_SHELL_SCRIPTS_H_
