// What the streams refuse; tests/model covers what they hand out, for any size
// of file and buffer.

#include "sources/suffix_streams.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "run/options.h"
#include "run/values.h"
#include "support/data_folder.h"
#include "support/inputs.h"

namespace {

std::string recordBytes(uint32_t input, uint32_t pos) {
  return bytesOf({input << 2 | 2, pos, 0, 0});
}

class SuffixStreams : public testing::Test {
 protected:
  // Sets the streams of the folder's arrays up, with buffers of `size` records.
  void setUp(int size, const unsigned* plens) {
    std::snprintf(sarrayPrefix, kPathSize, "%s", folder_.path("x").c_str());
    suffixArrayFiles = files_;
    sufBuffSize = size;
    initBuffs(plens, 2, 0);
  }

  DataFolder folder_{Collection{}};
  int files_[2] = {-1, -1};
};

// Records are tested some hundreds at a time, but the first bad one is named.
TEST_F(SuffixStreams, RefuseAPositionThatIsNotThereWhereverItStands) {
  useInputs({std::string(2000, 'A')});
  for (const uint32_t bad : {0U, 511U, 512U, 513U, 1024U, 1099U}) {
    std::string bytes;
    for (uint32_t r = 0; r < 1100; r++) {
      bytes += recordBytes(0, r < bad ? r : 2000);
    }
    folder_.write("x_0.stpsa", bytes);
    setUp(1050, nullptr);
    const auto handOutAll = [] {
      while (getNextSuf(0) != nullptr) continue;
    };
    EXPECT_EXIT(handOutAll(), testing::ExitedWithCode(1),
                "record " + std::to_string(bad) +
                    " of Suffix file .*: position 2000 is not inside input 0");
  }
}

// Whatever a file and a partitions file claim, no sum wraps into an input.
TEST_F(SuffixStreams, RefuseWhatIsNotThereAfterTheOriginIsAdded) {
  useInputs({"AC", "AC"});
  iorigin = 1;
  nparts = 2;
  const unsigned inputs[] = {1, 1};
  folder_.write("x_1.stpsa", recordBytes(0, 1) + recordBytes(0x3FFFFFFF, 1));
  setUp(1, inputs);
  EXPECT_NE(getNextSuf(1), nullptr);
  EXPECT_EXIT(getNextSuf(1), testing::ExitedWithCode(1),
              "record 1 of Suffix file .*x_1.stpsa: there is no input "
              "1073741824, only 2 inputs\n$");
}

}  // namespace
