// Both ways to sort, against the slow order, over collections that repeat
// themselves within and across inputs: there equal suffixes, and suffixes that
// begin one another, are the rule.

#include "kit/prepare/suffix_sorter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "kit/packer.h"
#include "kit/prepare/array_maker.h"
#include "support/inputs.h"
#include "support/plain_arrays.h"
#include "support/temporary_folder.h"

namespace {

using Inputs = std::vector<std::string>;

constexpr size_t kAll = std::numeric_limits<size_t>::max();

kit::PsaText textOf(const Inputs& inputs) {
  kit::PsaText psa;
  for (const std::string& input : inputs) {
    psa.inputs.push_back({16 * psa.words.size(), input.size(), "", 0});
    kit::appendPacked(psa.words, 0, input);
    psa.words.resize(psa.words.size() + kit::kGapWords);
    psa.characters += input.size();
  }
  return psa;
}

struct Files {
  std::string records, entries;
};

bool operator==(const Files& a, const Files& b) {
  return a.records == b.records && a.entries == b.entries;
}

PlainArray plainArray(const Inputs& inputs) {
  PlainArray array =
      plainArrays({inputs, {static_cast<int>(inputs.size())}}).at(0);
  for (Record& record : array.records) record[0] &= ~3u;
  return array;
}

template <typename Element>
std::string bytesOf(const std::vector<Element>& elements) {
  return {reinterpret_cast<const char*>(elements.data()),
          sizeof(Element) * elements.size()};
}

// What the sorter for all texts gives, in the shape of the slow order.
void expectWholeSorterGives(const PlainArray& want, const Inputs& inputs) {
  const kit::PsaText psa = textOf(inputs);
  const kit::InputFinder finder(psa);
  kit::SuffixSorter sorter(psa, finder);
  for (size_t i = 0; i < want.records.size(); i++) {
    const Record& record = want.records[i];
    ASSERT_EQ(sorter.next(), psa.inputs[record[0] >> 2].begin + record[1])
        << "rank " << i;
    ASSERT_EQ(sorter.shared(), want.entries[i] >> 2) << "rank " << i;
  }
}

std::string randomText(std::mt19937& random, size_t length,
                       unsigned letters = 4) {
  std::string text(length, ' ');
  for (char& character : text) character = "ACGT"[random() % letters];
  return text;
}

std::string repeated(const std::string& period, size_t length) {
  std::string text;
  while (text.size() < length) text += period;
  return text.substr(0, length);
}

class SuffixSorters : public testing::Test {
 protected:
  // The files that an ArrayMaker writes which may hold `most` positions and
  // parts the work as for `threads` threads.
  Files made(const Inputs& inputs, size_t most = kAll, size_t threads = 1) {
    const TemporaryFolder folder;
    const kit::DataFolder data(folder.path(""), "x");
    data.create(false);
    kit::ArrayMaker maker(data, textOf(inputs), {.withLcp = true}, {},
                          {.positions = most}, threads);
    for (size_t tasks; (tasks = maker.beginStage()) > 0;) {
      for (size_t task = tasks; task > 0; task--) maker.run(task - 1, buffers_);
    }
    return {folder.read("x.ST/x_0.stpsa"), folder.read("x.ST/x_0.stlcp")};
  }

  void expectSlowOrder(const Inputs& inputs) {
    SCOPED_TRACE(testing::PrintToString(inputs));
    const PlainArray want = plainArray(inputs);
    ASSERT_NO_FATAL_FAILURE(expectWholeSorterGives(want, inputs));
    const Files files = made(inputs);
    ASSERT_TRUE(files.records == bytesOf(want.records));
    ASSERT_TRUE(files.entries == bytesOf(want.entries));
  }

  kit::SortBuffers buffers_;  // of use for one array after the other
};

TEST_F(SuffixSorters, SortEqualInputsAndEveryPairOfShortOnes) {
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

TEST_F(SuffixSorters, SortRandomCollections) {
  for (unsigned seed = 0; seed < 600; seed++) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto letters = 1 + static_cast<unsigned>(random() % 4);
    const auto longest = 1 + random() % (seed % 9 == 0 ? 700 : 70);
    Inputs inputs;
    for (auto left = 1 + random() % 12; left > 0; left--) {
      std::string input = randomText(random, 1 + random() % longest, letters);
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

// Matches too long for keys, met in more copies than are compared one by one,
// by pairs, and up to the ends of their inputs.
TEST_F(SuffixSorters, SortLongMatches) {
  std::mt19937 random(5);
  const std::string stretch = randomText(random, 1500);
  const std::string other = randomText(random, 3000);
  Inputs copies;
  for (size_t i = 0; i < 70; i++) {
    copies.push_back(stretch.substr(i, 400) + "ACGT"[i % 4]);
  }
  for (const Inputs& inputs :
       {copies, Inputs{stretch + "A" + stretch + "C" + stretch},
        Inputs{other + stretch, stretch, stretch + other, other},
        Inputs{repeated("AC", 3000), repeated("CA", 2999)}}) {
    ASSERT_NO_FATAL_FAILURE(expectSlowOrder(inputs));
  }
}

// However the work is parted, and whichever sorter does it.
TEST_F(SuffixSorters, GiveTheSameForAnyMemoryAndThreads) {
  std::mt19937 random(6);
  const std::string text = randomText(random, 600'000);
  const Inputs inputs = {text.substr(0, 599'000), "A", "CG",
                         text.substr(300'000, 5'000), std::string(40, 'A')};
  const Files files = made(inputs);
  EXPECT_EQ(files, made(inputs, kAll, 3));
  EXPECT_EQ(files, made(inputs, 50'000, 2));
  EXPECT_EQ(files, made(inputs, 1));

  const kit::PsaText psa = textOf(inputs);
  const kit::InputFinder finder(psa);
  kit::SuffixSorter sorter(psa, finder);
  const auto* record = reinterpret_cast<const uint32_t*>(files.records.data());
  const auto* entry = reinterpret_cast<const uint32_t*>(files.entries.data());
  for (size_t i = 0; i < psa.characters; i++, record += 4, entry++) {
    ASSERT_EQ(sorter.next(), psa.inputs[record[0] >> 2].begin + record[1]);
    ASSERT_EQ(sorter.shared(), *entry >> 2) << "rank " << i;
  }
}

// Where work grows with the square of the repeats these take hours.
TEST_F(SuffixSorters, TakeNoLongerForRepeats) {
  std::mt19937 random(7);
  const std::string period = repeated("GATTACAGATTCCA", 200'000);
  const std::string genome = randomText(random, 40'000);
  for (const Inputs& inputs :
       {Inputs{std::string(1'000'000, 'A')},
        Inputs(200, period.substr(0, 5000)),
        Inputs(8, std::string(100'000, 'T')), Inputs(2, period),
        Inputs{repeated(randomText(random, 5000), 1'000'000)},
        Inputs(100, genome), Inputs(2, randomText(random, 500'000))}) {
    const Files files = made(inputs, kAll, 2);
    const auto* entry = reinterpret_cast<const uint32_t*>(files.entries.data());
    uint32_t longest = 0;
    for (size_t i = files.entries.size() / 4; i > 0; i--) {
      longest = std::max(longest, *entry++);
    }
    const size_t length = inputs[0].size();
    if (inputs.size() > 1) {
      EXPECT_EQ(longest, 4 * length);
    } else {
      EXPECT_GT(longest, 4 * (length - 5001));
    }
  }
}

}  // namespace
