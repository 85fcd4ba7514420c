// The code for each kind of processor and each number of streams: the same
// files and the same counts as without any of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/engine.h"
#include "support/strains.h"

namespace {

using Options = palvor::MergeOptions;

// Strains of one ancestor that part after `apart` characters at most, some of
// them cut short, so that many suffixes are shorter than their prefix words.
Collection strains(int count, int length, size_t apart) {
  std::mt19937 random(static_cast<unsigned>(count));
  const auto below = [&random](size_t limit) { return random() % limit; };
  std::string ancestor;
  while (ancestor.size() < static_cast<size_t>(length)) {
    ancestor += "ACGT"[below(4)];
  }
  Collection collection;
  for (int i = 0; i < count; i++) {
    std::string text = ancestor.substr(below(3));
    for (size_t at = below(apart); at < text.size(); at += below(apart)) {
      text[at] = "ACGT"[below(4)];
    }
    if (i % 4 == 3) text.resize(1 + below(80));
    collection.texts.push_back(std::move(text));
  }
  return collection;
}

// What a merge writes, and what it counts or ends in.
std::string resultOf(const DataFolder& folder, const Options& options,
                     const Engine& engine) {
  std::string result;
  palvor::MergeObserver observer;
  try {
    const palvor::MergeReport report =
        palvor::merge(withEngine(options, engine), observer);
    result =
        countsOf(report.cost) + ", LCP sum " + std::to_string(report.lcps.sum);
  } catch (const palvor::Error& error) {
    result = error.what();
  }
  for (const char* name : {"x.stpsa", "x.stlcp", "x.stdiv"}) {
    if (folder.holds(name)) result += folder.bytes(name);
  }
  for (int tree = 0; folder.holds("x_" + std::to_string(tree) + ".stree");
       tree++) {
    result += folder.bytes("x_" + std::to_string(tree) + ".stree");
  }
  return result;
}

// Returns what all of them do.
std::string expectAlike(const DataFolder& folder, const Options& options) {
  std::string expected = resultOf(folder, options, kWalk);
  for (const Engine& engine : kStandIns) {
    const std::string result = resultOf(folder, options, engine);
    // Not EXPECT_EQ, which would print megabytes.
    EXPECT_TRUE(result == expected)
        << engine.name << ": " << result.substr(0, 120)
        << "\nexpected: " << expected.substr(0, 120);
  }
  return expected;
}

Options arrayOptions(const DataFolder& folder, bool readLcps = false) {
  Options options = optionsFor(folder);
  options.array = options.lcps = true;
  options.readLcps = readLcps;
  return options;
}

Options treeOptions(const DataFolder& folder, int nodes) {
  Options options = optionsFor(folder);
  options.outputBuffer = nodes;
  return options;
}

// One of unrelated streams breaks the order, at one record or another just
// where a batch for the tree ends: from there on all processors go the same
// way.
TEST(Processors, GoTheSameWayWhereOrderBreaks) {
  Collection collection;
  for (int i = 0; i < 7; i++) {
    collection.texts.push_back(strains(i + 1, 400, 600).texts.front());
  }
  const DataFolder folder(collection);
  // Short suffixes would end the batch sooner.
  std::vector<std::string> arrays;
  for (size_t i = 0; i < collection.texts.size(); i++) {
    const std::string all = folder.bytes("x_" + std::to_string(i) + ".stpsa");
    std::string& array = arrays.emplace_back();
    for (size_t at = 0; at < all.size(); at += 16) {
      uint32_t position = 0;
      all.copy(reinterpret_cast<char*>(&position), 4, at + 4);
      if (position + 32 <= collection.texts[i].size()) {
        array += all.substr(at, 16);
      }
    }
    folder.write("x_" + std::to_string(i) + ".stpsa", array);
  }
  for (size_t record = 20; record < 150; record++) {
    std::string broken = arrays[0];
    broken.replace(16 * record + 8, 8, std::string(8, '\0'));
    folder.write("x_0.stpsa", broken);
    SCOPED_TRACE(record);
    expectAlike(folder, treeOptions(folder, 9000));
  }
}

// Two records of one of the strains have changed places, while suffixes of
// others wait for their order; rows and blocks go on as the list.
TEST(Processors, GoTheSameWayWhereStrainsBreakTheOrder) {
  for (const unsigned streams : {12U, 17U, 65U}) {
    palvor::Genomes genomes(streams);
    Collection collection;
    collection.texts.push_back(genomes.unrelated(600));
    while (collection.texts.size() < streams) {
      const std::string& first = collection.texts.front();
      collection.texts.push_back(genomes.descendant(first, 3));
    }
    const DataFolder folder(collection);
    const std::string array = folder.bytes("x_0.stpsa");
    for (int record = 40; record < 560; record += 100) {
      std::string broken = array;
      const auto at = broken.begin() + 16 * record;
      std::swap_ranges(at, at + 16, at + 16 * 20);
      folder.write("x_0.stpsa", broken);
      const std::string result = expectAlike(folder, arrayOptions(folder));
      EXPECT_TRUE(result.starts_with("comparisons"));
    }
  }
}

// 32 times T are the largest prefix words, as they stand behind the last row.
TEST(Processors, CountNoRowsWithoutASuffix) {
  Collection collection;
  for (size_t streams = 1; streams < 64; streams += streams + 1) {
    collection.texts.resize(streams, "GAC");
    collection.texts[0] = std::string(40, 'T') + "CAG";
    const DataFolder folder(collection);
    expectAlike(folder, arrayOptions(folder));
  }
}

// Copies of one unit that leave it in the same way, before text of their own:
// too many for what comes behind to be put into order beforehand, so that equal
// second keys tell nothing.
TEST(Processors, OrderAlikeWhatHasNoRanks) {
  palvor::Genomes genomes(1);
  const std::string unit = "GAAT" + genomes.unrelated(34);
  Collection collection;
  collection.texts.resize(20);
  collection.texts[0] = unit + "A" + genomes.unrelated(60);
  for (size_t copy = 0; copy < 4300; copy++) {
    std::string text = unit;
    if (copy % 30 == 0) text[8 + genomes.below(30)] = 'T';
    collection.texts[copy % 20] += text + "C" + genomes.unrelated(28);
  }
  const DataFolder folder(collection);
  expectAlike(folder, arrayOptions(folder));
}

// Matches that end within an excerpt, behind it, and far behind it.
TEST(Processors, CompareLongMatchesAlike) {
  Collection collection = strains(6, 12000, 6000);
  collection.texts[0] += collection.texts[1];
  collection.texts[4] += collection.texts[5];
  const DataFolder folder(collection);
  for (const Options& options :
       {arrayOptions(folder), arrayOptions(folder, true),
        treeOptions(folder, 500)}) {
    EXPECT_TRUE(expectAlike(folder, options).starts_with("comparisons"));
  }
}

// Strains that inherit differences, repeats among them: suffixes of one key
// come together, from several streams, more than once from some, and part
// behind one difference or another.
TEST(Processors, OrderStrainsAlike) {
  for (unsigned seed = 1; seed <= 12; seed++) {
    SCOPED_TRACE(seed);
    palvor::Genomes genomes(seed);
    Collection collection;
    std::string first = genomes.unrelated(900);
    first += first.substr(200, 300) + genomes.unrelated(50);
    collection.texts.push_back(first + first.substr(100, 250));
    while (collection.texts.size() < 2 + 3 * seed) {
      const std::string& parent =
          collection.texts[genomes.below(collection.texts.size())];
      std::string child = genomes.descendant(parent, 2 + seed);
      if (genomes.below(4) == 0) child += child.substr(genomes.below(500), 400);
      collection.texts.push_back(std::move(child));
    }
    const DataFolder folder(collection);
    Options small = arrayOptions(folder);
    small.streamBuffer = 16 * 5 * static_cast<int>(seed);  // 5 records or more
    for (const Options& options :
         {arrayOptions(folder), small, treeOptions(folder, 700)}) {
      EXPECT_TRUE(expectAlike(folder, options).starts_with("comparisons"));
    }
  }
}

// Entries that tell of more common bits than there are.
TEST(Processors, AreMisledAlike) {
  Collection collection = strains(6, 6000, 600);
  for (const size_t i : {size_t{0}, size_t{4}})
    collection.texts[i] += collection.texts[i + 1];
  const DataFolder folder(collection);
  for (const uint32_t bits : {200U, 201U, 300U, 301U, 400U, 401U}) {
    for (const char* name : {"x_0.stlcp", "x_4.stlcp"}) {
      std::string entries = folder.bytes(name);
      for (size_t at = 0; at < entries.size(); at += 4) {
        uint32_t entry = 0;
        entries.copy(reinterpret_cast<char*>(&entry), 4, at);
        if (entry < 2 * 64) continue;
        entry = 2 * bits + 1;
        entries.replace(at, 4, reinterpret_cast<const char*>(&entry), 4);
      }
      folder.write(name, entries);
    }
    expectAlike(folder, arrayOptions(folder, true));
  }
}

class ProcessorsWithStreams : public testing::TestWithParam<int> {};

TEST_P(ProcessorsWithStreams, WriteAndCountAlike) {
  const int streams = GetParam();
  const DataFolder folder(strains(streams, 200 + 6000 / streams, 600));
  Options cut = optionsFor(folder, 514);
  cut.array = true;
  for (const Options& options :
       {arrayOptions(folder), arrayOptions(folder, true), cut,
        treeOptions(folder, 500)}) {
    EXPECT_TRUE(expectAlike(folder, options).starts_with("comparisons"));
  }
}

// On both sides of every number that rows have room for.
INSTANTIATE_TEST_SUITE_P(Processors, ProcessorsWithStreams,
                         testing::Values(1, 2, 4, 5, 8, 9, 16, 17, 32, 33, 63,
                                         64, 65, 130),
                         testing::PrintToStringParamName());

}  // namespace
