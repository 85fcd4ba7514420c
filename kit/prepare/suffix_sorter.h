// The suffixes of one suffix array's inputs, in order, in time proportional to
// the text, whatever it repeats: the road for texts that repeat themselves too
// much to be sorted bucket by bucket (kit/prepare/bucket_sorter.h).
//
// A suffix ends where its input ends. Suffixes are in the order of their
// characters; one that is a prefix of another comes first, and equal ones,
// which stand in different inputs, come in the order of their inputs.
//
// Takes kBytesPerPosition bytes of memory for each position of the text, beside
// the text.

#ifndef PALVOR_KIT_PREPARE_SUFFIX_SORTER_H_
#define PALVOR_KIT_PREPARE_SUFFIX_SORTER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/prepare/input_finder.h"
#include "kit/prepare/psa_text.h"

namespace kit {

class SuffixSorter {
 public:
  static constexpr size_t kBytesPerPosition = 5;

  // Sorts. The text and the finder must outlive the sorter.
  // Throws std::runtime_error if the text is too long: 2^31 positions or more.
  SuffixSorter(const PsaText& psa, const InputFinder& finder);

  // Position of the next suffix, in order. To be called once for each character
  // of the inputs.
  size_t next();

  // Characters that the suffix which `next` gave last shares with the one
  // before it; 0 for the first.
  size_t shared() const { return shared_; }

 private:
  void samplePrefixes();
  size_t position(size_t index) const {
    return static_cast<size_t>(order_[index]);
  }
  size_t sharedWithTheOneBefore(size_t index) const;
  void findRun();

  const PsaText& psa_;
  const InputFinder& finder_;
  std::vector<int32_t> order_;     // all positions, those in gaps first
  std::vector<uint32_t> samples_;  // of every kSample-th position: the
                                   // characters shared with the suffix before
  size_t first_ = 0;               // index of the first suffix of an input
  size_t index_ = 0;               // of the suffix given last, plus 1
  size_t runEnd_ = 0;              // end of its run of equal suffixes
  size_t aheadShared_ = 0;         // of the suffix at runEnd_
  size_t shared_ = 0;              // of the suffix given last
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_SUFFIX_SORTER_H_
