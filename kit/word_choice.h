// An option that takes one of a few words.

#ifndef PALVOR_KIT_WORD_CHOICE_H_
#define PALVOR_KIT_WORD_CHOICE_H_

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

namespace kit {

// Turns each word into its value, as the parser reads it: CLI11's own takes the
// values' numbers too, and answers with them.
template <typename Value>
CLI::Validator oneOf(std::vector<std::pair<std::string, Value>> words) {
  return CLI::Validator(
      [words = std::move(words)](std::string& given) -> std::string {
        std::string all;
        for (const auto& [word, value] : words) {
          if (given == word) {
            given = std::to_string(static_cast<int>(value));
            return "";
          }
          all += (all.empty() ? "" : ", ") + word;
        }
        return fmt::format("'{}' is none of {}", given, all);
      },
      "");
}

}  // namespace kit

#endif  // PALVOR_KIT_WORD_CHOICE_H_
