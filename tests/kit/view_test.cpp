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
            "record\tbits\tfirstbit\n0\t0\t0\n1\t6\t1\n2\t2147483647\t1\n");
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
  EXPECT_EQ(runKit({"view", file, "--from", "4"}).out, "entry\tvalue\n");
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
  EXPECT_THAT(drawn.out, HasSubstr("[label=\"input 1 at 0\"]"));
  EXPECT_THAT(drawn.out, HasSubstr("[label=\"TC\"]"));
  EXPECT_EQ(runShell("which dot >/dev/null || exit 0; echo '" + drawn.out +
                     "' | dot -Tsvg >/dev/null")
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
  expectError("far.stree", bytesOf({0, 9 << 2, 0}), "there is no record 9");
  expectError("loop.stree", bytesOf({0, 1 << 2, 0, 2, 1 << 2, 0}), "met twice");
  expectError("run.stree", bytesOf({0, 1 << 2, 0, 2, 3, 0}), "past the end");
  EXPECT_EQ(runKit({"view", folder.path("missing.stlcp")}).status, 1);
  const std::string good = folder.write("a.stlengths", bytesOf({1}));
  EXPECT_EQ(runKit({"view", good}, {.output = "/dev/full"}).status, 1);
}

}  // namespace
