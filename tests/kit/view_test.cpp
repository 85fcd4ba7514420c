// palvor-kit view through the real program, on bytes written by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(View, PrintsEveryKindOfFile) {
  const TemporaryFolder folder;
  const auto view = [&](const std::string& name, const std::string& bytes) {
    const Outcome run = runKit({"view", folder.write(name, bytes)});
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
  };
  EXPECT_EQ(view("a.stpsa", bytesOf({5 << 2 | 3, 7, 0x1B000000, 0xC0000000})),
            "record\tinput\tflags\tposition\tprefix\n"
            "0\t5\t3\t7\tACGTAAAAAAAAAAAATAAAAAAAAAAAAAAA\n");
  EXPECT_EQ(view("a.stlcp", bytesOf({0, 6 << 1 | 1, 0xFFFFFFFF})),
            "record\tbits\tcharacters\tfirstbit\n0\t0\t0\t0\n1\t6\t3\t1\n"
            "2\t2147483647\t1073741823\t1\n");
  EXPECT_EQ(view("a.stlengths", bytesOf({5, 3})), "entry\tvalue\n0\t5\n1\t3\n");
  EXPECT_EQ(view("a.stbin", bytesOf({0x8F400000, 0})),
            "word\tposition\tcharacters\n"
            "0\t0\tGATTCAAAAAAAAAAA\n1\t16\tAAAAAAAAAAAAAAAA\n");
  EXPECT_EQ(view("a.stdiv",
                 bytesOf({0xC0000000, 0x40000000, 0, 14, 70000 & 0xFFFF, 0})),
            "record\ttree\tnodes\tmaxdepth\tfirstprefix\tlastprefix\n"
            "0\t0\t14\t4464\tCAAAAAAAAAAAAAAA\tTAAAAAAAAAAAAAAA\n");
  EXPECT_EQ(view("a_0.stree", bytesOf({0, 1 << 2, 0, 2, 6 << 2 | 3, 1})),
            "record\tkind\tedge\tnext\tleft\tright\tinput\tflags\n"
            "0\tinternal\t0\t0\t1\t0\t\t\n"
            "1\tleaf\t2\t1\t\t\t6\t1\n");
}

TEST(View, SlicesAndPrintsJson) {
  const TemporaryFolder folder;
  const std::string file = folder.write("a.stlengths", bytesOf({9, 8, 7, 6}));
  EXPECT_EQ(runKit({"view", file, "--from", "1", "--count", "2", "--json"}).out,
            "{\"entry\":1,\"value\":8}\n{\"entry\":2,\"value\":7}\n");
  EXPECT_EQ(runKit({"view", file, "--from", "3"}).out, "entry\tvalue\n3\t6\n");
  EXPECT_EQ(runKit({"view", file, "--count", "0"}).out, "entry\tvalue\n");
  EXPECT_EQ(runKit({"view", folder.write("b.stlengths", "")}).out,
            "entry\tvalue\n");

  const auto expectError = [&](const std::vector<std::string>& options,
                               const std::string& reason) {
    std::vector<std::string> words = {"view", file};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome run = runKit(words);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(reason));
  };
  expectError({"--from", "4"}, "a.stlengths: there is no record 4, but only 4");
  expectError({"--from", "-1"}, "'-1' is not a number from 0 on");
  expectError({"--count=-2"}, "'-2' is not a number from 0 on");
  expectError({"--from", "1e3"}, "'1e3' is not a number from 0 on");
}

TEST(View, SaysWhichFileATableIsOf) {
  const TemporaryFolder folder;
  const std::string a = folder.write("a.stlengths", bytesOf({9}));
  const std::string b = folder.write("b.stlcp", bytesOf({13}));
  EXPECT_EQ(runKit({"view", a, b}).out,
            "# " + a + "\nentry\tvalue\n0\t9\n\n# " + b +
                "\nrecord\tbits\tcharacters\tfirstbit\n0\t6\t3\t1\n");
  EXPECT_EQ(runKit({"view", a, b, "--json"}).out,
            "{\"file\":\"" + a + "\",\"entry\":0,\"value\":9}\n{\"file\":\"" +
                b +
                "\",\"record\":0,\"bits\":6,\"characters\":3,"
                "\"firstbit\":1}\n");
}

// Input 1 is the reverse complement of characters 7 to 9 of y.
constexpr const char* kTable =
    "0\t0\tx.fa\tx\t2\t5\t+\n"
    "1\t1\ty\\tz.fa\ty\t7\t3\t-\n";

