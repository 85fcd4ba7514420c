// palvor-kit shared through the real programs, against all substrings.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kit/answers/all_substrings.h"
#include "kit/answers/made_collection.h"

namespace {

using testing::HasSubstr;

std::set<uint32_t> genomesOf(const MadeCollection& made,
                             const std::set<Stand>& stands) {
  std::set<uint32_t> genomes;
  for (const Stand& stand : stands) {
    genomes.insert(made.pieces()[stand.piece].genome);
  }
  return genomes;
}

std::string longestShared(const MadeCollection& made, bool both,
                          size_t fewest) {
  size_t longest = 0;
  const auto substrings = substringsOf(made, both);
  for (const auto& [text, stands] : substrings) {
    if (genomesOf(made, stands).size() >= fewest) {
      longest = std::max(longest, text.size());
    }
  }
  std::string table =
      "substring\tlength\tgenomes\tchrom\tstart\tend\tstrand\tgenome\n";
  int number = 0;
  for (const auto& [text, stands] : substrings) {
    const size_t genomes = genomesOf(made, stands).size();
    if (text.size() < longest || genomes < fewest) continue;
    if (stands.begin()->reverse) continue;
    number++;
    const bool palindrome = text == reverseComplementOf(text);
    for (const Stand& stand : stands) {
      if (palindrome && stand.reverse) continue;
      const Piece& piece = made.pieces()[stand.piece];
      const size_t start = piece.offset + stand.start;
      table +=
          fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\n", number, text.size(),
                      genomes, piece.record, start, start + text.size(),
                      stand.reverse ? "-" : "+", piece.file);
    }
  }
  return table;
}

// Once in each genome; the line of a substring that cannot be made longer.
std::set<std::string> uniqueMatches(const MadeCollection& made, bool both,
                                    size_t fewest, size_t shortest) {
  std::set<std::string> lines;
  const auto substrings = substringsOf(made, both);
  for (const auto& [text, stands] : substrings) {
    const size_t genomes = genomesOf(made, stands).size();
    if (text.size() < shortest || genomes < fewest || genomes < stands.size() ||
        stands.begin()->reverse) {
      continue;
    }
    bool longer = false;
    for (const char c : std::string("ACGT")) {
      for (const std::string& more : {text + c, c + text}) {
        const auto found = substrings.find(more);
        longer = longer || (found != substrings.end() &&
                            found->second.size() == stands.size());
      }
    }
    if (longer) continue;
    std::string starts, strands, records;
    auto next = stands.begin();
    for (uint32_t g = 0; g < made.genomes(); g++) {
      const Piece* piece =
          next == stands.end() ? nullptr : &made.pieces()[next->piece];
      if (g > 0) {
        starts += ",";
        strands += ",";
        records += ",";
      }
      if (piece == nullptr || piece->genome != g) continue;
      starts += std::to_string(piece->offset + next->start);
      strands += next->reverse ? "-" : "+";
      records += piece->record;
      ++next;
    }
    lines.insert(
        fmt::format("{}\t{}\t{}\t{}", text.size(), starts, strands, records));
  }
  return lines;
}

std::vector<SequenceFile> someFiles(std::mt19937& random) {
  std::vector<SequenceFile> files;
  while (files.size() < 2) files = randomFiles(random, 40);
  return files;
}

TEST(Shared, FindsTheLongestSubstrings) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 3 != 0;
    const MadeCollection made(someFiles(random), both ? "--strands both" : "");
    const std::string expected = longestShared(made, both, made.genomes());
    EXPECT_EQ(made.expect("shared", ""), expected);
    EXPECT_EQ(made.expect("shared", "-j 2"), expected);
    EXPECT_EQ(made.expect("shared", "--in-at-least 2"),
              longestShared(made, both, 2));
    if (HasFailure()) break;
  }
}

TEST(Shared, FindsMaximalUniqueMatches) {
  size_t matches = 0;
  for (unsigned seed = 1; seed <= 60; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 3 != 0;
    const MadeCollection made(someFiles(random), both ? "--strands both" : "");
    const size_t fewest = seed % 2 == 0 ? made.genomes() : 2;
    const size_t shortest = 1 + seed % 5;
    const std::string options = fmt::format(
        "--mums --min-length {} --in-at-least {}", shortest, fewest);
    const std::string out = made.expect("shared", options);
    EXPECT_EQ(made.expect("shared", options + " -j 2"), out);
    const auto lines = linesOf(out);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()),
              uniqueMatches(made, both, fewest, shortest));
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(),
              lines.size());
    matches += lines.size();
    if (HasFailure()) break;
  }
  EXPECT_GT(matches, 100);
}

TEST(Shared, PrintsJsonAndRefusesWhatCannotBe) {
  const MadeCollection made(
      {{"a.fa", {{"x", "GATTACA"}}}, {"b.fa", {{"y", "CCTGTAACC"}}}},
      "--strands both");
  EXPECT_EQ(made.expect("shared", "--mums --min-length 4 --json"),
            "{\"length\":5,\"places\":[{\"genome\":\"" +
                made.folder().path("a.fa") +
                "\",\"chrom\":\"x\",\"start\":2,\"strand\":\"+\"},{\"genome\":"
                "\"" +
                made.folder().path("b.fa") +
                "\",\"chrom\":\"y\",\"start\":2,\"strand\":\"-\"}]}\n");
  EXPECT_THAT(made.run("shared", "--in-at-least 3").err,
              HasSubstr("--in-at-least 3: there are only 2 genomes"));
  EXPECT_THAT(made.run("shared", "--min-length 3").err,
              HasSubstr("--min-length requires --mums"));
  const MadeCollection one({{"a.fa", {{"x", "GATTACA"}}}}, "");
  EXPECT_THAT(one.run("shared", "").err, HasSubstr("there is one genome only"));
}

}  // namespace
