#include "kit/completion/completion.h"

#include <string_view>
#include <vector>

#include "kit/completion/command_entries.h"
#include "kit/completion/shell_scripts.h"

namespace kit {

std::string inQuotes(std::string_view text, std::string_view mark) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += mark;
    } else {
      result += c;
    }
  }
  return result + "'";
}

std::string completionScript(const CLI::App& app, Shell shell) {
  const std::vector<CommandEntry> commands = entriesOf(app);
  switch (shell) {
    case Shell::kBash:
      return bashScript(commands);
    case Shell::kZsh:
      return zshScript(commands);
    default:
      return fishScript(commands);
  }
}

}  // namespace kit
