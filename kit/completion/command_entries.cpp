#include "kit/completion/command_entries.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>

namespace kit {
namespace {

Value valueOf(const CLI::Option& option) {
  static const std::set<std::string> kFiles = {"FILE", "FASTA", "TSV"};
  static const std::set<std::string> kFolders = {"DIR", "FOLDER"};
  Value value;
  // What a validator has added comes after a colon.
  value.type = option.get_type_name();
  value.type.resize(std::min(value.type.size(), value.type.find(':')));
  const std::string& name = option.get_single_name();
  if (value.type.find('|') != std::string::npos) {
    value.kind = ValueKind::kWords;
    value.words = CLI::detail::split(value.type, '|');
  } else if (kFiles.contains(value.type)) {
    value.kind = ValueKind::kFile;
  } else if (kFolders.contains(value.type) || name == "inputdir" ||
             name == "o" || name == "S") {
    value.kind = ValueKind::kFolder;
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
      if (value.kind != ValueKind::kNothing &&
          entry.argument.kind != ValueKind::kWords) {
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

}  // namespace

std::vector<CommandEntry> entriesOf(const CLI::App& app) {
  std::vector<CommandEntry> entries;
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    entries.push_back(entryOf(*command));
    names.push_back(command->get_name());
  }
  for (CommandEntry& entry : entries) {
    if (entry.name == "help") entry.argument = {ValueKind::kWords, "", names};
  }
  return entries;
}

}  // namespace kit
