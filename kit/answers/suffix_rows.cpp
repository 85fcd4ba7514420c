#include "kit/answers/suffix_rows.h"

#include <algorithm>
#include <utility>

namespace kit {

SuffixRows::SuffixRows(const MergedInputs& inputs, Take take)
    : inputs_(inputs), take_(std::move(take)) {
  for (uint32_t i = 0; i < inputs.count(); i++) {
    rows_.push_back({i, inputs.length(i), 0});
  }
  take_(rows_);
  rows_.clear();
}

void SuffixRows::take(std::span<const Suffix> suffixes,
                      std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    const uint32_t input = inputNumber(suffixes[i]);
    const uint32_t rest = inputs_.length(input) - suffixes[i].pos;
    const uint32_t common = lastRest_ == 0 ? 0 : lcpCharacters(entries[i]);
    if (rest != lastRest_ || common != rest) settleEqualOnes();
    rows_.push_back({input, suffixes[i].pos, common});
    lastRest_ = rest;
  }
  // All but those that more may be equal to.
  take_(std::span(rows_).first(firstEqual_));
  rows_.erase(rows_.begin(),
              rows_.begin() + static_cast<std::ptrdiff_t>(firstEqual_));
  firstEqual_ = 0;
}

void SuffixRows::settleEqualOnes() {
  const auto equal = std::span(rows_).subspan(firstEqual_);
  firstEqual_ = rows_.size();
  if (equal.size() < 2) return;
  // What they share among each other and with what is before stays.
  const uint32_t before = equal[0].common;
  const uint32_t among = equal[1].common;
  std::sort(
      equal.begin(), equal.end(),
      [](const SuffixRow& a, const SuffixRow& b) { return a.input < b.input; });
  for (SuffixRow& row : equal) row.common = among;
  equal[0].common = before;
}

void SuffixRows::finish() {
  settleEqualOnes();
  take_(rows_);
  rows_.clear();
  firstEqual_ = 0;
}

}  // namespace kit
