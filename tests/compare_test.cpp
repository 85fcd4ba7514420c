// ZEPCompare against the slow, obvious order: strings of '0' and '1' compared
// character by character. The fast routine changes course at 16 and 32
// characters and at word boundaries, so the sweep stands on both sides of each.

#include "sources/compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "run/options.h"
#include "support/inputs.h"

namespace {

struct Answer {
  int after, fb, lcp;
};

Answer slowCompare(const std::string& a, const std::string& b) {
  const size_t shorter = std::min(a.size(), b.size());
  size_t lcp = 0;
  while (lcp < shorter && a[lcp] == b[lcp]) lcp++;
  return {a > b, lcp < shorter, static_cast<int>(lcp)};
}

// With prefix words and without, whatever is said to be known.
void expectAnswer(const Suffix& a, const Suffix& b, const Answer& want) {
  for (const int off : {0, 1}) {
    noprefix = off;
    for (const int known :
         {0, 1, 63, 64, 65, 96, 100, want.lcp - 1, want.lcp}) {
      if (known < 0 || known > want.lcp) continue;
      SCOPED_TRACE("known " + std::to_string(known) + (off ? " with -X" : ""));
      int fb = -1;
      ASSERT_EQ(ZEPCompare(&a, &b, &fb, known), want.after);
      ASSERT_EQ(fb, want.fb);
      ASSERT_EQ(comLCP, want.lcp);
      if (a.pos == b.pos && want.fb == 0) continue;
      ASSERT_EQ(ZEPCompare(&a, &b, nullptr, known), want.after);
    }
  }
}

TEST(SuffixOrder, AgreesWithTheSlowOrderAroundEveryBoundary) {
  for (const size_t shared :
       {0u, 1u, 15u, 16u, 17u, 31u, 32u, 33u, 47u, 48u, 49u, 63u, 64u, 65u}) {
    for (const std::string before : {"", "C", "CCCCC", "CCCCCCCCCCCCCCCC"}) {
      for (const std::string& endA : textsUpTo(2)) {
        for (const std::string& endB : textsUpTo(2)) {
          const std::string a = std::string(shared, 'T') + endA;
          const std::string b = std::string(shared, 'T') + endB;
          if (a.empty() || b.empty() || a == b) continue;
          SCOPED_TRACE(before + "|" + a + " and GAT|" + b);
          useInputs({before + a, "GAT" + b});
          ASSERT_NO_FATAL_FAILURE(
              expectAnswer(suffixAt(0, before.size()), suffixAt(1, 3),
                           slowCompare(bitsOf(a), bitsOf(b))));
        }
      }
    }
  }
}

// The trailing zero bits of the shorter read like characters A of the longer.
TEST(SuffixOrder, PutsTheShorterFirstWhateverFollows) {
  for (const size_t length : {1u, 2u, 16u, 17u, 32u, 33u, 40u}) {
    for (const size_t more : {1u, 14u, 16u, 48u}) {
      const std::string a(length, 'C');
      const std::string b = a + std::string(more, 'A');
      SCOPED_TRACE(a + " and " + b);
      useInputs({a, "G" + b});
      const int bits = static_cast<int>(2 * length);
      const Suffix shorter = suffixAt(0, 0), longer = suffixAt(1, 1);
      ASSERT_NO_FATAL_FAILURE(expectAnswer(shorter, longer, {0, 0, bits}));
      ASSERT_NO_FATAL_FAILURE(expectAnswer(longer, shorter, {1, 0, bits}));
    }
  }
}

TEST(SuffixOrder, EqualSuffixesGoByInputNumberOnlyWithoutFb) {
  for (const int off : {0, 1}) {
    noprefix = off;
    for (const std::string text : {"ATTACA", "ACGTACGTACGTACGTACGT",
                                   "ACGTACGTACGTACGTACGTACGTACGTACGTACGT"}) {
      SCOPED_TRACE(text);
      useInputs({"G" + text, "C" + text});
      // The flag bits stand beside the input number and must not count.
      const Suffix lower = suffixAt(0, 1, 3), higher = suffixAt(1, 1);
      EXPECT_EQ(ZEPCompare(&higher, &lower, nullptr, 0), 1);
      EXPECT_EQ(ZEPCompare(&lower, &higher, nullptr, 0), 0);
      for (const auto& [a, b] : {std::pair(higher, lower), {lower, higher}}) {
        int fb = -1;
        EXPECT_EQ(ZEPCompare(&a, &b, &fb, 0), 0);
        EXPECT_EQ(fb, 0);
        EXPECT_EQ(comLCP, static_cast<int>(2 * text.size()));
      }
    }
  }
}

TEST(SuffixOrder, CountsWhatItReads) {
  struct Row {
    std::string a, b;
    int known, noprefix;
    int byPrefix;      // calls settled by the prefix words
    double words;      // of the strings examined
    size_t start = 0;  // characters of a's input before it
  };
  const std::string t32(32, 'T'), t40(40, 'T');
  const std::vector<Row> rows = {
      {"ACGT" + t40, "ACGA" + t40, 0, 0, 1, 0},       // by the first word
      {t32.substr(16) + "A" + t40, t32, 0, 0, 1, 0},  // by the second
      {t32, t32 + "A", 0, 0, 1, 0},  // by the shorter one's end
      {t32 + "G", t32 + "A", 0, 0, 0, 1},
      {t40, t40 + "A", 0, 0, 0, 1},
      {t40 + t40, t40 + t40 + "C", 0, 0, 0, 3},
      {t40 + t40 + "A", t40 + t40 + "C", 128, 0, 0, 2},
      // Known bits below 64 are not skipped, the prefix words settle it.
      {t32.substr(12) + "A" + t40, t32, 40, 0, 1, 0},
      // The step ends at a word boundary of a: 48 bits, not 64, and 32 more.
      {t40 + "A", t40 + "C", 0, 0, 0, 2, 8},
      {"A", "C", 0, 1, 0, 1},
      {t32, t32, 0, 1, 0, 2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.a + " and " + row.b);
    useInputs({std::string(row.start, 'G') + row.a, row.b});
    const Suffix a = suffixAt(0, row.start), b = suffixAt(1, 0);
    noprefix = row.noprefix;
    np2 = 0;
    tngb = 0;
    ZEPCompare(&a, &b, nullptr, row.known);
    EXPECT_EQ(np2, row.byPrefix);
    EXPECT_EQ(tngb, row.words);
  }
}

TEST(LeadingZeros, AreCountedOnBothSidesOfEveryPower) {
  for (int bit = 0; bit < 32; bit++) {
    EXPECT_EQ(nb32(1U << bit), 31 - bit);
    EXPECT_EQ(nb32((1U << bit) | ((1U << bit) - 1)), 31 - bit);
  }
}

}  // namespace
