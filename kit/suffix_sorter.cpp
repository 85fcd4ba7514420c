#include "kit/suffix_sorter.h"

#include <divsufsort.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kit {

SuffixSorter::SuffixSorter(const PsaText& psa, bool wantLcp)
    : text_(psa.text), wantLcp_(wantLcp), order_(psa.text.size()) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text_.data());
  if (divsufsort(bytes, order_.data(), static_cast<int32_t>(text_.size())) !=
      0) {
    throw std::runtime_error(psa.file + ": the suffixes could not be sorted");
  }
  first_ = index_ = runEnd_ = psa.inputs.size();  // past the separators
  if (wantLcp || psa.inputs.size() > 1) computePrefixes();
}

// Goes through the text from left to right: from one suffix to the next, the
// characters shared with the suffix before it in the order fall by one at most.
void SuffixSorter::computePrefixes() {
  const size_t n = order_.size();
  prefixes_.resize(n);
  int32_t before = -1;
  for (const int32_t position : order_) {
    prefixes_[static_cast<size_t>(position)] = before;
    before = position;
  }
  size_t shared = 0;
  for (size_t i = 0; i < n; i++) {
    const int32_t other = prefixes_[i];
    if (other < 0 || text_[i] == kSeparator) {
      shared = 0;
    } else {
      const auto j = static_cast<size_t>(other);
      while (text_[i + shared] == text_[j + shared] && !endsAfter(i, shared)) {
        shared++;
      }
    }
    prefixes_[i] = static_cast<int32_t>(shared);
    if (shared > 0) shared--;
  }
}

// The end of the run of equal suffixes that begins at index `from`.
size_t SuffixSorter::equalRun(size_t from) const {
  size_t end = from + 1;
  while (end < order_.size()) {
    const auto position = static_cast<size_t>(order_[end]);
    const auto before = static_cast<size_t>(order_[end - 1]);
    const auto shared = static_cast<size_t>(prefixes_[position]);
    if (!endsAfter(position, shared) || !endsAfter(before, shared)) break;
    end++;
  }
  return end;
}

size_t SuffixSorter::next() {
  previous_ = current_;
  if (prefixes_.empty()) {
    current_ = static_cast<size_t>(order_[index_++]);
    return current_;
  }
  const auto leader = static_cast<size_t>(order_[index_]);
  if (index_ == runEnd_) {
    // What the first of a run shares with the suffix before it, all do; the
    // sorter has left them in the order of what follows their inputs.
    shared_ = static_cast<size_t>(prefixes_[leader]);
    runEnd_ = equalRun(index_);
    std::sort(order_.begin() + static_cast<ptrdiff_t>(index_),
              order_.begin() + static_cast<ptrdiff_t>(runEnd_));
  } else {
    shared_ = text_.find(kSeparator, leader) - leader;
  }
  current_ = static_cast<size_t>(order_[index_++]);
  return current_;
}

LcpEntry SuffixSorter::entry() const {
  if (index_ == first_ + 1) return 0;
  if (shared_ >= static_cast<size_t>(kLcpLimit / 2)) {
    throw std::runtime_error("two suffixes share " + std::to_string(shared_) +
                             " characters: an LCP entry holds less than " +
                             std::to_string(kLcpLimit / 2));
  }
  const int bits = static_cast<int>(2 * shared_);
  const char a = text_[previous_ + shared_];
  const char b = text_[current_ + shared_];
  if (a == kSeparator || b == kSeparator) return makeLcpEntry(bits, 0);
  const bool firstDiffers = ((codeOf(a) ^ codeOf(b)) & 2) != 0;
  return makeLcpEntry(firstDiffers ? bits : bits + 1, 1);
}

}  // namespace kit