TEST(View, NamesGenomesAndPlaces) {
  const TemporaryFolder folder;
  folder.write("d.ST/d.inputs.tsv", kTable);
  const std::string records =
      bytesOf({0 << 2, 4, 0, 0, 1 << 2, 0, 0, 0, 1 << 2, 2, 0, 0,  //
               1 << 2, 3, 0, 0, 2 << 2, 0, 0, 0});
  const std::string a32(32, 'A');
  const std::string expected =
      "record\tinput\tflags\tposition\tprefix\tgenome\tsequence\tstart\t"
      "strand\n"
      "0\t0\t0\t4\t" +
      a32 +
      "\tx.fa\tx\t6\t+\n"
      "1\t1\t0\t0\t" +
      a32 +
      "\ty\\tz.fa\ty\t9\t-\n"
      "2\t1\t0\t2\t" +
      a32 +
      "\ty\\tz.fa\ty\t7\t-\n"
      "3\t1\t0\t3\t" +
      a32 +
      "\ty\\tz.fa\ty\t\t\n"
      "4\t2\t0\t0\t" +
      a32 + "\t\t\t\t\n";
  EXPECT_EQ(runKit({"view", folder.write("d.ST/d.stpsa", records)}).out,
            expected);
  // A result that was written elsewhere.
  EXPECT_EQ(runKit({"view", folder.write("m.ST/m.stpsa", records), "--data",
                    folder.path("d.ST/")})
                .out,
            expected);
  const std::string own = folder.write("d.ST/d_1.stpsa", bytesOf({0, 1, 0, 0}));
  EXPECT_THAT(runKit({"view", own, "-z"}).out, HasSubstr("\ty\t8\t-\n"));
  EXPECT_EQ(
      runKit(
          {"view", folder.write("d.ST/d.stlengths", bytesOf({5, 3})), "--json"})
          .out,
      "{\"entry\":0,\"value\":5,\"genome\":\"x.fa\",\"sequence\":\"x\"}\n"
      "{\"entry\":1,\"value\":3,\"genome\":\"y\\tz.fa\",\"sequence\":\"y\"}\n");
  EXPECT_THAT(
      runKit({"view", folder.write("d.ST/d_0.stree",
                                   bytesOf({0, 4, 0, 2, 1 << 2 | 3, 1}))})
          .out,
      AllOf(HasSubstr("\tgenome\tsequence\n"),
            HasSubstr("1\t1\ty\\tz.fa\ty\n")));
  folder.write("d.ST/d.inputs.tsv", "0\t0\n");
  EXPECT_THAT(runKit({"view", own}).err,
              HasSubstr("d.inputs.tsv: line 1: too few fields"));
}

TEST(View, PrintsTheTableOfInputs) {
  const TemporaryFolder folder;
  const std::string table = folder.write("d.inputs.tsv", kTable);
  EXPECT_EQ(runKit({"view", table}).out,
            "input\tarray\tgenome\tsequence\toffset\tlength\tstrand\n" +
                std::string(kTable));
  EXPECT_EQ(
      runKit({"view", table, "--from", "1", "--json"}).out,
      "{\"input\":1,\"array\":1,\"genome\":\"y\\tz.fa\",\"sequence\":\"y\","
      "\"offset\":7,\"length\":3,\"strand\":\"-\"}\n");
}

TEST(View, DrawsATree) {
  // GATTC and GAT in one tree, made by the programs themselves.
  const TemporaryFolder folder;
  const std::string fasta = folder.write("a.fa", ">x\nGATTC\n>y\nGAT\n");
  ASSERT_EQ(runKit({"prepare", "-o", folder.path(""), "-p", "d", fasta}).status,
            0);
  ASSERT_EQ(runShell("palvor " + folder.path("") + "/ d -q -n 99").status, 0);
  const std::string tree = folder.path("d.ST/d_0.stree");
  const Outcome drawn =
      runKit({"view", "--dot", "--data", folder.path("d.ST"), tree});
  EXPECT_EQ(drawn.status, 0) << drawn.err;
  EXPECT_THAT(drawn.out, HasSubstr("digraph tree {"));
  EXPECT_THAT(drawn.out,
              HasSubstr("[label=\"input 1 at 0\\n" + fasta + " y:0+\"]"));
  EXPECT_THAT(drawn.out, HasSubstr("label=\"tree 0 of 1 (numbered from 0): 8 "
                                   "suffixes, 14 records\\l" +
                                   tree + "\\lbox: a suffix; "));
  EXPECT_THAT(drawn.out, HasSubstr("[label=\"TC\"]"));
  const std::string picture = folder.write("a.dot", drawn.out);
  EXPECT_EQ(runShell("which dot >/dev/null || exit 0; dot -Tsvg " + picture +
                     " >/dev/null")
                .status,
            0);
}

TEST(View, RefusesWhatItCannotRead) {
  const TemporaryFolder folder;
  const auto expectError = [&](const std::string& file,
                               const std::string& bytes,
                               const std::string& reason) {
    std::vector<std::string> arguments = {"view", folder.write(file, bytes)};
    if (file.ends_with(".stree")) arguments.push_back("--dot");
    const Outcome run = runKit(arguments);
    EXPECT_EQ(run.status, 1) << file;
    EXPECT_THAT(run.err, AllOf(HasSubstr(file), HasSubstr(reason)));
  };
  expectError("odd.stpsa", "123", "3 bytes are not a whole number of records");
  expectError("what.fa", "", "does not end like");
  expectError("no.stree", "", "there is no root");
  const std::string array = folder.write("a.stpsa", "");
  EXPECT_THAT(runKit({"view", "--dot", array}).err,
              HasSubstr("a.stpsa: only trees, .stree files, can be drawn"));
  expectError("far.stree", bytesOf({0, 9 << 2, 0}), "there is no record 9");
  expectError("loop.stree", bytesOf({0, 1 << 2, 0, 2, 1 << 2, 0}), "met twice");
  expectError("run.stree", bytesOf({0, 1 << 2, 0, 2, 3, 0}), "past the end");
  EXPECT_EQ(runKit({"view", folder.path("missing.stlcp")}).status, 1);
  const std::string good = folder.write("a.stlengths", bytesOf({1}));
  EXPECT_EQ(runKit({"view", good}, {.output = "/dev/full"}).err,
            "palvor-kit: error: can't write to standard output: No space left "
            "on device\n");
}

}  // namespace
