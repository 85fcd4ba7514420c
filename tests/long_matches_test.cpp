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

void expectPlainAnswer(int a, size_t posA, const std::string& restA, int b,
                       size_t posB, const std::string& restB) {
  const Suffix suffixA = suffixAt(a, posA), suffixB = suffixAt(b, posB);
  int fb = -1;
  tngb = 0;
  const int after = ZEPCompare(&suffixA, &suffixB, &fb, 0);
  const uint32_t entry = slowEntry(restA, restB);
  ASSERT_EQ(after, restA > restB ? 1 : 0);
  ASSERT_EQ(fb, entry & 1);
  ASSERT_EQ(comLCP, entry >> 1);
  // Words are examined to the first that differs, or all.
  const size_t bits = 2 * std::min(restA.size(), restB.size());
  ASSERT_EQ(tngb, std::min<size_t>(entry >> 1, bits - 1) / 32 + 1);
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
    const size_t a = random() % texts.size();
    const size_t b = random() % 8 == 0 ? a : random() % texts.size();
    size_t posA = random() % (texts[a].size() - 8);
    if (round % 3 == 0) posA %= 1500;
    const size_t gap = random() % 4 == 0 ? 20'000 : 7;
    size_t posB = random() % 2 == 0 ? posA : posA + gap;
    if (posB >= texts[b].size()) posB = posA % 1000;
    SCOPED_TRACE(std::to_string(a) + ":" + std::to_string(posA) + " " +
                 std::to_string(b) + ":" + std::to_string(posB));
    ASSERT_NO_FATAL_FAILURE(
        expectPlainAnswer(static_cast<int>(a), posA, texts[a].substr(posA),
                          static_cast<int>(b), posB, texts[b].substr(posB)));
  }
}

}  // namespace
