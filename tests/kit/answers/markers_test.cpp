// palvor-kit markers through the real programs, against all substrings.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kit/answers/all_substrings.h"
#include "kit/answers/made_collection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

size_t genomesAmong(const MadeCollection& made, const std::set<Stand>& stands,
                    const std::set<uint32_t>& genomes) {
  std::set<uint32_t> found;
  for (const Stand& stand : stands) {
    const uint32_t genome = made.pieces()[stand.piece].genome;
    if (genomes.contains(genome)) found.insert(genome);
  }
  return found.size();
}

// Lines without the marker's number.
using Lines = std::multiset<std::string>;

Lines linesOfMarker(const MadeCollection& made, const std::string& text,
                    const std::set<Stand>& stands, size_t in, size_t out) {
  Lines lines;
  const bool palindrome = text == reverseComplementOf(text);
  for (const Stand& stand : stands) {
    if (palindrome && stand.reverse) continue;
    const Piece& piece = made.pieces()[stand.piece];
    const size_t start = piece.offset + stand.start;
    lines.insert(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", text,
                             text.size(), in, out, piece.record, start,
                             start + text.size(), stand.reverse ? "-" : "+",
                             piece.file));
  }
  return lines;
}

// What is so, and would not be with a character less on either side.
Lines markersOf(const MadeCollection& made, const Substrings& substrings,
                const std::set<uint32_t>& ins, const std::set<uint32_t>& outs,
                size_t needed, size_t allowed, size_t longest) {
  Lines lines;
  const auto keeps = [&](const std::string& text) {
    return !text.empty() &&
           genomesAmong(made, substrings.at(text), outs) <= allowed;
  };
  for (const auto& [text, stands] : substrings) {
    const size_t in = genomesAmong(made, stands, ins);
    if (text.size() > longest || in < needed || !keeps(text) ||
        keeps(text.substr(1)) || keeps(text.substr(0, text.size() - 1))) {
      continue;
    }
    const auto first =
        std::find_if(stands.begin(), stands.end(), [&](const Stand& stand) {
          return ins.contains(made.pieces()[stand.piece].genome);
        });
    if (first->reverse) continue;
    lines.merge(linesOfMarker(made, text, stands, in,
                              genomesAmong(made, stands, outs)));
  }
  return lines;
}

// The numbers must count up from 1 as the sequences change.
Lines linesWithoutNumbers(const std::string& out) {
  Lines lines;
  uint64_t last = 0;
  std::string sequence;
  bool header = true;
  for (const std::string& line : linesOf(out)) {
    if (header) {
      EXPECT_EQ(line,
                "marker\tsequence\tlength\tin\tout\tchrom\tstart\tend\tstrand\t"
                "genome");
      header = false;
      continue;
    }
    const size_t tab = line.find('\t');
    lines.insert(line.substr(tab + 1));
    const uint64_t number = std::stoull(line.substr(0, tab));
    const std::string own =
        line.substr(tab + 1, line.find('\t', tab + 1) - tab - 1);
    EXPECT_EQ(number, own == sequence ? last : last + 1);
    last = number;
    sequence = own;
  }
  return lines;
}

std::vector<SequenceFile> someFiles(std::mt19937& random) {
  std::vector<SequenceFile> files;
  while (files.size() < 2) files = randomFiles(random, 40);
  return files;
}

