// Folders and files that cannot be made or replaced are named, with the reason.

#include <gtest/gtest.h>

#include <string>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

TEST(Folders, ThatCannotBeMadeAreNamed) {
  const TemporaryFolder folder;
  const std::string file = folder.write("file", ">x\nGATTACA\n");
  EXPECT_EQ(runKit({"prepare", "-o", file + "/x", "-p", "d", file}).err,
            "palvor-kit: error: " + file + "/x/d.ST/: Not a directory\n");
  EXPECT_EQ(runKit({"simulate", "-o", file + "/x", "--genomes", "1", "--length",
                    "9", "--divergence", "0"})
                .err,
            "palvor-kit: error: " + file + "/x: Not a directory\n");
}

TEST(Folders, WithFilesThatCannotBeReplacedAreNamed) {
  const TemporaryFolder folder;
  const std::string file = folder.write("file", ">x\nGATTACA\n");
  const std::string inTheWay = folder.path("d.ST/d_0.stpsa");
  folder.write("d.ST/d_0.stpsa/full", "");
  EXPECT_EQ(
      runKit({"prepare", "-o", folder.path(""), "-p", "d", "--force", file})
          .err,
      "palvor-kit: error: " + inTheWay + ": Directory not empty\n");
}

}  // namespace
