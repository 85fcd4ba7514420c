#include "kit/answers/lcp_histogram.h"

#include <algorithm>
#include <bit>

namespace kit {

// From 2 on the bin is the length's exponent and the bit below its highest.
inline unsigned LcpHistogram::binOf(uint32_t characters) {
  if (characters < 2) return characters;
  const auto exponent = static_cast<unsigned>(std::bit_width(characters)) - 1;
  return 2 * exponent + (characters >> (exponent - 1) & 1);
}

uint32_t LcpHistogram::firstOf(unsigned bin) {
  if (bin < 2) return bin;
  return (2 + bin % 2) << (bin / 2 - 1);
}

void LcpHistogram::take(std::span<const LcpEntry> entries) {
  for (const LcpEntry entry :
       entries.subspan(begun_ || entries.empty() ? 0 : 1)) {
    const uint32_t characters = lcpCharacters(entry);
    counts_[binOf(characters)]++;
    sum_ += characters;
    pairs_++;
    longest_ = std::max(longest_, characters);
  }
  if (!entries.empty()) begun_ = true;
}

std::vector<LcpHistogram::Bin> LcpHistogram::bins() const {
  std::vector<Bin> bins;
  for (unsigned bin = 0; bin <= binOf(longest_); bin++) {
    bins.push_back({firstOf(bin), counts_[bin]});
  }
  return bins;
}

double LcpHistogram::mean() const {
  return pairs_ == 0 ? 0
                     : static_cast<double>(sum_) / static_cast<double>(pairs_);
}

}  // namespace kit
