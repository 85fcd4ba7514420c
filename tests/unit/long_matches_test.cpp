// What is remembered of long matches must change no answer and no count.

#include "palvor/text/long_matches.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <random>
#include <string>
#include <vector>

#include "palvor/text/compare.h"
#include "support/engine.h"
#include "support/inputs.h"

namespace {

using palvor::Comparison;
using palvor::LongMatches;
using palvor::SuffixCompare;

TEST(LongMatches, AreKnownFromTheirFirstBitToTheirLast) {
  LongMatches matches;
  // Bits 8100 to 12099 of input 3, across two borders of blocks.
  matches.remember({3, 8100}, {8, 500}, 4000, 4000);
  const auto known = [&](uint32_t bit) {
    const uint32_t found = matches.known({3, bit}, {8, bit - 7600});
    EXPECT_EQ(matches.known({8, bit - 7600}, {3, bit}), found);
    return found;
  };
  EXPECT_EQ(known(8099), 0U);
  EXPECT_EQ(known(8100), 4000U);
  EXPECT_EQ(known(12099), 1U);
  EXPECT_EQ(known(12100), 0U) << "the match ends before its end";
  EXPECT_EQ(known(12101), 0U);
  EXPECT_EQ(matches.known({3, 8200}, {8, 601}), 0U) << "shifted otherwise";
  EXPECT_EQ(matches.known({3, 8200}, {7, 600}), 0U);
  EXPECT_EQ(matches.known({3, 8200}, {3, 600}), 0U);
}

TEST(LongMatches, AreForgottenForLaterOnes) {
  LongMatches matches;
  matches.remember({0, 0}, {1, 0}, 4000, 4000);
  matches.remember({0, 32}, {1, 32}, 64, 64);
  EXPECT_EQ(matches.known({0, 40}, {1, 40}), 56U);
  EXPECT_EQ(matches.known({0, 96}, {1, 96}), 0U);
}

void expectPlainAnswer(SuffixCompare& compare, const palvor::Suffix& a,
                       const std::string& restA, const palvor::Suffix& b,
                       const std::string& restB) {
  const Comparison found = compare(a, b, 0);
  const uint32_t entry = slowEntry(restA, restB);
  ASSERT_EQ(found.after(), restA > restB);
  ASSERT_EQ(found.firstbit(), (entry & 1) != 0);
  ASSERT_EQ(found.common, static_cast<int>(entry >> 1));
  // Words are examined to the first that differs, or all.
  const size_t bits = 2 * std::min(restA.size(), restB.size());
  ASSERT_EQ(found.words, std::min<size_t>(entry >> 1, bits - 1) / 32 + 1);
}

TEST(LongMatches, ChangeNoAnswerAndNoCount) {
  std::mt19937 random(7);
  std::string base;
  for (int i = 0; i < 60'000; i++) base += "ACGT"[random() % 4];
  std::string mutated = base;
  for (const size_t at : {9'000U, 9'001U, 31'000U, 52'345U}) {
    mutated[at] = mutated[at] == 'A' ? 'C' : 'A';
  }
  const std::vector<std::string> texts = {
      base, mutated, "GATTACA" + base.substr(0, 40'000),
      std::string(20'000, 'A'), base.substr(0, 20'000) + base};
  const InMemory inputs(texts);
  for (const palvor::Processor processor : kProcessors) {
    // Without prefix words, every call reads the strings from their starts.
    SuffixCompare compare(inputs.text(), false, processor);
    for (int round = 0; round < 2000; round++) {
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
      ASSERT_NO_FATAL_FAILURE(expectPlainAnswer(
          compare, inputs.suffixAt(a, posA), texts[a].substr(posA),
          inputs.suffixAt(b, posB), texts[b].substr(posB)));
    }
  }
}

// As long as strings can be: no sum of bits may leave an int. All of them share
// one mapping of zeros, of which next to nothing is resident.
TEST(LongMatches, ReachToTheLastBitOfTheLongestStrings) {
  constexpr uint32_t kCharacters = (1U << 30) - 1;
  constexpr size_t kBytes = 4 * (kCharacters / 16 + 2);
  void* zeros = mmap(nullptr, kBytes, PROT_READ,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(zeros, MAP_FAILED);
  const auto* words = static_cast<const uint32_t*>(zeros);
  const palvor::Collection text(
      {{words, 2 * kCharacters}, {words, 2 * kCharacters}, {words, INT_MAX}});
  SuffixCompare compare(text, false, palvor::Processor::kBest);
  const palvor::Suffix first = {0, 0, 0, 0};
  const palvor::Suffix second = {4, 0, 0, 0};
  for (int round = 0; round < 2; round++) {
    const Comparison found = compare(first, second, 0);
    EXPECT_TRUE(found.equal());
    EXPECT_EQ(found.common, 2 * static_cast<int>(kCharacters));
    EXPECT_EQ(found.words, 1 << 26);
  }
  const palvor::Suffix odd = {8, 0, 0, 0};
  EXPECT_TRUE(compare(odd, first, 0).after());
  for (const uint32_t pos : {1U, 15U, 16U, 17U}) {
    EXPECT_TRUE(compare({0, 0, 0, 0}, {4, pos, 0, 0}, 0).after()) << pos;
  }
  munmap(zeros, kBytes);
}

}  // namespace
