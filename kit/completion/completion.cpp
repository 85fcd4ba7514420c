#include "kit/completion/completion.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

namespace kit {
namespace {

// What completes a value.
enum class Kind { kNothing, kWords, kFile, kFolder };

struct Value {
  Kind kind = Kind::kNothing;
  std::string type;                // "DIR"
  std::vector<std::string> words;  // if it is one of these
};

struct OptionEntry {
  std::vector<std::string> names;  // with their hyphens
  std::string description;
  bool takesValue = false;
  Value value;
};

struct CommandEntry {
  std::string name;
  std::string description;  // its first sentence
  std::vector<OptionEntry> options;
  Value argument;  // what stands for itself; the last kind, if there are some
};

Value valueOf(const CLI::Option& option) {
  static const std::set<std::string> kFiles = {"FILE", "FASTA", "TSV"};
  static const std::set<std::string> kFolders = {"DIR", "FOLDER"};
  Value value;
  // What a validator has added comes after a colon.
  value.type = option.get_type_name();
  value.type.resize(std::min(value.type.size(), value.type.find(':')));
  const std::string& name = option.get_single_name();
  if (value.type.find('|') != std::string::npos) {
    value.kind = Kind::kWords;
    value.words = CLI::detail::split(value.type, '|');
  } else if (kFiles.contains(value.type)) {
    value.kind = Kind::kFile;
  } else if (kFolders.contains(value.type) || name == "inputdir" ||
             name == "o" || name == "S") {
    value.kind = Kind::kFolder;
  }
  return value;
}

std::string firstSentence(const std::string& text) {
  const size_t end = std::min(text.find(". "), text.find(": "));
  std::string sentence = text.substr(0, end);
  if (sentence.ends_with('.')) sentence.pop_back();
  return sentence;
}

CommandEntry entryOf(const CLI::App& command) {
  CommandEntry entry = {.name = command.get_name(),
                        .description = firstSentence(command.get_description()),
                        .options = {},
                        .argument = {}};
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional()) {
      const Value value = valueOf(*option);
      if (value.kind != Kind::kNothing && entry.argument.kind != Kind::kWords) {
        entry.argument = value;
      }
      continue;
    }
    OptionEntry& added = entry.options.emplace_back();
    for (const std::string& name : option->get_snames()) {
      added.names.push_back("-" + name);
    }
    for (const std::string& name : option->get_lnames()) {
      added.names.push_back("--" + name);
    }
    added.description = option->get_description();
    added.takesValue = option->get_items_expected_max() > 0;
    if (added.takesValue) added.value = valueOf(*option);
  }
  return entry;
}

std::vector<CommandEntry> entriesOf(const CLI::App& app) {
  std::vector<CommandEntry> entries;
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    entries.push_back(entryOf(*command));
    names.push_back(command->get_name());
  }
  for (CommandEntry& entry : entries) {
    if (entry.name == "help") entry.argument = {Kind::kWords, "", names};
  }
  return entries;
}

// In single quotation marks, as all three shells read them.
std::string inQuotes(std::string_view text, bool fish = false) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += fish ? "\\'" : "'\\''";
    } else {
      result += c;
    }
  }
  return result + "'";
}

std::string bashAnswer(const Value& value) {
  switch (value.kind) {
    case Kind::kWords:
      return fmt::format("compgen -W '{}' -- \"$current\"",
                         fmt::join(value.words, " "));
    case Kind::kFile:
      return "compgen -f -- \"$current\"";
    case Kind::kFolder:
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
    case Kind::kWords:
      return fmt::format("({})", fmt::join(value.words, " "));
    case Kind::kFile:
      return "_files";
    case Kind::kFolder:
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

std::string fishAnswer(const Value& value) {
  switch (value.kind) {
    case Kind::kWords:
      return fmt::format(" -x -a '{}'", fmt::join(value.words, " "));
    case Kind::kFile:
      return " -r -F";
    case Kind::kFolder:
      return " -x -a '(__fish_complete_directories)'";
    default:
      return " -x";
  }
}

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
        command.name, inQuotes(command.description, true));
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
      text += fmt::format(" -d {}\n", inQuotes(option.description, true));
    }
    switch (command.argument.kind) {
      case Kind::kWords:
        text += fmt::format("{} -a '{}'\n", line,
                            fmt::join(command.argument.words, " "));
        break;
      case Kind::kFile:
        text += line + " -F\n";
        break;
      case Kind::kFolder:
        text += line + " -a '(__fish_complete_directories)'\n";
        break;
      default:
        break;
    }
  }
  return text;
}

}  // namespace

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
