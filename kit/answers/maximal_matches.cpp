#include "kit/answers/maximal_matches.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <compare>
#include <functional>
#include <string_view>
#include <vector>

#include "kit/answers/occurrence.h"
#include "kit/answers/pattern.h"
#include "kit/progress.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

// Ordered by the place in the query.
struct Match {
  uint64_t queryStart;  // in the query, read in the match's direction
  Occurrence occurrence;
  uint64_t length;

  auto operator<=>(const Match&) const = default;
};

class MatchFinder {
 public:
  MatchFinder(uint64_t shortest, const MergedInputs& inputs,
              MergedStrings& strings, SuffixSearch& search)
      : shortest_(shortest),
        inputs_(inputs),
        strings_(strings),
        search_(search) {}

  // Adds the matches of a stretch of a query without ambiguous letters.
  void find(const Pattern& stretch,
            const std::function<void(const Suffix&, uint64_t begin,
                                     uint64_t length)>& take) {
    const uint64_t size = stretch.text().size();
    for (uint64_t begin = 0; begin + shortest_ <= size; begin++) {
      search_.eachSuffix(stretch, begin, shortest_, [&](const Suffix& suffix) {
        if (extendsLeft(suffix, stretch, begin)) return;
        take(suffix, begin, lengthOf(suffix, stretch, begin));
      });
    }
  }

 private:
  bool extendsLeft(const Suffix& suffix, const Pattern& stretch,
                   uint64_t begin) {
    return begin > 0 && suffix.pos > 0 &&
           strings_.code(inputNumber(suffix), suffix.pos - 1) ==
               stretch.code(begin - 1);
  }

  uint64_t lengthOf(const Suffix& suffix, const Pattern& stretch,
                    uint64_t begin) {
    const uint32_t input = inputNumber(suffix);
    const uint64_t most =
        2 * std::min<uint64_t>(inputs_.length(input) - suffix.pos,
                               stretch.text().size() - begin);
    for (uint64_t bits = 2 * shortest_; bits < most; bits += 64) {
      const uint64_t differ =
          strings_.slice(input, 2 * uint64_t{suffix.pos} + bits) ^
          stretch.slice(2 * begin + bits);
      if (differ == 0) continue;
      bits += static_cast<uint64_t>(std::countl_zero(differ));
      return std::min(bits, most) / 2;
    }
    return most / 2;
  }

  uint64_t shortest_;
  const MergedInputs& inputs_;
  MergedStrings& strings_;
  SuffixSearch& search_;
};

// The stretches of a query without N: where each begins, and its text.
template <typename Take>
void eachStretch(std::string_view text, uint64_t shortest, Take take) {
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find('N', begin), text.size());
    if (end - begin >= shortest) take(begin, text.substr(begin, end - begin));
    begin = end + 1;
  }
}

void print(const std::string& header, std::vector<Match>& matches,
           const MergedInputs& inputs) {
  std::sort(matches.begin(), matches.end());
  // One strand only may be found from both sides.
  matches.erase(std::unique(matches.begin(), matches.end()), matches.end());
  writeOutput(header);
  for (const Match& match : matches) {
    writeOutput(fmt::format("  {}  {:>8}  {:>8}  {:>8}\n",
                            inputs.origin(match.occurrence.input).sequence,
                            startInSequence(inputs, match.occurrence) + 1,
                            match.queryStart + 1, match.length));
  }
}

}  // namespace

void printMaximalMatches(const std::string& file, uint64_t shortest,
                         const MergedInputs& inputs, MergedStrings& strings,
                         SuffixSearch& search) {
  MatchFinder finder(shortest, inputs, strings, search);
  Progress progress;
  readQueries(file, [&](const Query& query) {
    const uint64_t size = query.text.size();
    std::vector<Match> forward, reverse;
    // A match of the query with a reverse strand is one of the query's reverse
    // complement, which ends where it begins, with the forward strand.
    const auto addForward = [&](const Occurrence& occurrence, uint64_t begin,
                                uint64_t length) {
      if (occurrence.reverse) {
        reverse.push_back({size - begin - length, occurrence, length});
      } else {
        forward.push_back({begin, occurrence, length});
      }
    };
    eachStretch(
        query.text, shortest, [&](size_t offset, std::string_view text) {
          const Pattern stretch(query.name, std::string(text));
          finder.find(stretch, [&](const Suffix& suffix, uint64_t begin,
                                   uint64_t length) {
            addForward(
                occurrenceOf(inputs, inputNumber(suffix), suffix.pos, length),
                offset + begin, length);
          });
          if (inputs.bothStrands()) return;
          finder.find(
              stretch.reverseComplement(),
              [&](const Suffix& suffix, uint64_t begin, uint64_t length) {
                Occurrence occurrence = occurrenceOf(
                    inputs, inputNumber(suffix), suffix.pos, length);
                occurrence.reverse = !occurrence.reverse;
                const uint64_t end = text.size() - begin;
                addForward(occurrence, offset + end - length, length);
              });
        });
    print(fmt::format("> {}\n", query.name), forward, inputs);
    print(fmt::format("> {} Reverse\n", query.name), reverse, inputs);
    progress.show(fmt::format("{} matched", query.name));
  });
}

}  // namespace kit
