#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <vector>

#include "kit/completion/command_entries.h"
#include "kit/completion/shell_scripts.h"

namespace kit {
namespace {

std::string bashAnswer(const Value& value) {
  switch (value.kind) {
    case ValueKind::kWords:
      return fmt::format("compgen -W '{}' -- \"$current\"",
                         fmt::join(value.words, " "));
    case ValueKind::kFile:
      return "compgen -f -- \"$current\"";
    case ValueKind::kFolder:
      return "compgen -d -- \"$current\"";
    default:
      return ":";
  }
}

// The words that complete the current one, by the option before it or else by
// the command.
std::string bashCase(const CommandEntry& command) {
  std::string text =
      fmt::format("    {})\n      case $previous in\n", command.name);
  std::vector<std::string> names;
  for (const OptionEntry& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
    if (!option.takesValue) continue;
    text += fmt::format("        {}) {}; return ;;\n",
                        fmt::join(option.names, "|"), bashAnswer(option.value));
  }
  return text + fmt::format(
                    "      esac\n"
                    "      case $current in\n"
                    "        -*) compgen -W '{}' -- \"$current\" ;;\n"
                    "        *) {} ;;\n"
                    "      esac ;;\n",
                    fmt::join(names, " "), bashAnswer(command.argument));
}

}  // namespace

std::string bashScript(const std::vector<CommandEntry>& commands) {
  std::vector<std::string> names;
  std::string cases;
  for (const CommandEntry& command : commands) {
    names.push_back(command.name);
    cases += bashCase(command);
  }
  return fmt::format(
      "# bash completion of palvor-kit\n\n"
      "_palvor_kit_words() {{\n"
      "  local current=${{COMP_WORDS[COMP_CWORD]}}\n"
      "  local previous=${{COMP_WORDS[COMP_CWORD - 1]}}\n"
      "  if ((COMP_CWORD == 1)); then\n"
      "    compgen -W '{} --help --version' -- \"$current\"\n"
      "    return\n"
      "  fi\n"
      "  case ${{COMP_WORDS[1]}} in\n"
      "{}"
      "  esac\n"
      "}}\n\n"
      "_palvor_kit() {{\n"
      "  mapfile -t COMPREPLY < <(_palvor_kit_words 2>/dev/null)\n"
      "  ((COMP_CWORD > 1)) && compopt -o filenames 2>/dev/null\n"
      "  return 0\n"
      "}}\n\n"
      "complete -F _palvor_kit palvor-kit\n",
      fmt::join(names, " "), cases);
}

}  // namespace kit
