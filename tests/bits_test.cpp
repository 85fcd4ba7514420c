#include "support/bits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Bits, SingleBitsCountFromTheTopOfWordZero) {
  unsigned v[2] = {};
  SetBit(v, 0);
  SetBit(v, 33);
  EXPECT_THAT(v, testing::ElementsAre(0x80000000, 0x40000000));
  EXPECT_EQ(GetBit(v, 33), 1);
  EXPECT_EQ(GetBit(v, 32), 0);
  EXPECT_EQ(getBit(v, 32), 1);  // of the single word
  EXPECT_EQ(setBit(v, 63), 1u);
  EXPECT_EQ(v[0], 0x80000001);
}

TEST(Bits, WordRoutinesTakeWholeWords) {
  const unsigned source[3] = {0xF0F0F0F0, 1, 2};
  for (const auto routine :
       {&OrBits, &OrBits1, &OrBits2, &OrBits3, &CopyBits}) {
    unsigned v[4] = {};
    routine(v, source, 0);
    routine(v + 1, source, 33);
    EXPECT_THAT(v, testing::ElementsAre(0, 0xF0F0F0F0, 1, 0));
  }
  unsigned v[2] = {0xFF00FF00, 3};
  AndBits(v, source, 64);
  EXPECT_THAT(v, testing::ElementsAre(0xF000F000, 1));
  const unsigned ones = 0xFFFFFFFF;
  EXPECT_EQ(CountBits(&ones, 1), 32);
  EXPECT_EQ(CountBits(&ones, 0), 0);
  EXPECT_EQ(AllBits(v, 64), 1);
  EXPECT_EQ(CountBits(NewBits(64), 64), 0);
}

TEST(Bits, ArePrintedAndShownAsTextThatStaysForTenCalls) {
  const unsigned word = 0xA0000001;
  const std::string bits = "101" + std::string(28, '0') + "1";
  const char* first = BitStr(&word, 40);
  for (int i = 0; i < 9; i++) EXPECT_STREQ(BitStr(&word, 0), "");
  EXPECT_EQ(first, bits);
  EXPECT_EQ(BitStr(&word, 3), first);
  EXPECT_STREQ(first, "101");
  testing::internal::CaptureStdout();
  EXPECT_EQ(printBitSequence(&word), 14);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), bits + "  3  A0000001\n");
}

}  // namespace
