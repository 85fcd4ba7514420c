#include "palvor/io/lengths_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/engine.h"

namespace {

using Table = std::vector<uint32_t>;

class LengthsFiles : public testing::Test {
 protected:
  palvor::Lengths read(int mostInputs = 0) const {
    return palvor::readLengths(paths_, mostInputs);
  }

  DataFolder folder_{Collection{{"GAT", "TACA", "C"}}};
  palvor::DataPaths paths_ = palvor::composePaths(
      {folder_.root(), "x"}, {folder_.root(), "x"}, {folder_.root(), "x"});
};

TEST_F(LengthsFiles, GiveAStreamForEachInputOrPartition) {
  folder_.write("x.stlengths", bytesOf({3, 4, 1}) + "odd");
  const palvor::Lengths lengths = read();
  EXPECT_EQ(lengths.characters, (Table{3, 4, 1}));
  EXPECT_EQ(lengths.bits, (Table{6, 8, 2}));
  EXPECT_EQ(lengths.streams(), 3);
  EXPECT_EQ(read(2).bits, (Table{6, 8}));
  EXPECT_EQ(read(9).inputs(), 3);
  folder_.writeWords("x.stplengths", {2, 1});
  EXPECT_EQ(read().streams(), 2);
}

TEST_F(LengthsFiles, TakePartitionsUpToTheNumberOfInputs) {
  folder_.write("x.stplengths", bytesOf({7, 8, 9, 6, 5}) + "odd");
  EXPECT_EQ(read().partitions, (Table{7, 8, 9, 0, 0}));
  EXPECT_TRUE(read().leftPartitionOut);
  folder_.writeWords("x.stplengths", {2, 0, 0, 0, 1});
  EXPECT_EQ(read().partitions, (Table{2, 0, 0, 0, 0}));
  EXPECT_FALSE(read().leftPartitionOut) << "none is behind the last";
  folder_.write("x.stplengths", "odd");
  EXPECT_EQ(read().partitions, Table{}) << "too short to be one";
}

TEST_F(LengthsFiles, TakeNoPartitionsFromAFileThatIsOutOfReach) {
  const std::string circle = folder_.path("circle");
  std::filesystem::create_symlink(circle, circle);
  for (const std::string& path : {folder_.path("x.stlengths/x.stplengths"),
                                  circle, std::string("/dev/null")}) {
    paths_.partitions = path;
    EXPECT_EQ(read().partitions, Table{}) << path;
  }
}

TEST_F(LengthsFiles, BlameTheFileThatIsMissing) {
  paths_.bitLengths = "no/file";
  const palvor::Error error = errorOf([&] { read(); });
  EXPECT_STREQ(error.what(), "Could not open binary lengths file \"no/file\"");
  EXPECT_EQ(error.file(), "no/file");
  EXPECT_EQ(error.reason(), "No such file or directory");
}

}  // namespace
