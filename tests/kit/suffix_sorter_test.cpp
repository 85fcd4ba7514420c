// The sorter against the slow order, over collections that repeat themselves
// within and across inputs: there equal suffixes, and suffixes that begin one
// another, are the rule.

#include "kit/suffix_sorter.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/inputs.h"
#include "support/plain_arrays.h"

namespace {

using Inputs = std::vector<std::string>;

kit::PsaText textOf(const Inputs& inputs) {
  kit::PsaText psa;
  for (const std::string& input : inputs) {
    psa.inputs.push_back({psa.text.size(), input.size(), "", 0});
    psa.text += input + kit::kSeparator;
  }
  return psa;
}

void expectSlowOrder(const Inputs& inputs) {
  SCOPED_TRACE(testing::PrintToString(inputs));
  const kit::PsaText psa = textOf(inputs);
  const PlainArray want =
      plainArrays({inputs, {static_cast<int>(inputs.size())}}).at(0);
  for (bool withLcp : {false, true}) {
    kit::SuffixSorter sorter(psa, withLcp);
    ASSERT_EQ(sorter.size(), want.records.size());
    for (size_t i = 0; i < want.records.size(); i++) {
      ASSERT_EQ(sorter.next(),
                psa.inputs[want.records[i][0] >> 2].begin + want.records[i][1])
          << "rank " << i << ", with LCPs: " << withLcp;
      if (withLcp) {
        ASSERT_EQ(sorter.entry(), want.entries[i]) << "rank " << i;
      }
    }
  }
}

TEST(SuffixSorter, SortsEqualInputsAndEveryPairOfShortOnes) {
  expectSlowOrder(Inputs(40, "GATTACAGATTACA"));
  expectSlowOrder(Inputs(25, std::string(30, 'T')));
  for (const char* letters : {"AC", "AT"}) {
    Inputs texts = textsUpTo(4, letters);
    texts.erase(texts.begin());  // the empty one
    for (const std::string& a : texts) {
      ASSERT_NO_FATAL_FAILURE(expectSlowOrder({a}));
      for (const std::string& b : texts) {
        ASSERT_NO_FATAL_FAILURE(expectSlowOrder({a, b}));
      }
    }
  }
}

TEST(SuffixSorter, SortsRandomCollections) {
  for (unsigned seed = 0; seed < 600; seed++) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto letters = 1 + random() % 4;
    const auto longest = 1 + random() % 70;
    Inputs inputs;
    for (auto left = 1 + random() % 12; left > 0; left--) {
      std::string input(1 + random() % longest, ' ');
      for (char& character : input) character = "ACGT"[random() % letters];
      // Some inputs end, begin or repeat as one before them does.
      if (!inputs.empty() && random() % 3 == 0) {
        const std::string& other = inputs[random() % inputs.size()];
        const auto how = random() % 3;
        input = how == 0 ? input + other : how == 1 ? other + input : other;
      }
      inputs.push_back(input);
    }
    ASSERT_NO_FATAL_FAILURE(expectSlowOrder(inputs));
  }
}

// Where work grows with the square of the repeats these take hours.
TEST(SuffixSorter, TakesNoLongerForRepeats) {
  const std::string period = "GATTACAGATTCCA";
  std::string repeated;
  while (repeated.size() < 200'000) repeated += period;
  for (const Inputs& inputs :
       {Inputs{std::string(1'000'000, 'A')},
        Inputs(200, repeated.substr(0, 5000)),
        Inputs(8, std::string(100'000, 'T')), Inputs(2, repeated)}) {
    const kit::PsaText psa = textOf(inputs);
    kit::SuffixSorter sorter(psa, true);
    uint32_t longest = 0;
    for (size_t left = sorter.size(); left > 0; left--) {
      sorter.next();
      longest = std::max(longest, sorter.entry());
    }
    const size_t length = inputs[0].size();
    EXPECT_EQ(longest, 4 * (inputs.size() > 1 ? length : length - 1));
  }
}

}  // namespace
