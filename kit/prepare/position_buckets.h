// The suffixes of a text, spread over buckets by their first bits.
//
// Bucket k holds the suffixes whose first bits are the number k, zeros standing
// for what a short suffix has not. So the buckets follow each other as their
// suffixes do in order. Within a bucket positions ascend.
//
// The text is gone through in chunks, which threads may share out.

#ifndef PALVOR_KIT_PREPARE_POSITION_BUCKETS_H_
#define PALVOR_KIT_PREPARE_POSITION_BUCKETS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/prepare/input_finder.h"
#include "kit/prepare/psa_text.h"

namespace kit {

class PositionBuckets {
 public:
  // The text and the finder must outlive the buckets.
  PositionBuckets(const PsaText& psa, const InputFinder& finder, size_t chunks);

  // Counts a chunk's suffixes. Different chunks may be counted at once.
  void count(size_t chunk);

  // To be called once, when all chunks are counted.
  void sumUp();

  // Writes the positions of a chunk's suffixes that are in buckets [first,
  // end), so that bucket k begins at to[start(k) - start(first)]. Different
  // chunks may be spread at once, each once for every range of buckets.
  void spread(size_t chunk, size_t first, size_t end, uint32_t* to);

  size_t chunks() const { return chunks_; }

  // Bits that the suffixes of a bucket share, at most 16, and the number of
  // buckets that this makes.
  size_t bits() const { return bits_; }
  size_t buckets() const { return size_t{1} << bits_; }

  // After sumUp: the suffixes in all buckets before bucket k, which may be the
  // number of buckets.
  size_t start(size_t bucket) const { return starts_[bucket]; }
  size_t size(size_t bucket) const {
    return starts_[bucket + 1] - starts_[bucket];
  }
  size_t largest() const { return largest_; }

  // Characters of a bucket's last suffix if they are no more than its bits.
  // Otherwise some number that is larger.
  uint32_t lastRest(size_t bucket) const { return lastRests_[bucket]; }

 private:
  template <typename Take>
  void forEachSuffix(size_t chunk, Take take) const;
  void findShortLast();

  const PsaText& psa_;
  const InputFinder& finder_;
  size_t chunks_;
  size_t bits_;
  size_t largest_ = 0;
  std::vector<std::vector<uint32_t>> next_;  // by chunk and bucket: the count,
                                             // then the place of the next one
  std::vector<uint32_t> starts_;
  std::vector<uint32_t> lastRests_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_POSITION_BUCKETS_H_
