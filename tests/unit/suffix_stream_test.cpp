// What the streams refuse; tests/model covers what they hand out, for any size
// of file and buffer.

#include "palvor/stream/suffix_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "support/engine.h"
#include "support/inputs.h"

namespace {

using palvor::SuffixStream;

std::string recordBytes(uint32_t input, uint32_t pos) {
  return bytesOf({input << 2 | 2, pos, 0, 0});
}

// The streams of a folder's arrays, whatever lengths files it has.
struct Opened {
  Opened(const DataFolder& folder, const palvor::Collection& text, int count,
         int capacity, bool zeroOrigin = false,
         std::vector<palvor::Slice> slices = {})
      : streams(text, streamFilesIn(folder, count, zeroOrigin), capacity,
                slices, memory, time) {}

  palvor::MemoryCount memory;
  palvor::IoTime time;
  palvor::SuffixStreams streams;
};

// Records are tested some hundreds at a time, but the first bad one is named.
TEST(SuffixStream, RefusesAPositionThatIsNotThereWhereverItStands) {
  const DataFolder folder{Collection{}};
  const InMemory inputs({std::string(2000, 'A')});
  for (const uint32_t bad : {0U, 511U, 512U, 513U, 1024U, 1099U}) {
    std::string bytes;
    for (uint32_t r = 0; r < 1100; r++) {
      bytes += recordBytes(0, r < bad ? r : 2000);
    }
    folder.write("x_0.stpsa", bytes);
    Opened opened(folder, inputs.text(), 1, 1050);
    SuffixStream& stream = opened.streams[0];
    EXPECT_EQ(errorOf([&] {
                while (stream.advance()) continue;
              }).what(),
              "record " + std::to_string(bad) + " of Suffix file " +
                  folder.path("x_0.stpsa") +
                  ": position 2000 is not inside input 0 of 2000 characters");
  }
}

// Whatever a file and a partitions file claim, no sum wraps into an input.
TEST(SuffixStream, RefusesWhatIsNotThereAfterTheOriginIsAdded) {
  const DataFolder folder{Collection{}};
  const InMemory inputs({"AC", "AC"});
  folder.write("x_1.stpsa", recordBytes(0, 1) + recordBytes(0x3FFFFFFF, 1));
  Opened opened(folder, inputs.text(), 2, 1, true);
  SuffixStream& stream = opened.streams[1];
  ASSERT_TRUE(stream.advance());
  EXPECT_EQ(stream.current()->input, 1U << 2 | 2U);
  EXPECT_EQ(errorOf([&] { stream.advance(); }).what(),
            "record 1 of Suffix file " + folder.path("x_1.stpsa") +
                ": there is no input 1073741824, only 2 inputs");
}

TEST(SuffixStream, KeepsTheRecordBeforeAcrossBlocks) {
  const DataFolder folder{Collection{{"GATTACA"}}};
  const InMemory inputs({"GATTACA"});
  for (int capacity = 1; capacity <= 8; capacity++) {
    Opened opened(folder, inputs.text(), 1, capacity);
    SuffixStream& stream = opened.streams[0];
    EXPECT_EQ(stream.recordNumber(), -1);
    uint32_t before = 0;
    for (const uint32_t pos : {6U, 4U, 1U, 5U, 0U, 3U, 2U}) {
      ASSERT_TRUE(stream.advance());
      EXPECT_EQ(stream.current()->pos, pos);
      if (stream.recordNumber() > 0) {
        EXPECT_EQ(stream.previous()->pos, before);
      }
      before = pos;
    }
    EXPECT_FALSE(stream.hasEnded());
    for (int again = 0; again < 2; again++) EXPECT_FALSE(stream.advance());
    EXPECT_TRUE(stream.hasEnded());
    EXPECT_EQ(stream.recordsRead(), 7U);
  }
}

}  // namespace
