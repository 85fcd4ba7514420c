#include "kit/answers/palindromes.h"

#include <fmt/format.h>

#include <bit>

#include "kit/packed_string.h"

namespace kit {
namespace {

constexpr uint64_t kEvens =
    0x5555555555555555;  // the low bit of each character
constexpr uint32_t kShortArm = 16;

// The 64 bits of a string from a bit on, which may lie before its begin.
uint64_t sliceAround(const PackedString& string, int64_t bit) {
  if (bit >= 0) return string.slice(static_cast<uint64_t>(bit));
  return bit <= -64 ? 0 : string.slice(0) >> -bit;
}

// Of the 32 places from `pos` on those that may have a palindrome around them
// with arms of kShortArm characters; the first in bit 62, the next in bit 60.
// Asks for 64 characters more than the string may have, which its end grants.
uint64_t candidates(const PackedString& string, uint32_t pos, uint32_t length) {
  uint64_t places = kEvens;
  for (uint32_t j = 0; j < kShortArm && places != 0; j++) {
    if (pos + j >= length) return 0;
    const uint64_t right = string.slice(2 * (uint64_t{pos} + j));
    const uint64_t left =
        sliceAround(string, 2 * (int64_t{pos} - int64_t{j} - 1));
    const uint64_t paired = right ^ left;  // both bits differ in each pair
    places &= paired & paired >> 1;
  }
  return places;
}

// How far what is before a place is the reverse complement of what follows.
uint32_t armAt(const PackedString& string, uint32_t pos, uint32_t most) {
  for (uint32_t arm = 0; arm < most; arm += 32) {
    const uint64_t right = string.slice(2 * (uint64_t{pos} + arm));
    const uint64_t left =
        sliceAround(string, 2 * (int64_t{pos} - int64_t{arm} - 32));
    const uint64_t differ = right ^ reverseComplement(left);
    if (differ == 0) continue;
    return std::min(arm + static_cast<uint32_t>(std::countl_zero(differ)) / 2,
                    most);
  }
  return most;
}

}  // namespace

Palindromes::Palindromes(const MergedInputs& inputs, uint32_t longest)
    : inputs_(inputs),
      longestArm_(longest / 2),
      centers_(inputs.count()),
      blockBegins_(inputs.count()) {
  uint64_t blocks = 0;
  for (uint32_t i = 0; i < inputs.count(); i++) {
    blockBegins_[i] = blocks;
    blocks += inputs.length(i) / kBlock + 1;
  }
  beginsInBlock_.resize(blocks);
  if (longestArm_ <= kShortArm) return;
  for (uint32_t i = 0; i < inputs.count(); i += 2) {
    look(i);
    // The next input is the reverse complement.
    for (auto c = centers_[i].rbegin(); c != centers_[i].rend(); ++c) {
      centers_[i + 1].push_back({inputs.length(i) - c->pos, c->arm});
    }
    markBlocks(i);
    markBlocks(i + 1);
  }
}

void Palindromes::look(uint32_t input) {
  const uint32_t length = inputs_.length(input);
  const PackedString string(fmt::format("{}_{}.stbin", inputs_.base(), input),
                            length, nullptr);
  for (uint32_t begin = 0; begin < length; begin += 32) {
    uint64_t places = candidates(string, begin, length);
    while (places != 0) {
      const auto index = static_cast<uint32_t>(std::countl_zero(places)) / 2;
      places &= ~(uint64_t{1} << (62 - 2 * index));
      const uint32_t pos = begin + index;
      if (pos >= length) break;
      const uint32_t arm =
          armAt(string, pos, std::min({pos, length - pos, longestArm_}));
      if (arm > kShortArm) centers_[input].push_back({pos, arm});
    }
  }
}

void Palindromes::markBlocks(uint32_t input) {
  for (const Center& center : centers_[input]) {
    const uint32_t first = (center.pos - center.arm) / kBlock;
    const uint32_t last = (center.pos - kShortArm - 1) / kBlock;
    for (uint32_t block = first; block <= last; block++) {
      beginsInBlock_[blockBegins_[input] + block] = true;
    }
  }
}

}  // namespace kit
