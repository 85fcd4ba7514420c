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

TEST_F(SuffixStreams, WithoutRoomForARecordEndAtOnce) {
  useInputs({"ACGT"});
  folder_.write("x_0.stpsa", recordBytes(0, 0));
  setUp(1, 0, false);
  EXPECT_EQ(getNextSuf(0), nullptr);
  EXPECT_EQ(getNextSuf(0), nullptr);
}

TEST_F(SuffixStreams, AddTheInputsBeforeTheirPartition) {
  useInputs(std::vector<std::string>(9, "AC"));
  folder_.write("x_0.stpsa", recordBytes(2, 1));
  folder_.write("x_1.stpsa", recordBytes(1, 0));
  folder_.write("x_2.stpsa", recordBytes(1, 0) + recordBytes(3, 1));
  iorigin = 1;
  nparts = 3;
  const unsigned inputs[] = {3, 2, 4};
  setUp(3, 1, false, inputs);
  EXPECT_EQ(alens[0], 0U);
  EXPECT_EQ(alens[1], 12U);
  EXPECT_EQ(alens[2], 20U);
  for (const auto& [stream, input] :
       std::vector<std::pair<int, uint32_t>>{{0, 2}, {2, 6}, {1, 4}, {2, 8}}) {
    const Suffix* suffix = getNextSuf(stream);
    ASSERT_NE(suffix, nullptr);
    EXPECT_EQ(inputNumber(*suffix), input);
    EXPECT_EQ(suffixFlags(*suffix), 2U);
  }
}

// Without partitions, the lengths of inputs say nothing about their numbers.
TEST_F(SuffixStreams, AddTheirOwnNumberWithoutPartitions) {
  useInputs({"AC", "AC", "AC"});
  for (const char* name : {"x_0.stpsa", "x_1.stpsa", "x_2.stpsa"}) {
    folder_.write(name, recordBytes(0, 1));
  }
  iorigin = 1;
  nparts = 0;
  setUp(3, 4, false, blengths);
  for (int j = 0; j < 3; j++) {
    EXPECT_EQ(inputNumber(*getNextSuf(j)), static_cast<uint32_t>(j));
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
