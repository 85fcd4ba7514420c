#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <string_view>
#include <vector>

#include "kit/completion/command_entries.h"
#include "kit/completion/shell_scripts.h"

namespace kit {
namespace {

constexpr std::string_view kFishMark = R"(\')";  // within quotation marks

std::string fishAnswer(const Value& value) {
  switch (value.kind) {
    case ValueKind::kWords:
      return fmt::format(" -x -a '{}'", fmt::join(value.words, " "));
    case ValueKind::kFile:
      return " -r -F";
    case ValueKind::kFolder:
      return " -x -a '(__fish_complete_directories)'";
    default:
      return " -x";
  }
}

}  // namespace

std::string fishScript(const std::vector<CommandEntry>& commands) {
  std::string text =
      "# fish completion of palvor-kit\n\n"
      "complete -c palvor-kit -f\n"
      "complete -c palvor-kit -n __fish_use_subcommand -s h -l help -d 'Print "
      "help'\n"
      "complete -c palvor-kit -n __fish_use_subcommand -l version -d 'Print "
      "the "
      "version'\n";
  for (const CommandEntry& command : commands) {
    text += fmt::format(
        "\ncomplete -c palvor-kit -n __fish_use_subcommand -a {} -d {}\n",
        command.name, inQuotes(command.description, kFishMark));
    const std::string line = fmt::format(
        "complete -c palvor-kit -n '__fish_seen_subcommand_from {}'",
        command.name);
    for (const OptionEntry& option : command.options) {
      text += line;
      for (const std::string& name : option.names) {
        text += name.starts_with("--") ? fmt::format(" -l {}", name.substr(2))
                                       : fmt::format(" -s {}", name.substr(1));
      }
      if (option.takesValue) text += fishAnswer(option.value);
      text += fmt::format(" -d {}\n", inQuotes(option.description, kFishMark));
    }
    switch (command.argument.kind) {
      case ValueKind::kWords:
        text += fmt::format("{} -a '{}'\n", line,
                            fmt::join(command.argument.words, " "));
        break;
      case ValueKind::kFile:
        text += line + " -F\n";
        break;
      case ValueKind::kFolder:
        text += line + " -a '(__fish_complete_directories)'\n";
        break;
      default:
        break;
    }
  }
  return text;
}

}  // namespace kit
