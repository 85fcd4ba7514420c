// Merged orders that cannot be used, or are not what they claim to be, are
// refused by all commands that answer from them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "kit/answers/made_collection.h"
#include "support/data_folder.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::vector<SequenceFile> kFiles = {
    {"a.fa",
     {{"x", "GATTACAGATTACACATTACAGATTACAGGATTACAACCA"}, {"y", "GATTA"}}},
    {"b.fa", {{"z", "CATTACAGATTACAGATTA"}}}};

class MergedOrder : public testing::Test {
 protected:
  void expectRefused(const std::vector<std::string>& reasons) const {
    const Outcome run = made_.run("pangenome", "");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    for (const std::string& reason : reasons) {
      EXPECT_THAT(run.err, HasSubstr(reason));
    }
  }

  void set(const std::string& name, size_t word, uint32_t value) const {
    std::string bytes = made_.folder().read(name);
    std::memcpy(bytes.data() + 4 * word, &value, 4);
    made_.folder().write(name, bytes);
  }

  void cut(const std::string& name, size_t bytes) const {
    made_.folder().write(name, made_.folder().read(name).substr(0, bytes));
  }

  MadeCollection made_{kFiles, ""};
};

TEST_F(MergedOrder, IsRefusedIfFilesAreMissingOrUnfinished) {
  cut("m.ST/m.stlcp", 4 * 63 + 1);
  expectRefused({"m.stlcp: 253 bytes are not a whole number of records"});
  cut("m.ST/m.stlcp", 4 * 63);
  expectRefused({"m.stlcp: 63 records, expected 64", "unfinished"});
  cut("m.ST/m.stpsa", 16 * 10);
  expectRefused({"m.stpsa: 10 records, expected 64", "unfinished"});
  made_.folder().write("d.ST/d.inputs.tsv", "0\t0\ta.fa\tx\t0\t40\t+\n");
  expectRefused({"d.inputs.tsv: 1 inputs, expected 3"});
  std::remove(made_.folder().path("d.ST/d.inputs.tsv").c_str());
  expectRefused({"d.inputs.tsv: there is no table of inputs", "no genome"});
}

TEST_F(MergedOrder, IsRefusedIfThereIsNoLcpFile) {
  std::remove(made_.folder().path("m.ST/m.stlcp").c_str());
  expectRefused({"m.stlcp: not there; palvor -a -l writes it"});
}

TEST_F(MergedOrder, IsRefusedIfItIsOfOtherInputs) {
  // The same lengths, other strings.
  std::vector<SequenceFile> others = kFiles;
  for (SequenceFile& file : others) {
    for (SequenceRecord& record : file.records) {
      record.text = reverseComplementOf(record.text);
    }
  }
  const MadeCollection other(others, "");
  made_.folder().write("m.ST/m.stlcp", other.folder().read("m.ST/m.stlcp"));
  expectRefused({"m.stlcp: record ", "is not what the suffixes of "});
  made_.folder().write("m.ST/m.stpsa", other.folder().read("m.ST/m.stpsa"));
  expectRefused({"m.stpsa: record ", "the array is of other inputs"});
}

TEST_F(MergedOrder, WithoutPrefixesFromAHeapIsRefused) {
  const MadeCollection heap(kFiles, "", "-a -l -H");
  const Outcome run = heap.run("pangenome", "");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("m.stlcp: record "));
}

TEST_F(MergedOrder, IsRefusedIfARecordCannotBe) {
  const std::string array = made_.folder().read("m.ST/m.stpsa");
  const std::string lcps = made_.folder().read("m.ST/m.stlcp");
  const auto damaged = [&](const std::string& name, size_t word, uint32_t value,
                           const std::string& reason) {
    SCOPED_TRACE(reason);
    made_.folder().write("m.ST/m.stpsa", array);
    made_.folder().write("m.ST/m.stlcp", lcps);
    set(name, word, value);
    expectRefused({name, reason});
  };
  damaged("m.ST/m.stpsa", 4 * 20, 3 << 2, "record 20: there is no input 3");
  damaged("m.ST/m.stpsa", 4 * 20, 0xFFFFFFFF, "record 20: there is no input");
  damaged("m.ST/m.stpsa", 4 * 20 + 1, 0xFFFFFFF0, "record 20: input ");
  damaged("m.ST/m.stpsa", 4 * 20 + 2, 0, "record 20: not in ascending order");
  for (const uint32_t entry : {0U, 1U, 5U, 0x7FFFFFFEU, 0xFFFFFFFFU, 200U}) {
    damaged("m.ST/m.stlcp", 20, entry, "record 20: entry ");
  }
}

