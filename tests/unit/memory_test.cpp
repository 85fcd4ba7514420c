#include "palvor/io/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <utility>

#include "palvor/io/huge_pages.h"
#include "support/engine.h"

namespace {

using palvor::Block;
using palvor::HugeTable;
using palvor::kHugePage;
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

// Each size on its own side of what decides how it is had, and given back.
TEST(Memory, GrowsTablesIntoHugePages) {
  HugeTable<uint16_t> table;
  for (const size_t bytes : {size_t{2}, kHugePage / 2 - 2, kHugePage / 2,
                             kHugePage, kHugePage + 2}) {
    SCOPED_TRACE(bytes);
    const size_t before = table.size();
    table.resize(bytes / 2, 7);
    table.shrink_to_fit();
    const auto address = reinterpret_cast<uintptr_t>(table.data());
    if (bytes >= kHugePage / 2) {
      EXPECT_EQ(address % kHugePage, 0U);
    }
    for (size_t i = before; i < table.size(); i++) ASSERT_EQ(table[i], 7) << i;
    if (before > 0) {
      EXPECT_EQ(table[before - 1], 7);
    }
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
