// Merges in ranges, put together, against one merge.

#include "palvor/range/ranges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "palvor/range/cuts.h"
#include "support/engine.h"
#include "support/inputs.h"
#include "support/relatives.h"

namespace {

using palvor::chooseCuts;
using palvor::cutRanges;
using palvor::MergeRange;

void append(Merged& all, Merged part, palvor::LcpEntry entry) {
  if (!part.entries.empty()) part.entries[0] = entry;
  all.records.insert(all.records.end(), part.records.begin(),
                     part.records.end());
  all.entries.insert(all.entries.end(), part.entries.begin(),
                     part.entries.end());
}

Merged mergeInRanges(palvor::MergeOptions options,
                     const std::vector<uint64_t>& cuts) {
  Merged all;
  for (MergeRange& range :
       cutRanges(streamFilesOf(options), *options.strings, cuts)) {
    const palvor::LcpEntry entry = range.entry;
    const int64_t suffixes = range.suffixes();
    options.range = std::make_shared<const MergeRange>(std::move(range));
    Merged part = mergeToMemory(options);
    EXPECT_EQ(static_cast<int64_t>(part.records.size()), suffixes);
    append(all, std::move(part), entry);
  }
  return all;
}

void expectSame(const Merged& merged, const Merged& other) {
  ASSERT_EQ(merged.records, other.records);
  ASSERT_EQ(merged.entries, other.entries);
}

uint64_t keyOf(const Record& record) {
  return uint64_t{record[2]} << 32 | record[3];
}

// Before and behind every key there is.
std::vector<uint64_t> allCuts(const Merged& merged) {
  std::vector<uint64_t> cuts;
  for (const Record& record : merged.records) {
    for (const uint64_t cut : {keyOf(record), keyOf(record) + 1}) {
      if (cut != 0 && (cuts.empty() || cuts.back() < cut)) cuts.push_back(cut);
    }
  }
  return cuts;
}

void expectRangesAsOne(const Collection& collection) {
  SCOPED_TRACE(testing::PrintToString(collection.texts) +
               testing::PrintToString(collection.parts));
  const DataFolder folder(collection);
  palvor::MergeOptions options = optionsFor(folder, 7);
  options.strings = palvor::loadStrings(options);
  options.stretches = palvor::findStretches(options, *options.strings);
  const Merged whole = mergeToMemory(options);
  std::vector<uint64_t> every = allCuts(whole);
  every.resize(std::min<size_t>(every.size(), 300));
  ASSERT_NO_FATAL_FAILURE(expectSame(mergeInRanges(options, every), whole));
  for (const int ranges : {2, 7, 200}) {
    const auto cuts = chooseCuts(streamFilesOf(options), ranges);
    ASSERT_LT(static_cast<int>(cuts.size()), ranges);
    ASSERT_NO_FATAL_FAILURE(expectSame(mergeInRanges(options, cuts), whole));
    options.readLcps = !options.readLcps;
  }
}

TEST(Ranges, AreTheWholeWithSuffixesThatAreEqual) {
  for (uint32_t seed = 0; seed < 24; seed++) {
    const int strings = static_cast<int>(2 + seed % 9);
    ASSERT_NO_FATAL_FAILURE(
        expectRangesAsOne(relatives(seed, strings, seed % 2 ? "AC" : "ACGT")));
  }
  ASSERT_NO_FATAL_FAILURE(expectRangesAsOne(relatives(101, 20, "AC")));
  ASSERT_NO_FATAL_FAILURE(expectRangesAsOne(relatives(102, 66, "AT")));
}

TEST(Ranges, AreTheWholeWithSeveralInputsToAnArray) {
  for (uint32_t seed = 200; seed < 206; seed++) {
    Collection collection = relatives(seed, 12, "AC");
    collection.parts = {3, 1, 0, 3, 5};
    // The strings of the first and the fourth array are the same.
    for (size_t i = 0; i < 3; i++) {
      collection.texts[4 + i] = collection.texts[i];
    }
    ASSERT_NO_FATAL_FAILURE(expectRangesAsOne(collection));
  }
}

TEST(Ranges, AreTheWholeWithStringsThatAreTheSame) {
  const std::string text = relatives(1, 3, "ACG").texts[2];
  ASSERT_NO_FATAL_FAILURE(expectRangesAsOne({{text, text, text, text}}));
  ASSERT_NO_FATAL_FAILURE(
      expectRangesAsOne({{std::string(100, 'A'), std::string(99, 'A'),
                          std::string(100, 'A'), std::string(40, 'T')}}));
}

// Of a suffix, as a stream's first, the ones before are those of its own array
// alone: here CA of the second string comes first.
TEST(Ranges, OrderEqualSuffixesByTheOnesBeforeThem) {
  const DataFolder folder({{"ACA", "CCA"}});
  palvor::MergeOptions options = optionsFor(folder);
  options.strings = palvor::loadStrings(options);
  const auto ranges =
      cutRanges(streamFilesOf(options), *options.strings,
                std::vector<uint64_t>{uint64_t{0x4000'0000} << 32});
  ASSERT_EQ(ranges.size(), 2U);
  EXPECT_EQ(ranges[0].order, (std::vector<int>{0, 1}));
  EXPECT_EQ(ranges[1].order, (std::vector<int>{1, 0}));
  EXPECT_EQ(ranges[1].entry, slowEntry("ACA", "CA"));
  EXPECT_EQ(ranges[1].suffixes(), 3);
}

// As even as chooseCuts says.
TEST(Ranges, AreEven) {
  std::mt19937 random(5);
  Collection collection;
  for (int i = 0; i < 3; i++) {
    std::string text;
    while (text.size() < 60000) text += "ACGT"[random() % 4];
    collection.texts.push_back(text);
  }
  const DataFolder folder(collection);
  palvor::MergeOptions options = optionsFor(folder);
  options.strings = palvor::loadStrings(options);
  for (const int count : {2, 8, 20}) {
    const palvor::StreamFiles files = streamFilesOf(options);
    const auto ranges =
        cutRanges(files, *options.strings, chooseCuts(files, count));
    ASSERT_EQ(static_cast<int>(ranges.size()), count);
    const double size = 180000.0 / count;
    // Both ends are as far off as a sample stands for.
    const double off = 2 * 180000.0 / std::min(32 * count, 180000 / 512 / 3);
    for (const MergeRange& range : ranges) {
      EXPECT_NEAR(static_cast<double>(range.suffixes()), size, off + 1);
    }
  }
}

// A key with more suffixes than a range is in one; nothing is cut for ever.
TEST(Ranges, KeepAKeyTogether) {
  const DataFolder folder({{std::string(5000, 'A'), std::string(5000, 'T')}});
  palvor::MergeOptions options = optionsFor(folder);
  const auto cuts = chooseCuts(streamFilesOf(options), 50);
  EXPECT_LE(cuts.size(), 3U);
  const DataFolder empty{Collection{}};
  EXPECT_TRUE(chooseCuts(streamFilesOf(optionsFor(empty)), 50).empty());
}

// Not in order, and prefix words that are not those of the strings: whatever
// comes out is all records, and ends.
TEST(Ranges, CoverArraysThatAreNotInOrder) {
  const Collection collection = relatives(3, 6, "ACGT");
  const DataFolder folder(collection);
  std::mt19937 random(7);
  const std::vector<PlainArray> arrays = plainArrays(collection);
  size_t records = 0;
  for (size_t k = 0; k < arrays.size(); k++) {
    std::vector<uint32_t> words;
    for (const Record& record : arrays[k].records) {
      words.insert(words.end(), record.begin(), record.end());
      records++;
    }
    for (size_t w = 2; w < words.size(); w += 2 + random() % 5) {
      if (w % 4 >= 2) words[w] = static_cast<uint32_t>(random());
    }
    folder.writeWords("x_" + std::to_string(k) + ".stpsa", words);
  }
  palvor::MergeOptions options = optionsFor(folder, 5);
  options.strings = palvor::loadStrings(options);
  Merged all = mergeInRanges(options, chooseCuts(streamFilesOf(options), 30));
  EXPECT_EQ(all.records.size(), records);
  std::ranges::sort(all.records);
  EXPECT_EQ(std::ranges::adjacent_find(all.records), all.records.end());
}

std::string failureOf(const DataFolder& folder) {
  const palvor::MergeOptions options = optionsFor(folder);
  const auto strings = palvor::loadStrings(options);
  return errorOf([&] {
           const std::vector<uint64_t> cuts = {uint64_t{0x4000'0000} << 32};
           cutRanges(streamFilesOf(options), *strings, cuts);
         })
      .what();
}

TEST(Ranges, NameTheRecordThatIsNoSuffix) {
  const DataFolder folder({{"ACA", "CCA"}});
  const std::string path = folder.path("x_1.stpsa");
  folder.writeWords("x_1.stpsa", {1 << 2, 3, 0, 0});
  EXPECT_EQ(failureOf(folder), "record 0 of Suffix file " + path +
                                   ": position 3 is not inside input 1 of 3 "
                                   "characters");
  folder.writeWords("x_1.stpsa", {0xFFFFFFFF, 0, 0xC0000000, 0});
  EXPECT_EQ(failureOf(folder),
            "record 0 of Suffix file " + path +
                ": there is no input 1073741823, only 2 inputs");
  std::filesystem::remove(path);
  EXPECT_EQ(failureOf(folder), "can't open Suffix file " + path);
}

// A range that was cut before an array changed.
TEST(Ranges, AreRefusedIfTheirArraysAreOthers) {
  const DataFolder folder({{"GATTACA", "TACA"}});
  palvor::MergeOptions options = optionsFor(folder);
  const auto tooLong = std::make_shared<MergeRange>();
  tooLong->slices = {{0, 7}, {2, 3}};
  tooLong->order = {0, 1};
  options.range = tooLong;
  EXPECT_EQ(errorOf([&] { mergeToMemory(options); }).what(),
            "Suffix file " + folder.path("x_1.stpsa") +
                " ends at record 4, before its slice does");
  tooLong->order = {1, 1};
  EXPECT_STREQ(errorOf([&] { mergeToMemory(options); }).what(),
               "the order of a range's streams holds 1, or holds it twice");
  tooLong->slices = {{0, 7}};
  EXPECT_STREQ(errorOf([&] { mergeToMemory(options); }).what(),
               "a range of 1 streams, but there are 2");
}

}  // namespace
