#include "kit/suffix_sorter.h"

#include <divsufsort.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kit {
namespace {

// Beside an entry: the suffix equals the one before it. Entries leave the bit
// free.
constexpr uint32_t kEqualMark = 0x8000'0000;

// How many turns ahead memory is asked for. The order jumps about in tables
// that no cache holds, and waiting for them would be most of the time.
constexpr size_t kAhead = 24;

LcpEntry entryOf(size_t shared, char a, char b) {
  if (shared >= static_cast<size_t>(kLcpLimit / 2)) {
    throw std::runtime_error("two suffixes share " + std::to_string(shared) +
                             " characters: an LCP entry holds less than " +
                             std::to_string(kLcpLimit / 2));
  }
  const int bits = static_cast<int>(2 * shared);
  if (a == kSeparator || b == kSeparator) return makeLcpEntry(bits, 0);
  const bool firstDiffers = ((codeOf(a) ^ codeOf(b)) & 2) != 0;
  return makeLcpEntry(firstDiffers ? bits : bits + 1, 1);
}

}  // namespace

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
// Until its turn a position holds the position of that suffix.
void SuffixSorter::computePrefixes() {
  const size_t n = order_.size();
  prefixes_.resize(n);
  uint32_t before = 0;  // the first is a separator's, and not looked at
  for (size_t i = 0; i < n; i++) {
    if (i + kAhead < n) {
      const auto ahead = static_cast<size_t>(order_[i + kAhead]);
      __builtin_prefetch(&prefixes_[ahead], 1);
    }
    const auto position = static_cast<uint32_t>(order_[i]);
    prefixes_[position] = before;
    before = position;
  }
  const char* text = text_.data();
  size_t shared = 0;
  for (size_t i = 0; i < n; i++) {
    if (i + kAhead < n) __builtin_prefetch(text + prefixes_[i + kAhead]);
    const size_t j = prefixes_[i];
    prefixes_[i] = 0;
    if (text[i] == kSeparator) continue;  // nothing was shared before it
    while (text[i + shared] == text[j + shared] &&
           text[i + shared] != kSeparator) {
      shared++;
    }
    const char a = text[i + shared], b = text[j + shared];
    if (wantLcp_) prefixes_[i] = entryOf(shared, a, b);
    if (a == b) prefixes_[i] |= kEqualMark;
    if (shared > 0) shared--;
  }
}

bool SuffixSorter::equalsTheOneBefore(size_t index) const {
  return (prefixes_[static_cast<size_t>(order_[index])] & kEqualMark) != 0;
}

size_t SuffixSorter::next() {
  if (!prefixes_.empty()) {
    if (index_ == runEnd_) {
      if (index_ + kAhead < order_.size()) {
        const auto ahead = static_cast<size_t>(order_[index_ + kAhead]);
        __builtin_prefetch(&prefixes_[ahead]);
      }
      // What the first of a run shares with the suffix before it, all do; the
      // sorter has left them in the order of what follows their inputs.
      entry_ = prefixes_[static_cast<size_t>(order_[index_])];
      runEnd_ = index_ + 1;
      while (runEnd_ < order_.size() && equalsTheOneBefore(runEnd_)) runEnd_++;
      if (runEnd_ > index_ + 1) {
        const auto second = static_cast<size_t>(order_[index_ + 1]);
        runEntry_ = prefixes_[second] & ~kEqualMark;
        std::sort(order_.begin() + static_cast<ptrdiff_t>(index_),
                  order_.begin() + static_cast<ptrdiff_t>(runEnd_));
      }
    } else {
      entry_ = runEntry_;
    }
  }
  return static_cast<size_t>(order_[index_++]);
}

}  // namespace kit
