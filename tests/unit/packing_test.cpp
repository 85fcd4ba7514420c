#include "palvor/format/packing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/inputs.h"

namespace {

using palvor::dataWords;
using palvor::packCharacters;
using palvor::sliceAt;
using palvor::storedWords;

// Packs a text into words of AAAAAAAA, of which `written` must change.
std::vector<uint32_t> encoded(std::string text, int written) {
  std::vector<uint32_t> words(4, 0xAAAAAAAA);
  EXPECT_EQ(
      packCharacters(words.data(), text.data(), static_cast<int>(text.size())),
      written);
  return words;
}

TEST(BinEncoding, PacksWholeGroupsOfSixteenInEitherCase) {
  const std::string text = "ACGTACGTACGTACGTttttggggccccaaaaGATTACA";
  for (int n = 0; n <= 39; n++) {
    std::vector<uint32_t> want = {0x1B1B1B1B, 0xFFAA5500, 0xAAAAAAAA,
                                  0xAAAAAAAA};
    for (int w = n / 16; w < 2; w++) want[static_cast<size_t>(w)] = 0xAAAAAAAA;
    ASSERT_EQ(encoded(text.substr(0, static_cast<size_t>(n)), n / 16), want);
  }
}

TEST(BinEncoding, GivesEveryOtherByteTheCodeOfItsBits) {
  // N is 01001110 in ASCII: bits 2-1 are those of G.
  EXPECT_EQ(encoded("NNNNNNNNNNNNNNNN", 1)[0], 0xAAAAAAAAU);
  EXPECT_EQ(encoded("@\xC2\xF6\xF4" + std::string(12, 'A'), 1)[0], 0x1B000000U);
}

TEST(PackedString, HasOneTrailerWordAfterItsData) {
  for (const auto& [bits, data] : {std::pair<int64_t, int64_t>{0, 0},
                                   {1, 1},
                                   {31, 1},
                                   {32, 1},
                                   {33, 2},
                                   {64, 2},
                                   {65, 3},
                                   {2147483647, 67108864}}) {
    EXPECT_EQ(dataWords(bits), data) << bits;
    EXPECT_EQ(storedWords(bits), data + 1) << bits;
  }
}

TEST(PackedString, GivesTheBitsOfEverySlice) {
  const std::string text = "GATTACACCGTGTGTAACCCGGTTTATATACGCGCTTTGACA";
  const std::vector<uint32_t> words = packedWords(text);
  const std::string bits = bitsOf(text) + std::string(64, '0');
  for (size_t start = 0; start < 2 * text.size(); start++) {
    const auto want =
        static_cast<uint32_t>(std::stoul(bits.substr(start, 32), nullptr, 2));
    ASSERT_EQ(sliceAt(words.data(), start), want) << start;
  }
}

}  // namespace
