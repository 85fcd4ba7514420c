#include "kit/build/result_words.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>

#include "kit/build/result_folder.h"

namespace kit {
namespace {

const CLI::App* commandOf(const CLI::App& app, const std::string& word) {
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    if (command->get_name() == word) return command;
  }
  return nullptr;
}

// Whether the next word belongs to this one, an option's.
bool takesNext(const CLI::App& command, const std::string& word) {
  const bool isLong = word.starts_with("--");
  if (isLong && word.find('=') != std::string::npos) return false;
  if (!isLong && word.size() > 2) return false;
  const CLI::Option* option = command.get_option_no_throw(word);
  return option != nullptr && option->get_items_expected_max() > 0;
}

// Index of the first word behind the command's that belongs to no option.
size_t firstArgument(const CLI::App& command,
                     const std::vector<std::string>& words) {
  for (size_t i = 1; i < words.size(); i++) {
    if (!words[i].starts_with('-') || words[i] == "-") return i;
    if (takesNext(command, words[i])) i++;
  }
  return words.size();
}

bool isResultFolder(const std::string& word) {
  return ResultFolder::canBe(word) && ResultFolder(word).isResult();
}

// Whether DIR PREFIX, as palvor takes them, lack only a slash between them. A
// mistaken run of palvor may have left an empty folder of that name.
bool lacksSlash(const std::string& directory, const std::string& prefix) {
  std::error_code ignored;
  const std::string lengths = fmt::format("{0}.ST/{0}.stlengths", prefix);
  return !std::filesystem::exists(directory + lengths, ignored) &&
         std::filesystem::exists(directory + "/" + lengths, ignored);
}

// What there is to view in a result.
std::string mergedFile(const ResultFolder& result) {
  std::error_code ignored;
  const std::string array = result.dataBase() + ".stpsa";
  return std::filesystem::exists(array, ignored) ? array
                                                 : result.dataBase() + ".stdiv";
}

}  // namespace

std::vector<std::string> expandResult(const CLI::App& app,
                                      std::vector<std::string> words) {
  if (words.empty()) return words;
  const CLI::App* command = commandOf(app, words[0]);
  if (command == nullptr) return words;
  const size_t i = firstArgument(*command, words);
  if (i == words.size()) return words;
  if (!isResultFolder(words[i])) {
    if (command->get_option_no_throw("inputdir") != nullptr &&
        i + 1 < words.size() && lacksSlash(words[i], words[i + 1])) {
      words[i] += '/';
    }
    return words;
  }
  const ResultFolder result(words[i]);
  if (command->get_name() == "view") {
    words[i] = mergedFile(result);
  } else if (command->get_option_no_throw("inputdir") != nullptr) {
    words[i] = result.path("");
    const auto next = words.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    if (next == words.end() || *next != kResultPrefix) {
      words.insert(next, kResultPrefix);
    }
  }
  return words;
}

}  // namespace kit
