#include "kit/usage_error.h"

#include <fmt/format.h>

#include <vector>

#include "kit/build/result_folder.h"
#include "kit/nearest_word.h"

namespace kit {
namespace {

std::string didYouMean(const std::string& word,
                       const std::vector<std::string>& candidates) {
  const std::string nearest = nearestWord(word, candidates);
  return nearest.empty() ? "" : fmt::format("; did you mean '{}'?", nearest);
}

std::vector<std::string> optionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  return names;
}

// What is wrong with a word that no option and no argument takes.
std::string unknownWord(const CLI::App& app, const CLI::App& command,
                        const std::string& word) {
  if (word.starts_with('-')) {
    const std::string option = word.substr(0, word.find('='));
    return fmt::format("there is no option '{}'{}", option,
                       didYouMean(option, optionsOf(command)));
  }
  if (&command == &app) return unknownCommand(app, word);
  return fmt::format("'{}' is one word too many", word);
}

// What a word has to do with it that was taken for DIR of DIR PREFIX, where a
// result's folder would have been both.
std::string noResult(const CLI::App& command, const CLI::ParseError& error) {
  const CLI::Option* first = command.get_option_no_throw("inputdir");
  if (first == nullptr || first->results().empty() ||
      dynamic_cast<const CLI::RequiredError*>(&error) == nullptr) {
    return "";
  }
  const std::string word = first->results().front();
  if (ResultFolder::canBe(word) && ResultFolder(word).isResult()) return "";
  return fmt::format(" ('{}' is no result of build, which would do alone)",
                     word);
}

}  // namespace

std::string unknownCommand(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return fmt::format("there is no command '{}'{}", word,
                     didYouMean(word, names));
}

std::string explainUsageError(const CLI::App& app,
                              const CLI::ParseError& error) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  const CLI::App& command = chosen.empty() ? app : *chosen.front();
  const std::vector<std::string> unknown = app.remaining(true);
  const std::string path = chosen.empty()
                               ? app.get_name()
                               : app.get_name() + " " + command.get_name();
  return fmt::format("{}\nSee {} --help",
                     unknown.empty() ? error.what() + noResult(command, error)
                                     : unknownWord(app, command, unknown[0]),
                     path);
}

}  // namespace kit
