#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <string_view>
#include <vector>

#include "kit/completion/command_entries.h"
#include "kit/completion/shell_scripts.h"

namespace kit {
namespace {

// A text for _arguments, where brackets and colons have a meaning.
std::string zshText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string zshAnswer(const Value& value) {
  switch (value.kind) {
    case ValueKind::kWords:
      return fmt::format("({})", fmt::join(value.words, " "));
    case ValueKind::kFile:
      return "_files";
    case ValueKind::kFolder:
      return "_files -/";
    default:
      return " ";
  }
}

std::string zshCase(const CommandEntry& command) {
  std::string text =
      fmt::format("    {})\n      _arguments -s \\\n", command.name);
  for (const OptionEntry& option : command.options) {
    std::string spec = fmt::format("[{}]", zshText(option.description));
    if (option.takesValue) {
      spec += fmt::format(":{}:{}", zshText(option.value.type),
                          zshAnswer(option.value));
    }
    // The names of one option exclude each other.
    const std::string others =
        inQuotes(fmt::format("({})", fmt::join(option.names, " ")));
    for (const std::string& name : option.names) {
      text += fmt::format("        {}{}{} \\\n", others, name, inQuotes(spec));
    }
  }
  return text + fmt::format("        {} ;;\n",
                            inQuotes(fmt::format("*:{}:{}",
                                                 zshText(command.argument.type),
                                                 zshAnswer(command.argument))));
}

}  // namespace

std::string zshScript(const std::vector<CommandEntry>& commands) {
  std::string list, cases;
  for (const CommandEntry& command : commands) {
    list += fmt::format("    {}\n", inQuotes(command.name + ":" +
                                             zshText(command.description)));
    cases += zshCase(command);
  }
  return fmt::format(
      "#compdef palvor-kit\n\n"
      "_palvor-kit() {{\n"
      "  local -a commands=(\n"
      "{}"
      "  )\n"
      "  if ((CURRENT == 2)); then\n"
      "    _describe command commands\n"
      "    _arguments '--help[print help]' '--version[print the version]'\n"
      "    return\n"
      "  fi\n"
      "  local command=$words[2]\n"
      "  shift words\n"
      "  ((CURRENT--))\n"
      "  case $command in\n"
      "{}"
      "  esac\n"
      "}}\n\n"
      "_palvor-kit \"$@\"\n",
      list, cases);
}

}  // namespace kit
