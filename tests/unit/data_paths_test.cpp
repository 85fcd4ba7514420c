#include "palvor/io/data_paths.h"

#include <gtest/gtest.h>

#include <string>

#include "support/engine.h"

namespace {

TEST(DataPaths, TakeFoldersAndPrefixesAsTheyStand) {
  const palvor::DataPaths paths =
      palvor::composePaths({"in/", "x"}, {"", "y"}, {"out/z", "w"});
  EXPECT_EQ(paths.stringFile(3), "in/x.ST/x_3.stbin");
  EXPECT_EQ(paths.lengths, "in/x.ST/x.stlengths");
  EXPECT_EQ(paths.bitLengths, "in/x.ST/x.stblengths");
  EXPECT_EQ(paths.partitions, "y.ST/x.stplengths")
      << "beside the arrays, but named after the inputs";
  EXPECT_EQ(paths.arrayFile(0), "y.ST/y_0.stpsa");
  EXPECT_EQ(paths.lcpFile(12), "y.ST/y_12.stlcp");
  EXPECT_EQ(paths.outputFolder, "out/zw.ST/");
  EXPECT_EQ(paths.dividers, "out/zw.ST/w.stdiv");
  EXPECT_EQ(paths.treeFile(7), "out/zw.ST/w_7.stree");
}

TEST(DataPaths, HaveRoomFor199Characters) {
  const palvor::DataPlace in = {"in/", "x"};
  // The longest path is the dividers file's: o/<prefix>.ST/<prefix>.stdiv
  const std::string out(94, 'p');
  EXPECT_EQ(palvor::composePaths(in, in, {"/", out}).dividers.size(), 199U);
  EXPECT_EQ(errorOf([&] {
              palvor::composePaths(in, in, {"o/", out});
            }).what(),
            "path of 200 characters is too long (at most 199): o/" + out +
                ".ST/" + out + ".stdiv");
}

TEST(DataPaths, AreTestedWithTheirLongestNumbers) {
  const palvor::DataPlace in = {"in/", "x"};
  const std::string prefix(93, 's');
  const palvor::DataPaths paths =
      palvor::composePaths(in, {"", prefix}, {"out/", "x"});
  ASSERT_EQ(paths.arrayFile(0).size(), 198U);
  palvor::testNumberedPaths(paths, 1, 100, true);
  palvor::testNumberedPaths(paths, 1000, 0, true);
  EXPECT_EQ(
      errorOf([&] { palvor::testNumberedPaths(paths, 1, 101, false); }).what(),
      "path of 200 characters is too long (at most 199): " +
          paths.arrayFile(100));
}

}  // namespace