TEST_F(MergedOrder, IsRefusedIfStrandsAreMissing) {
  const MadeCollection both(kFiles, "--strands both");
  std::string table = both.folder().read("d.ST/d.inputs.tsv");
  table[table.size() - 2] = '+';
  both.folder().write("d.ST/d.inputs.tsv", table);
  EXPECT_THAT(both.run("pangenome", "").err,
              HasSubstr("d.inputs.tsv: some inputs are there on both strands"));
}

// Where the first inputs only were merged, -N says so.
TEST_F(MergedOrder, OfTheFirstInputsIsTakenWithN) {
  const std::vector<SequenceFile> files = {{"a.fa", {{"x", "GATTACA"}}},
                                           {"b.fa", {{"y", "GATTC"}}}};
  const MadeCollection made(files, "", "-a -l -N 1");
  EXPECT_THAT(made.run("pangenome", "").err,
              HasSubstr("m.stpsa: 7 records, expected 12"));
  EXPECT_EQ(made.expect("pangenome",
                        "-N 1 --min-k 7 --max-k 7 --table "
                        "histogram"),
            "k\tgenomes\tkmers\n7\t1\t1\n");
  made.folder().write("d.ST/d.stlengths", bytesOf({7, 0}));
  EXPECT_THAT(made.run("pangenome", "").err,
              HasSubstr("d.stlengths: input 1 has 0 characters, expected 1 to "
                        "1073741823"));
  made.folder().write("d.ST/d.stlengths", "");
  EXPECT_THAT(made.run("pangenome", "").err,
              HasSubstr("d.stlengths: there are no inputs"));
  made.folder().write("d.ST/d.stlengths", bytesOf({7, 5}));
  EXPECT_THAT(made.run("pangenome", "-N 3").err,
              HasSubstr("d.stlengths: there are only 2 inputs, not 3"));
}

TEST(MergedParts, AnswerAsTheMergedArrayDoes) {
  std::mt19937 random(5);
  std::vector<SequenceFile> files = randomFiles(random, 200);
  while (files.size() < 2) files = randomFiles(random, 200);
  const MadeCollection made(files, "--strands both");
  const std::vector<std::vector<std::string>> commands = {
      {"pangenome", "--max-k 40"},
      {"distance", "--acs -k 5"},
      {"shared", "--in-at-least 2"},
      {"markers", "--unique"},
      {"find", "A GAT TTAA"},
      {"export", "sa"},
      {"export", "bwt"}};
  std::vector<std::string> expected;
  for (const auto& words : commands) {
    expected.push_back(made.expect(words[0], words[1]));
  }
  std::filesystem::remove_all(made.folder().path("m.ST"));
  EXPECT_EQ(made.run("plan", "--ranges 5").status, 0);
  const size_t ranges =
      linesOf(made.folder().read("m.ST/m.ranges.tsv")).size() - 2;
  ASSERT_GT(ranges, 2);
  for (size_t r = 0; r < ranges; r++) {
    EXPECT_EQ(made.run("merge", "--range " + std::to_string(r)).status, 0);
  }
  for (size_t i = 0; i < commands.size(); i++) {
    EXPECT_EQ(made.expect(commands[i][0], commands[i][1]), expected[i])
        << commands[i][0];
  }
  // One that is damaged, and one that is missing.
  const std::string part = "m.ST/m_1.range.stlcp";
  const std::string bytes = made.folder().read(part);
  made.folder().write(part, bytes.substr(4));
  EXPECT_THAT(made.run("pangenome", "").err,
              AllOf(HasSubstr("m_0.range.stlcp to "), HasSubstr("unfinished")));
  std::filesystem::remove(made.folder().path(part));
  EXPECT_THAT(made.run("pangenome", "").err,
              AllOf(HasSubstr("m_1.range.stlcp: not there; palvor-kit merge "
                              "--range 1 writes it")));
}

}  // namespace
