// K-mers counted range by range, and while merging, are those that the merged
// array has; these are compared with k-mers written down one by one elsewhere.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "kit/answers/made_collection.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/range_kmers.h"

namespace {

using testing::HasSubstr;

// The merged order of a collection, in memory.
struct Order {
  explicit Order(const MadeCollection& made)
      : inputs(made.folder().path("d.ST/d"), 0), genomes(inputs, "") {
    kit::MergedArray(inputs, made.folder().path("m.ST/m"))
        .pass("reading", [&](std::span<const kit::Suffix> some,
                             std::span<const kit::LcpEntry> theirs) {
          suffixes.insert(suffixes.end(), some.begin(), some.end());
          entries.insert(entries.end(), theirs.begin(), theirs.end());
        });
  }

  std::span<const kit::Suffix> suffixesOf(size_t from, size_t to) const {
    return std::span(suffixes).subspan(from, to - from);
  }
  std::span<const kit::LcpEntry> entriesOf(size_t from, size_t to) const {
    return std::span(entries).subspan(from, to - from);
  }

  kit::MergedInputs inputs;
  kit::Genomes genomes;
  std::vector<kit::Suffix> suffixes;
  std::vector<kit::LcpEntry> entries;
};

// Places to cut at, 0 and the end included, some of them twice.
std::vector<size_t> randomCuts(std::mt19937& random, size_t size) {
  std::vector<size_t> cuts = {0, size};
  const size_t most = below(random, 3) == 0 ? size : 6;
  for (size_t n = below(random, most + 1); n > 0; n--) {
    cuts.push_back(below(random, size + 1));
  }
  std::sort(cuts.begin(), cuts.end());
  return cuts;
}

kit::KmerCounts countInRanges(const Order& order, kit::KmerLengths k,
                              const std::vector<size_t>& cuts,
                              std::mt19937& random) {
  const bool canonical = order.inputs.bothStrands();
  const auto palindromes = kit::palindromesFor(order.inputs, k, canonical);
  const uint32_t genomes = order.genomes.count();
  kit::KmerTally tally(k, genomes, canonical);
  kit::RangeSeams seams(k, genomes, palindromes, tally);
  for (size_t c = 0; c + 1 < cuts.size(); c++) {
    kit::RangeKmers range(order.inputs, order.genomes, k, palindromes);
    for (size_t from = cuts[c]; from < cuts[c + 1];) {
      const size_t to = from + 1 + below(random, cuts[c + 1] - from);
      range.take(order.suffixesOf(from, to), order.entriesOf(from, to));
      from = to;
    }
    const kit::RangeEdges edges = range.finish(tally);
    const bool isThere = cuts[c] < order.entries.size();
    seams.take(edges, isThere ? order.entries[cuts[c]] : 0);
  }
  seams.finish();
  return tally.result();
}

TEST(RangeKmers, AreThoseOfTheWholeOrderHoweverItIsCut) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, seed % 4 == 0 ? 200 : 25),
                              seed % 3 == 0 ? "" : "--strands both");
    const Order order(made);
    for (int times = 0; times < 24; times++) {
      const auto min = static_cast<uint32_t>(1 + below(random, 9));
      const kit::KmerLengths k = {
          min, min + static_cast<uint32_t>(below(random, 60))};
      kit::KmerSpectrum whole(
          order.inputs, order.genomes, k,
          kit::palindromesFor(order.inputs, k, order.inputs.bothStrands()));
      whole.take(order.suffixes, order.entries);
      const kit::KmerCounts expected = whole.finish().result();
      const auto cuts = randomCuts(random, order.suffixes.size());
      const kit::KmerCounts counted = countInRanges(order, k, cuts, random);
      for (uint32_t n = k.min; n <= k.max; n++) {
        ASSERT_TRUE(std::ranges::equal(counted.of(n), expected.of(n)))
            << n << ": " << testing::PrintToString(counted.of(n)) << " not "
            << testing::PrintToString(expected.of(n)) << ", cut at "
            << testing::PrintToString(cuts);
      }
    }
  }
}

TEST(CountingMerge, TellsWhatTheMergedArrayDoes) {
  for (unsigned seed = 1; seed <= 10; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, seed % 3 == 0 ? 300 : 60),
                              seed % 4 == 0 ? "--lcp" : "--lcp --strands both");
    const std::string k = seed % 2 == 0 ? " --min-k 1 --max-k 40"
                                        : " --min-k 3 --max-k 70 --json";
    const std::string expected = made.expect("pangenome", k);
    EXPECT_EQ(made.expect("pangenome", k + " -j 3"), expected);
    std::filesystem::remove_all(made.folder().path("m.ST"));
    for (const char* ranges :
         {"", "-j 2", "--ranges 3", "--ranges 40 -j 2 -Z"}) {
      SCOPED_TRACE(ranges);
      EXPECT_EQ(made.expect("merge", "--pangenome - " + k + " " + ranges),
                expected);
      EXPECT_FALSE(std::filesystem::exists(made.folder().path("m.ST")));
    }
    if (HasFailure()) break;
  }
}

TEST(CountingMerge, WritesATableOfGroupsToAFile) {
  const MadeCollection made({{"a.fa", {{"x", "ACCGT"}, {"y", "GATTACA"}}},
                             {"b.fa", {{"z", "GATTC"}}}},
                            "--strands both");
  const std::string options =
      " --table growth --max-k 4 --quorum 0.5 --no-canonical --groups " +
      made.folder().write("groups.tsv", "x\tone\ny\ttwo\nz\ttwo\n");
  const std::string path = made.folder().path("table");
  const std::string expected = made.expect("pangenome", options);
  EXPECT_EQ(made.expect("merge", "--pangenome " + path + options), "");
  EXPECT_EQ(made.folder().read("table"), expected);
}

TEST(CountingMerge, RefusesWhatItCannotDo) {
  const MadeCollection made({{"a.fa", {{"x", "ACCGT"}}}}, "");
  const auto refused = [&](const std::string& options) {
    const Outcome outcome = made.run("merge", options);
    EXPECT_NE(outcome.status, 0) << options;
    return outcome.err;
  };
  EXPECT_THAT(refused("--pangenome - --canonical"), HasSubstr("both strands"));
  EXPECT_THAT(refused("--pangenome - --min-k 9 --max-k 8"),
              HasSubstr("--min-k 9 is more than --max-k 8"));
  EXPECT_THAT(refused("--min-k 9"), HasSubstr("--pangenome"));
  EXPECT_THAT(refused("--pangenome - --trees"), HasSubstr("--trees"));
  EXPECT_THAT(refused("--pangenome " + made.folder().path("no/file")),
              HasSubstr("no/file"));
  // Arrays in wrong order, and of one suffix less.
  const std::string array = made.folder().read("d.ST/d_0.stpsa");
  made.folder().write("d.ST/d_0.stpsa", array.substr(16) + array.substr(0, 16));
  EXPECT_THAT(refused("--pangenome -"), HasSubstr("order"));
  made.folder().write("d.ST/d_0.stpsa", array.substr(16));
  EXPECT_THAT(refused("--pangenome -"), HasSubstr("suffix"));
}

}  // namespace
