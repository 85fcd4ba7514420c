#include "kit/prepare/suffix_sorter.h"

#include <divsufsort.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace kit {
namespace {

constexpr size_t kSample = 4;

// How many turns ahead memory is asked for. The order jumps about in tables
// that no cache holds, and waiting for them would be most of the time.
constexpr size_t kAhead = 24;

constexpr size_t kStep = 32;  // characters compared at once

// A byte for each position: 0 in the gaps, which sorts before all codes.
std::vector<unsigned char> unpacked(const PsaText& psa) {
  std::vector<unsigned char> bytes(kCharactersPerWord * psa.words.size());
  for (const InputString& input : psa.inputs) {
    for (size_t p = input.begin; p < input.begin + input.length; p++) {
      const uint32_t word = psa.words[p / kCharactersPerWord];
      bytes[p] = static_cast<unsigned char>(
          1 + (word >> (30 - 2 * (p % kCharactersPerWord)) & 3));
    }
  }
  return bytes;
}

// Characters that the suffixes at two positions share, of which they are known
// to share `from`.
size_t sharedFrom(size_t from, size_t a, size_t b, const PsaText& psa,
                  const InputFinder& finder) {
  const size_t rest = std::min(finder.rest(a), finder.rest(b));
  for (size_t shared = from; shared < rest; shared += kStep) {
    const uint64_t unequal = charactersAt(psa.words.data(), a + shared) ^
                             charactersAt(psa.words.data(), b + shared);
    if (unequal != 0) {
      return std::min(
          rest, shared + static_cast<size_t>(std::countl_zero(unequal)) / 2);
    }
  }
  return rest;
}

}  // namespace

SuffixSorter::SuffixSorter(const PsaText& psa, const InputFinder& finder)
    : psa_(psa), finder_(finder) {
  const size_t positions = kCharactersPerWord * psa.words.size();
  if (positions >= static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
    throw std::runtime_error(psa.file +
                             ": repeats itself too much to be sorted as one "
                             "suffix array of this length");
  }
  {
    const std::vector<unsigned char> bytes = unpacked(psa);
    order_.resize(positions);
    if (divsufsort(bytes.data(), order_.data(),
                   static_cast<int32_t>(positions)) != 0) {
      throw std::runtime_error(psa.file + ": the suffixes could not be sorted");
    }
  }
  first_ = index_ = positions - psa.characters;
  samplePrefixes();
  runEnd_ = first_;
}

// Goes through the text from left to right: from one suffix to the next, the
// characters shared with the suffix before it in the order fall by one at most
// (Kärkkäinen, Manzini and Puglisi, "Permuted Longest-Common-Prefix Array",
// 2009). Until its turn a sample holds the position of that suffix.
void SuffixSorter::samplePrefixes() {
  samples_.resize(order_.size() / kSample);
  for (size_t i = first_ + 1; i < order_.size(); i++) {
    if (position(i) % kSample == 0) {
      samples_[position(i) / kSample] = static_cast<uint32_t>(position(i - 1));
    }
  }
  const size_t least = position(first_);  // has none before it
  for (const InputString& input : psa_.inputs) {
    size_t shared = 0;
    for (size_t p = input.begin; p < input.begin + input.length; p += kSample) {
      uint32_t& sample = samples_[p / kSample];
      if ((p / kSample + kAhead) < samples_.size()) {
        const size_t ahead = samples_[p / kSample + kAhead];
        __builtin_prefetch(psa_.words.data() +
                           (ahead + shared) / kCharactersPerWord);
      }
      shared = p == least ? 0 : sharedFrom(shared, p, sample, psa_, finder_);
      sample = static_cast<uint32_t>(shared);
      shared -= std::min(shared, kSample);
    }
  }
}

size_t SuffixSorter::sharedWithTheOneBefore(size_t index) const {
  const size_t p = position(index);
  const size_t sample = samples_[p / kSample];
  return sharedFrom(sample - std::min(sample, p % kSample), p,
                    position(index - 1), psa_, finder_);
}

// Finds the run of equal suffixes that begins with the next one, and brings it
// into the order of the inputs; the library has left it in the order of what
// follows them.
void SuffixSorter::findRun() {
  const size_t rest = finder_.rest(position(index_));
  for (runEnd_ = index_ + 1; runEnd_ < order_.size(); runEnd_++) {
    if (runEnd_ + kAhead < order_.size()) {
      const size_t ahead = position(runEnd_ + kAhead);
      __builtin_prefetch(&samples_[ahead / kSample]);
      __builtin_prefetch(psa_.words.data() + ahead / kCharactersPerWord);
    }
    aheadShared_ = sharedWithTheOneBefore(runEnd_);
    if (aheadShared_ != rest || finder_.rest(position(runEnd_)) != rest) break;
  }
  std::sort(order_.begin() + static_cast<ptrdiff_t>(index_),
            order_.begin() + static_cast<ptrdiff_t>(runEnd_));
}

size_t SuffixSorter::next() {
  if (index_ == runEnd_) {
    // What the first of a run shares with the suffix before it, all do.
    shared_ = aheadShared_;
    findRun();
  } else {
    shared_ = finder_.rest(position(index_));
  }
  return position(index_++);
}

}  // namespace kit
