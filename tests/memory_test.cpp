#include "support/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(Memory, CountsWhatIsAskedForAndNeverLess) {
  const long long before = MemUsed();
  Calloc(1048576, 12);
  EXPECT_EQ(MemUsed() - before, 12582912);
  Malloc(88);
  EXPECT_EQ(MemUsed() - before, 12583000);
  EXPECT_EQ(Malloc(1UL << 60), nullptr);
  EXPECT_EQ(MemUsed() - before, 12583000 + (1LL << 60));
  EXPECT_EQ(Malloc(SIZE_MAX), nullptr);
  EXPECT_EQ(Calloc(-1, 16), nullptr);
}

TEST(Memory, GivesZeroedBlocksOfEverySize) {
  for (const int bytes : {0, 1, 4096, (8 << 20) - 1, 8 << 20, 20 << 20}) {
    SCOPED_TRACE(bytes);
    auto* block = static_cast<unsigned char*>(Calloc(bytes, 1));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < bytes; i += 1021) ASSERT_EQ(block[i], 0) << i;
    std::memset(block, 1, static_cast<size_t>(bytes));
  }
}

TEST(Memory, EndsTheRunWithTheBytesAskedFor) {
  int block = 0;
  EXPECT_EQ(orDie(&block, 4, "a test"), &block);
  EXPECT_EXIT(
      orDie(nullptr, 1234567890123, "a test"), testing::ExitedWithCode(1),
      "^## ERROR: could not allocate 1234567890123 bytes for a test\n$");
}

}  // namespace