TEST(Markers, AreTheShortestThatTellGroupsApart) {
  size_t all = 0;
  for (unsigned seed = 1; seed <= 80; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 3 != 0;
    const MadeCollection made(someFiles(random), both ? "--strands both" : "");
    std::string table;
    std::set<uint32_t> ins, outs;
    for (uint32_t g = 0; g < made.genomes(); g++) {
      const char* group = "neither";
      if (g < 2) {
        group = g == seed % 2 ? "one" : "two";
      } else if (random() % 4 != 0) {
        group = random() % 2 == 0 ? "one" : "two";
      }
      if (group == std::string("one")) ins.insert(g);
      if (group == std::string("two")) outs.insert(g);
      table += fmt::format("f{}.fa\tgenome{}\t{}\n", g, g, group);
    }
    const std::string groups =
        "--groups " + made.folder().write("groups.tsv", table);
    const double minFraction = seed % 4 == 0 ? 0.5 : 1;
    const double maxFraction = seed % 5 == 0 ? 0.5 : 0;
    const size_t longest = seed % 7 == 0 ? 4 : 1000;
    const std::string options = fmt::format(
        "{} --in one --out two --min-fraction {} --max-fraction {} "
        "--max-length {}",
        groups, minFraction, maxFraction, longest);
    const auto needed = static_cast<size_t>(
        std::ceil(minFraction * static_cast<double>(ins.size())));
    const auto allowed = static_cast<size_t>(
        std::floor(maxFraction * static_cast<double>(outs.size())));
    Lines expected = markersOf(made, substringsOf(made, both), ins, outs,
                               needed, allowed, longest);
    const std::string out = made.expect("markers", options);
    EXPECT_EQ(made.expect("markers", options + " -j 2"), out);
    Lines found = linesWithoutNumbers(out);
    // The table's names are those of the genomes.
    Lines named;
    for (std::string line : expected) {
      const size_t name = line.rfind('\t') + 1;
      const size_t digit = line.rfind('f', line.size() - 4) + 1;
      line = line.substr(0, name) + "genome" + line[digit];
      named.insert(line);
    }
    EXPECT_EQ(found, named);
    all += found.size();
    if (HasFailure()) break;
  }
  EXPECT_GT(all, 300);
}

TEST(Markers, AreUniqueToEachGenome) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 3 != 0;
    const MadeCollection made(someFiles(random), both ? "--strands both" : "");
    const Substrings substrings = substringsOf(made, both);
    Lines expected;
    for (uint32_t g = 0; g < made.genomes(); g++) {
      std::set<uint32_t> others;
      for (uint32_t h = 0; h < made.genomes(); h++) {
        if (h != g) others.insert(h);
      }
      expected.merge(markersOf(made, substrings, {g}, others, 1, 0, 1000));
      if (g < 2) {  // and each alone
        EXPECT_EQ(linesWithoutNumbers(
                      made.expect("markers", fmt::format("--in f{}.fa", g))),
                  markersOf(made, substrings, {g}, others, 1, 0, 1000));
      }
    }
    const std::string out = made.expect("markers", "--unique");
    EXPECT_EQ(linesWithoutNumbers(out), expected);
    EXPECT_EQ(made.expect("markers", "--unique -j 3"), out);
    if (HasFailure()) break;
  }
}

TEST(Markers, PrintsFastaWithFlanks) {
  const MadeCollection made(
      {{"a.fa", {{"x", "NNAAAAGCTTTTNT"}}}, {"b.fa", {{"y", "AAAATCTTTTAGA"}}}},
      "");
  const std::string a = made.folder().path("a.fa");
  EXPECT_EQ(made.expect("markers", "--in a.fa --fasta --flank 2"),
            ">marker_1 x:4-7 " + a + "\naaAAGct\n" + ">marker_2 x:6-8 " + a +
                "\naaGCtt\n");
  EXPECT_EQ(made.expect("markers", "--in a.fa --fasta --flank 9"),
            ">marker_1 x:4-7 " + a + "\naaAAGctttt\n" + ">marker_2 x:6-8 " + a +
                "\naaaaGCtttt\n");
}

TEST(Markers, RefusesGroupsThatTellNothing) {
  const MadeCollection made(
      {{"a.fa", {{"x", "GATT"}}}, {"b.fa", {{"y", "CATT"}}}}, "");
  const std::pair<const char*, const char*> wrong[] = {
      {"", "either --in, with a group or genome, or --unique"},
      {"--unique --in a.fa", "--in excludes --unique"},
      {"--in c.fa", "there is no group and no genome 'c.fa' (see --groups)"},
      {"--in a.fa --out a.fa", "a.fa is in both groups"},
      {"--in a.fa --max-fraction 1", "all genomes of --out may have"},
      {"--in a.fa --max-length 60001", "not in range"},
      {"--in a.fa --flank 3", "--flank requires --fasta"},
  };
  for (const auto& [options, reason] : wrong) {
    SCOPED_TRACE(options);
    const Outcome run = made.run("markers", options);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(reason));
  }
}

}  // namespace
