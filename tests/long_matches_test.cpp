// Comparisons of strings that match over thousands of bits, met again and
// again: what is remembered of them must change no answer and no count.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "run/options.h"
#include "sources/compare.h"
#include "support/inputs.h"

namespace {

// Words that the definition examines: to the first that differs, or all.
int wordsExamined(int lcp, int shorter) {
  return lcp < shorter ? lcp / 32 + 1 : (shorter - 1) / 32 + 1;
}

void expectPlainAnswer(const std::vector<std::string>& texts, int a,
                       size_t posA, int b, size_t posB) {
  const std::string restA = texts[static_cast<size_t>(a)].substr(posA);
  const std::string restB = texts[static_cast<size_t>(b)].substr(posB);
  const size_t shorter = std::min(restA.size(), restB.size());
  const auto ends = std::mismatch(
      restA.begin(), restA.begin() + static_cast<ptrdiff_t>(shorter),
      restB.begin());
  const auto shared = static_cast<size_t>(ends.first - restA.begin());
  const std::string bitsA = bitsOf(restA.substr(shared, 1));
  const std::string bitsB = bitsOf(restB.substr(shared, 1));
  int lcp = static_cast<int>(2 * shared);
  const bool inside = shared < shorter;
  if (inside && bitsA[0] == bitsB[0]) lcp++;

  const Suffix suffixA = suffixAt(a, posA), suffixB = suffixAt(b, posB);
  int fb = -1;
  tngb = 0;
  const int after = ZEPCompare(&suffixA, &suffixB, &fb, 0);
  ASSERT_EQ(after, restA > restB ? 1 : 0);
  ASSERT_EQ(fb, inside ? 1 : 0);
  ASSERT_EQ(comLCP, lcp);
  ASSERT_EQ(tngb, wordsExamined(lcp, static_cast<int>(2 * shorter)));
}

TEST(LongMatches, ChangeNoAnswerAndNoCount) {
  std::mt19937 random(7);
  std::string base;
  for (int i = 0; i < 60'000; i++) base += "ACGT"[random() % 4];
  std::string mutated = base;
  for (const size_t at : {9'000u, 9'001u, 31'000u, 52'345u}) {
    mutated[at] = mutated[at] == 'A' ? 'C' : 'A';
  }
  const std::vector<std::string> texts = {
      base, mutated, "GATTACA" + base.substr(0, 40'000),
      std::string(20'000, 'A'), base.substr(0, 20'000) + base};
  useInputs(texts);
  noprefix = 1;  // so that every call reads the strings from their starts
  for (int round = 0; round < 4000; round++) {
    // Pairs at the same place of the texts that begin alike, in both orders.
    const int a = static_cast<int>(random() % texts.size());
    const int b =
        random() % 8 == 0 ? a : static_cast<int>(random() % texts.size());
    size_t posA = random() % (texts[static_cast<size_t>(a)].size() - 8);
    if (round % 3 == 0) posA %= 1500;
    const size_t gap = random() % 4 == 0 ? 20'000 : 7;
    size_t posB = random() % 2 == 0 ? posA : posA + gap;
    if (posB >= texts[static_cast<size_t>(b)].size()) posB = posA % 1000;
    SCOPED_TRACE(std::to_string(a) + ":" + std::to_string(posA) + " " +
                 std::to_string(b) + ":" + std::to_string(posB));
    ASSERT_NO_FATAL_FAILURE(expectPlainAnswer(texts, a, posA, b, posB));
  }
}

}  // namespace
