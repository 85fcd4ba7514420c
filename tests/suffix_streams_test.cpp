#include "sources/suffix_streams.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "run/options.h"
#include "run/values.h"
#include "support/data_folder.h"
#include "support/files.h"
#include "support/inputs.h"

namespace {

std::string recordBytes(uint32_t input, uint32_t pos) {
  return bytesOf({input << 2 | 2, pos, 0, 0});
}

class SuffixStreams : public testing::Test {
 protected:
  // Sets the streams of the folder's first k arrays up, with buffers of `size`
  // records, their files kept open or not.
  void setUp(int k, int size, bool kept, const unsigned* plens = nullptr) {
    std::snprintf(sarrayPrefix, kPathSize, "%s", folder_.path("x").c_str());
    files_.assign(static_cast<size_t>(k), -1);
    for (int j = 0; kept && j < k; j++) {
      files_[static_cast<size_t>(j)] = FileOpen(
          folder_.path("x_" + std::to_string(j) + ".stpsa").c_str(), 0);
    }
    suffixArrayFiles = files_.data();
    sufBuffSize = size;
    initBuffs(plens, k, 0);
  }

  DataFolder folder_{Collection{}};
  std::vector<int> files_;
};

TEST_F(SuffixStreams, HandOutEveryWholeRecordOnceAndThenNull) {
  useInputs({std::string(100, 'A')});
  for (const int records : {0, 1, 2, 3, 4, 6, 7}) {
    for (const int oddBytes : {0, 1, 15}) {
      std::string bytes;
      for (int r = 0; r < records; r++) {
        bytes += recordBytes(0, static_cast<uint32_t>(50 + r));
      }
      folder_.write("x_0.stpsa",
                    bytes.append(static_cast<size_t>(oddBytes), 1));
      for (const int size : {1, 2, 3, 4, 7, 8}) {
        for (const bool kept : {false, true}) {
          SCOPED_TRACE(testing::Message()
                       << records << " records and " << oddBytes
                       << " bytes, buffer of " << size << ", kept " << kept);
          setUp(1, size, kept);
          for (int r = 0; r < records; r++) {
            const Suffix* suffix = getNextSuf(0);
            ASSERT_NE(suffix, nullptr) << r;
            ASSERT_EQ(suffix->input, 2U);
            ASSERT_EQ(suffix->pos, static_cast<uint32_t>(50 + r));
          }
          for (int again = 0; again < 3; again++) {
            ASSERT_EQ(getNextSuf(0), nullptr);
          }
          if (kept) FileClose(files_[0]);
        }
      }
    }
  }
}

// Records are tested some hundreds at a time, but the first bad one is named.
TEST_F(SuffixStreams, RefuseAPositionThatIsNotThereWhereverItStands) {
  useInputs({std::string(2000, 'A')});
  for (const uint32_t bad : {0U, 511U, 512U, 513U, 1024U, 1099U}) {
    std::string bytes;
    for (uint32_t r = 0; r < 1100; r++) {
      bytes += recordBytes(0, r < bad ? r : 2000);
    }
    folder_.write("x_0.stpsa", bytes);
    setUp(1, 1050, false);
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
  setUp(2, 1, false, inputs);
  EXPECT_NE(getNextSuf(1), nullptr);
  EXPECT_EXIT(getNextSuf(1), testing::ExitedWithCode(1),
              "record 1 of Suffix file .*x_1.stpsa: there is no input "
              "1073741824, only 2 inputs\n$");
}

}  // namespace
