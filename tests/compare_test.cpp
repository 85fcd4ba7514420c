// ZEPCompare against the slow, obvious order of texts. The fast routine changes
// course at 16 and 32 characters and at word boundaries, so the sweep stands on
// both sides of each.

#include "sources/compare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run/options.h"
#include "support/inputs.h"

namespace {

// Suffixes of inputs 0 and 1, with prefix words and without, whatever is said
// to be known. Without `fb`, equal suffixes go by input number.
void expectSlowAnswer(const Suffix& a, const std::string& textA,
                      const Suffix& b, const std::string& textB) {
  const uint32_t entry = slowEntry(textA, textB);
  const int lcp = static_cast<int>(entry >> 1);
  for (const int off : {0, 1}) {
    noprefix = off;
    for (const int known : {0, 1, 63, 64, 65, 96, 100, lcp - 1, lcp}) {
      if (known < 0 || known > lcp) continue;
      SCOPED_TRACE("known " + std::to_string(known) + (off ? " with -X" : ""));
      int fb = -1;
      ASSERT_EQ(ZEPCompare(&a, &b, &fb, known), textA > textB);
      ASSERT_EQ(fb, entry & 1);
      ASSERT_EQ(comLCP, lcp);
      ASSERT_EQ(ZEPCompare(&b, &a, &fb, known), textB > textA);
      ASSERT_EQ(fb, entry & 1);
      ASSERT_EQ(ZEPCompare(&a, &b, nullptr, known), textA > textB);
      ASSERT_EQ(ZEPCompare(&b, &a, nullptr, known), textB >= textA);
    }
  }
}

// The trailing zero bits of the shorter read like characters A of the longer.
TEST(SuffixOrder, AgreesWithTheSlowOrderAroundEveryBoundary) {
  std::vector<std::string> ends = textsUpTo(2);
  for (const size_t more : {14u, 16u, 48u}) ends.emplace_back(more, 'A');
  for (const size_t shared :
       {0u, 1u, 15u, 16u, 17u, 31u, 32u, 33u, 47u, 48u, 49u, 63u, 64u, 65u}) {
    for (const std::string before : {"", "C", "CCCCC", "CCCCCCCCCCCCCCCC"}) {
      for (const std::string& endA : ends) {
        for (const std::string& endB : ends) {
          const std::string a = std::string(shared, 'T') + endA;
          const std::string b = std::string(shared, 'T') + endB;
          if (a.empty() || b.empty()) continue;
          SCOPED_TRACE(before + "|" + a + " and GAT|" + b);
          useInputs({before + a, "GAT" + b});
          // The flag bits stand beside the input number and must not count.
          const Suffix suffixA = suffixAt(0, before.size(), 3);
          ASSERT_NO_FATAL_FAILURE(
              expectSlowAnswer(suffixA, a, suffixAt(1, 3), b));
        }
      }
    }
  }
}

}  // namespace
