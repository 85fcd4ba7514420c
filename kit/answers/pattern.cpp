#include "kit/answers/pattern.h"

#include <fmt/format.h>

#include <cctype>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "kit/file_error.h"
#include "kit/sequences/sequence_reader.h"

namespace kit {
namespace {

char complementOf(char base) {
  switch (base) {
    case 'A':
      return 'T';
    case 'C':
      return 'G';
    case 'G':
      return 'C';
    default:
      return 'A';
  }
}

std::string explainLetter(char letter) {
  constexpr std::string_view kAmbiguous = "RYSWKMBDHVNX";
  const char capital =
      static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  return kAmbiguous.find(capital) != std::string_view::npos
             ? fmt::format(
                   "'{}' stands for several bases, and only A, C, G "
                   "and T can be looked for",
                   letter)
             : fmt::format("'{}' is no base", letter);
}

}  // namespace

Pattern::Pattern(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)), packed_(text_) {}

Pattern Pattern::reverseComplement() const {
  std::string reverse(text_.rbegin(), text_.rend());
  std::transform(reverse.begin(), reverse.end(), reverse.begin(), complementOf);
  return {name_, std::move(reverse)};
}

Pattern patternOf(const std::string& word) {
  std::string text;
  for (const char letter : word) {
    char base =
        static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    if (base == 'U') base = 'T';
    if (base != 'A' && base != 'C' && base != 'G' && base != 'T') {
      throw std::runtime_error(
          fmt::format("pattern {}: {}", word, explainLetter(letter)));
    }
    text += base;
  }
  if (text.empty()) throw std::runtime_error("an empty pattern");
  return {word, text};
}

void readQueries(const std::string& path,
                 const std::function<void(const Query& query)>& take) {
  SequenceReader reader(path);
  while (reader.nextRecord()) {
    Query query{reader.name(), ""};
    for (std::string_view run = reader.readSequence(); !run.empty();
         run = reader.readSequence()) {
      query.text += run;
      if (query.firstAmbiguous == 0 &&
          run.find('N') != std::string_view::npos) {
        query.firstAmbiguous = reader.firstAmbiguous();
      }
    }
    take(query);
  }
}

Pattern patternOf(const Query& query, const std::string& path) {
  if (query.firstAmbiguous != 0) {
    throw FileError(path, fmt::format("pattern {}: {}", query.name,
                                      explainLetter(query.firstAmbiguous)));
  }
  if (query.text.empty()) {
    throw FileError(path, fmt::format("pattern {} is empty", query.name));
  }
  return {query.name, query.text};
}

}  // namespace kit
