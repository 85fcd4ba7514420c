#include "palvor/io/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <utility>

#include "support/engine.h"

namespace {

using palvor::Block;
using palvor::RawBlock;

TEST(Memory, GivesZeroedAlignedBlocksOfEverySize) {
  for (const int bytes : {0, 1, 4096, (8 << 20) - 1, 8 << 20, 20 << 20}) {
    SCOPED_TRACE(bytes);
    const Block<unsigned char> block(bytes, "a test");
    ASSERT_NE(block.data(), nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block.data()) % 64, 0U);
    for (int i = 0; i < bytes; i += 1021) ASSERT_EQ(block[i], 0) << i;
    std::memset(block.data(), 1, static_cast<size_t>(bytes));
  }
}

TEST(Memory, MovesBetweenOwners) {
  for (const int64_t bytes : {int64_t{100}, int64_t{20} << 20}) {
    RawBlock first(bytes);
    void* const data = first.data();
    RawBlock second(std::move(first));
    EXPECT_EQ(second.data(), data);
    RawBlock third(8);
    third = std::move(second);
    EXPECT_EQ(third.data(), data);
  }
}

TEST(Memory, FailsWithTheBytesAskedFor) {
  EXPECT_STREQ(errorOf([] {
                 const Block<int64_t> block(int64_t{1} << 57, "a test");
               }).what(),
               "could not allocate 1152921504606846976 bytes for a test");
  EXPECT_EQ(RawBlock(INT64_MAX).data(), nullptr);
  EXPECT_EQ(RawBlock(-16).data(), nullptr);
  EXPECT_EQ(Block<int>::orNull(int64_t{1} << 58).data(), nullptr);
}

}  // namespace
