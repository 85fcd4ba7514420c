// Every small collection, in every way in which the engine can go, against a
// plain sort of all suffixes.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "support/engine.h"
#include "support/inputs.h"

namespace {

constexpr int kBatch = 3;  // records, so that most batches are cut

// Which need not count alike.
constexpr Engine kOtherEngines[] = {
    {"without keys", palvor::Processor::kBest, false, false, false},
    {"heap", palvor::Processor::kBest, false, true},
    {"heap without keys", palvor::Processor::kPortable, false, true, false},
};

// What any merge of a collection must give.
class Expected {
 public:
  explicit Expected(const Collection& collection) : texts_(collection.texts) {
    for (const PlainArray& array : plainArrays(collection)) {
      records_.insert(records_.end(), array.records.begin(),
                      array.records.end());
    }
    std::sort(records_.begin(), records_.end());
  }

  // Each suffix once, in order, with true entries.
  void expectIn(const Merged& merged) const {
    std::vector<Record> sorted = merged.records;
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(sorted, records_);
    for (size_t i = 1; i < merged.records.size(); i++) {
      const std::string_view before = textOf(merged.records[i - 1]);
      const std::string_view text = textOf(merged.records[i]);
      ASSERT_LE(before, text) << i;
      ASSERT_EQ(merged.entries[i], slowEntry(before, text)) << i;
    }
  }

  // Equal suffixes go by input number, whatever order they came in.
  void expectByNumber(const Merged& merged) const {
    for (size_t i = 1; i < merged.records.size(); i++) {
      if (textOf(merged.records[i - 1]) != textOf(merged.records[i])) continue;
      ASSERT_LT(merged.records[i - 1][0] >> 2, merged.records[i][0] >> 2);
    }
  }

 private:
  std::string_view textOf(const Record& record) const {
    return std::string_view(texts_[record[0] >> 2]).substr(record[1]);
  }

  std::vector<std::string> texts_;
  std::vector<Record> records_;
};

void expectSame(const Merged& merged, const Merged& other) {
  ASSERT_EQ(merged.records, other.records);
  ASSERT_EQ(merged.entries, other.entries);
  ASSERT_EQ(countsOf(merged.report.cost), countsOf(other.report.cost));
}

void expectAllRight(const Collection& collection) {
  SCOPED_TRACE(testing::PrintToString(collection.texts) +
               testing::PrintToString(collection.parts));
  const DataFolder folder(collection);
  const Expected expected(collection);
  palvor::MergeOptions options = optionsFor(folder, 2);
  options.strings = palvor::loadStrings(options);
  const Merged walked = mergeToMemory(withEngine(options, kWalk));
  ASSERT_NO_FATAL_FAILURE(expected.expectIn(walked));
  for (const Engine& engine : kStandIns) {
    SCOPED_TRACE(engine.name);
    ASSERT_NO_FATAL_FAILURE(
        expectSame(mergeToMemory(withEngine(options, engine), kBatch), walked));
  }
  for (const Engine& engine : kOtherEngines) {
    SCOPED_TRACE(engine.name);
    const Merged merged = mergeToMemory(withEngine(options, engine), kBatch);
    ASSERT_NO_FATAL_FAILURE(expected.expectIn(merged));
    if (!engine.heap) {
      ASSERT_EQ(merged.records, walked.records);
    } else if (collection.parts.empty()) {
      expected.expectByNumber(merged);
    }
  }
  SCOPED_TRACE("LCPs are read");
  options.readLcps = true;
  const Merged best = mergeToMemory(options, kBatch);
  ASSERT_NO_FATAL_FAILURE(
      expectSame(best, mergeToMemory(withEngine(options, kWalk))));
  ASSERT_EQ(best.records, walked.records);
  ASSERT_EQ(best.entries, walked.entries);
}

// Each string with its own array, all in one, and the first in one of its own.
void expectAllRightInParts(const std::vector<std::string>& texts) {
  const int count = static_cast<int>(texts.size());
  ASSERT_NO_FATAL_FAILURE(expectAllRight({texts}));
  ASSERT_NO_FATAL_FAILURE(expectAllRight({texts, {count}}));
  if (count < 3) return;
  ASSERT_NO_FATAL_FAILURE(expectAllRight({texts, {1, count - 1}}));
}

TEST(Exhaustive, OneString) {
  for (const std::string& text : textsUpTo(5, "AT")) {
    ASSERT_NO_FATAL_FAILURE(expectAllRight({{text}}));
  }
}

TEST(Exhaustive, TwoStrings) {
  const std::vector<std::string> texts = textsUpTo(3, "AT");
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      ASSERT_NO_FATAL_FAILURE(expectAllRightInParts({a, b}));
    }
  }
}

TEST(Exhaustive, TwoStringsBehindALongPrefix) {
  const std::string prefix(31, 'A');
  const std::vector<std::string> texts = textsUpTo(2, "AT");
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      ASSERT_NO_FATAL_FAILURE(expectAllRight({{prefix + a, prefix + b}}));
    }
  }
}

TEST(Exhaustive, ThreeStrings) {
  const std::vector<std::string> texts = textsUpTo(2, "AT");
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      for (const std::string& c : texts) {
        ASSERT_NO_FATAL_FAILURE(expectAllRightInParts({a, b, c}));
      }
    }
  }
}

// As many streams as rows have room for, and more, which are kept in blocks.
TEST(Exhaustive, AllStringsAtOnce) {
  std::vector<std::string> texts = textsUpTo(5, "AT");
  for (int doubled = 0; doubled < 3; doubled++) {
    ASSERT_NO_FATAL_FAILURE(expectAllRight({texts}));
    const std::vector<std::string> before = texts;
    for (const std::string& text : before) {
      texts.push_back(std::string(31, 'A') + text);
    }
  }
}

}  // namespace
