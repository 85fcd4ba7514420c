#include "sources/packing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/inputs.h"

namespace {

std::vector<uint32_t> encoded(std::string text, int* written) {
  std::vector<uint32_t> words(8, 0xAAAAAAAA);
  *written =
      getBinEncoding(words.data(), text.data(), static_cast<int>(text.size()));
  return words;
}

TEST(BinEncoding, PacksWholeGroupsOfSixteenInEitherCase) {
  const std::string text = "ACGTACGTACGTACGTTTTTGGGGCCCCAAAAGATTACA";
  const std::vector<uint32_t> slow = packedWords(text);
  std::string lower = text;
  for (char& character : lower) character = static_cast<char>(character | 32);
  for (size_t n = 0; n <= text.size(); n++) {
    for (const std::string& all : {text, lower}) {
      SCOPED_TRACE(all.substr(0, n));
      int written = -1;
      const std::vector<uint32_t> words = encoded(all.substr(0, n), &written);
      ASSERT_EQ(written, static_cast<int>(n / 16));
      for (size_t w = 0; w < words.size(); w++) {
        ASSERT_EQ(words[w], w < n / 16 ? slow[w] : 0xAAAAAAAA) << w;
      }
    }
  }
  EXPECT_EQ(slow[0], 0x1B1B1B1BU);
}

TEST(BinEncoding, GivesEveryOtherByteTheCodeOfItsBits) {
  // N is 01001110 in ASCII: bits 2-1 are those of G.
  int written = 0;
  EXPECT_EQ(encoded("NNNNNNNNNNNNNNNN", &written)[0], 0xAAAAAAAAU);
  EXPECT_EQ(encoded("@\xC2\xF6\xF4"
                    "AAAAAAAAAAAA",
                    &written)[0],
            0x1B000000U);
}

TEST(PackedString, HasOneTrailerWordAfterItsData) {
  const std::vector<std::pair<int64_t, int64_t>> rows = {
      {0, 0},  {1, 1},  {2, 1},
      {31, 1}, {32, 1}, {33, 2},
      {64, 2}, {65, 3}, {2147483647, 67108864}};
  for (const auto& [bits, data] : rows) {
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
