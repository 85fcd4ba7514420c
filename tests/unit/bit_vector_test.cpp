#include "palvor/format/bit_vector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;

TEST(BitVector, CountsBitsFromTheTopOfWordZero) {
  uint32_t v[2] = {};
  palvor::setBit(v, 0);
  palvor::setBit(v, 33);
  EXPECT_THAT(v, ElementsAre(0x80000000, 0x40000000));
  EXPECT_TRUE(palvor::bitAt(v, 33));
  EXPECT_FALSE(palvor::bitAt(v, 32));
  palvor::setBit(v, 31);
  EXPECT_EQ(v[0], 0x80000001);
}

TEST(BitVector, TakesWholeWordsAndNoMore) {
  const uint32_t source[3] = {0xF0F0F0F0, 1, 2};
  for (const auto routine : {&palvor::orBits, &palvor::copyBits}) {
    uint32_t v[4] = {};
    routine(v, source, 0);
    routine(v + 1, source, 33);
    EXPECT_THAT(v, ElementsAre(0, 0xF0F0F0F0, 1, 0));
  }
  uint32_t v[3] = {0xFF00FF00, 3, 7};
  palvor::andBits(v, source, 64);
  EXPECT_THAT(v, ElementsAre(0xF000F000, 1, 7));
  palvor::orBits(v, v, 96);
  EXPECT_EQ(palvor::countBits(v, 64), 9);
  EXPECT_EQ(palvor::countBits(v, 1), 8) << "bits past the end take part";
  EXPECT_EQ(palvor::countBits(v, 0), 0);
}

TEST(BitVector, ShowsItsFirstBits) {
  const uint32_t words[2] = {0xA0000001, 0xFFFFFFFF};
  EXPECT_EQ(palvor::bitText(words, 0), "");
  EXPECT_EQ(palvor::bitText(words, 3), "101");
  EXPECT_EQ(palvor::bitText(words, 40), "101" + std::string(28, '0') + "1");
}

}  // namespace
