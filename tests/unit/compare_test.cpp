// SuffixCompare against the slow, obvious order of texts. It changes course at
// 16 and 32 characters and at word boundaries, so the sweep stands on both
// sides of each.

#include "palvor/text/compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/engine.h"
#include "support/inputs.h"

namespace {

using palvor::Comparison;
using palvor::Suffix;
using palvor::SuffixCompare;

void expectSlowAnswer(SuffixCompare& compare, const Suffix& a,
                      const std::string& textA, const Suffix& b,
                      const std::string& textB) {
  const uint32_t entry = slowEntry(textA, textB);
  const int lcp = static_cast<int>(entry >> 1);
  for (const int known : {0, 1, 63, 64, 65, 96, 100, lcp - 1, lcp}) {
    if (known < 0 || known > lcp) continue;
    SCOPED_TRACE("known " + std::to_string(known));
    const Comparison found = compare(a, b, known);
    ASSERT_EQ(found.after(), textA > textB);
    ASSERT_EQ(found.equal(), textA == textB);
    ASSERT_EQ(found.firstbit(), (entry & 1) != 0);
    ASSERT_EQ(found.common, lcp);
    const Comparison turned = compare(b, a, known);
    ASSERT_EQ(turned.after(), textB > textA);
    ASSERT_EQ(turned.common, lcp);
    if (!compare.usesKeys()) continue;
    // What others tell of a comparison that they need not make.
    const int shorter =
        static_cast<int>(2 * std::min(textA.size(), textB.size()));
    ASSERT_EQ(found.settled(), palvor::isSettledByKeys(shorter, known, lcp));
    if (found.settled()) continue;
    ASSERT_EQ(found.words, palvor::wordsExamined(a.pos, shorter, known, lcp));
  }
}

// The trailing zero bits of the shorter read like characters A of the longer.
TEST(SuffixOrder, AgreesWithTheSlowOrderAroundEveryBoundary) {
  std::vector<std::string> ends = textsUpTo(2);
  for (const size_t more : {14U, 16U, 48U}) ends.emplace_back(more, 'A');
  // All pairs behind one another, in two long strings: a comparison of each.
  struct Pair {
    std::string before, a, b;
  };
  std::vector<Pair> pairs;
  for (const size_t shared :
       {0U, 1U, 15U, 16U, 17U, 31U, 32U, 33U, 47U, 48U, 49U, 63U, 64U, 65U}) {
    for (const std::string before : {"", "C", "CCCCC", "CCCCCCCCCCCCCCCC"}) {
      for (const std::string& endA : ends) {
        for (const std::string& endB : ends) {
          const std::string a = std::string(shared, 'T') + endA;
          const std::string b = std::string(shared, 'T') + endB;
          if (!a.empty() && !b.empty()) pairs.push_back({before, a, b});
        }
      }
    }
  }
  std::vector<std::string> texts;
  for (const Pair& pair : pairs) {
    texts.push_back(pair.before + pair.a);
    texts.push_back("GAT" + pair.b);
  }
  const InMemory inputs(texts);
  for (const palvor::Processor processor : kProcessors) {
    for (const bool useKeys : {true, false}) {
      SuffixCompare compare(inputs.text(), useKeys, processor);
      for (size_t i = 0; i < pairs.size(); i++) {
        const Pair& pair = pairs[i];
        SCOPED_TRACE(pair.before + "|" + pair.a + " and GAT|" + pair.b);
        // The flag bits beside the input number must not count.
        ASSERT_NO_FATAL_FAILURE(expectSlowAnswer(
            compare, inputs.suffixAt(2 * i, pair.before.size(), 3), pair.a,
            inputs.suffixAt(2 * i + 1, 3), pair.b));
      }
    }
  }
}

TEST(SuffixOrder, RefusesACommonPrefixThatNoEntryHolds) {
  EXPECT_EQ(palvor::fittingEntry(palvor::kLcpLimit - 1, true), 0x7FFFFFFFU);
  EXPECT_STREQ(
      errorOf([] { palvor::fittingEntry(palvor::kLcpLimit, true); }).what(),
      "two suffixes share 1073741824 bits: an LCP entry holds less than 2^30");
}

}  // namespace
