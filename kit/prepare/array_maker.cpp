#include "kit/prepare/array_maker.h"

#include <bit>
#include <stdexcept>

#include "kit/amounts.h"
#include "kit/prepare/folder_writer.h"
#include "kit/prepare/suffix_sorter.h"

namespace kit {
namespace {

// Suffixes that are sorted and written at once, and so fit a cache: few enough
// to be shared out, too. A bucket is never parted.
constexpr size_t kGroup = size_t{1} << 15;

// Texts below this many characters are one thread's.
constexpr size_t kWorthSharing = size_t{1} << 19;

// A bucket of a text of some length that holds this part of it makes the text
// too repetitive, and its keys would take too much memory.
constexpr size_t kLargestShare = 8;
constexpr size_t kSomeLength = size_t{1} << 16;

size_t chunksOf(const PsaText& psa, size_t threads) {
  return psa.characters < kWorthSharing ? 1 : threads;
}

}  // namespace

ArrayMaker::ArrayMaker(const DataFolder& folder, PsaText psa,
                       const ArrayFormat& format,
                       HugeBuffer<uint32_t> positions,
                       const MemoryLimits& limits, size_t threads)
    : folder_(folder),
      psa_(std::move(psa)),
      finder_(psa_),
      buckets_(psa_, finder_, chunksOf(psa_, threads)),
      budget_(psa_.characters),
      writer_(folder, psa_, finder_, format),
      positions_(std::move(positions)),
      limits_(limits) {}

size_t ArrayMaker::beginStage() {
  switch (stage_) {
    case Stage::kBegin:
      stage_ = Stage::kStringsAndCount;
      return 1 + buckets_.chunks();
    case Stage::kStringsAndCount:
      buckets_.sumUp();
      if (psa_.characters >= kSomeLength &&
          buckets_.largest() > psa_.characters / kLargestShare) {
        return beginWhole();
      }
      return beginSpread(0);
    case Stage::kSpread:
      return beginSort();
    case Stage::kSort:
      if (repetitive_) {
        return beginWhole();
      }
      if (held_.second < buckets_.buckets()) return beginSpread(held_.second);
      break;
    default:
      break;
  }
  stage_ = Stage::kEnd;
  written_ = writer_.commit();
  return 0;
}

// Takes as many buckets as may be held.
size_t ArrayMaker::beginSpread(size_t firstBucket) {
  stage_ = Stage::kSpread;
  const size_t start = buckets_.start(firstBucket);
  size_t end = firstBucket + 1;
  while (end < buckets_.buckets() &&
         buckets_.start(end + 1) - start <= limits_.positions) {
    end++;
  }
  held_ = {firstBucket, end};
  positions_.reserve(buckets_.start(end) - start);
  return buckets_.chunks();
}

size_t ArrayMaker::beginSort() {
  stage_ = Stage::kSort;
  groups_.clear();
  size_t first = held_.first;
  for (size_t end = first + 1; end <= held_.second; end++) {
    if (end == held_.second ||
        buckets_.start(end + 1) - buckets_.start(first) > kGroup) {
      groups_.emplace_back(first, end);
      first = end;
    }
  }
  return groups_.size();
}

size_t ArrayMaker::beginWhole() {
  stage_ = Stage::kWhole;
  positions_.release();
  writer_.restart();
  const size_t need =
      SuffixSorter::kBytesPerPosition * kCharactersPerWord * psa_.words.size();
  if (need > limits_.bytes) {
    throw std::runtime_error(
        psa_.file + ": repeats itself so much that sorting it takes " +
        roundBytes(need) + " beside the text, more than is allowed (--memory)");
  }
  return 1;
}

size_t ArrayMaker::run(size_t task, SortBuffers& buffers) {
  switch (stage_) {
    case Stage::kStringsAndCount:
      if (task == 0) {
        writeStrings(folder_, psa_);
      } else {
        buckets_.count(task - 1);
      }
      return 0;
    case Stage::kSpread:
      buckets_.spread(task, held_.first, held_.second, positions_.data());
      return 0;
    case Stage::kSort:
      if (repetitive_) return 0;
      try {
        return sortBuckets(groups_[task], buffers);
      } catch (const TooRepetitive&) {
        repetitive_ = true;
        return 0;
      }
    case Stage::kWhole:
      return sortWhole(buffers.block);
    default:
      return 0;
  }
}

size_t ArrayMaker::sortBuckets(const Range& group, SortBuffers& buffers) {
  RecordBlock& block = buffers.block;
  block.begin(buckets_.start(group.first));
  const size_t held = buckets_.start(held_.first);
  // The one before a bucket's first suffix is the last of the last bucket that
  // is not empty.
  size_t before = group.first;
  while (before > 0 && buckets_.size(--before) == 0) {
  }
  for (size_t bucket = group.first; bucket < group.second; bucket++) {
    const size_t size = buckets_.size(bucket);
    if (size == 0) continue;
    const SortedBucket sorted = buffers.sorter.sort(
        psa_, finder_, budget_,
        {positions_.data() + (buckets_.start(bucket) - held), size},
        buckets_.bits(), bucket);
    block.lastRest = buckets_.lastRest(before);
    const auto shared =
        static_cast<uint64_t>(std::countl_zero(before ^ bucket)) -
        (64 - buckets_.bits());
    writer_.append(block, sorted.positions[0], sorted.texts[0], shared);
    for (size_t i = 1; i < size; i++) {
      writer_.append(block, sorted.positions[i], sorted.texts[i],
                     sorted.shared[i]);
    }
    before = bucket;
  }
  writer_.write(block);
  return block.records.size();
}

size_t ArrayMaker::sortWhole(RecordBlock& block) {
  const uint32_t* words = psa_.words.data();
  SuffixSorter sorter(psa_, finder_);
  block.begin(0);
  size_t before = 0;
  for (size_t rank = 0; rank < psa_.characters; rank++) {
    const size_t position = sorter.next();
    const size_t shared = sorter.shared();
    uint64_t bits = 2 * shared;
    if (rank > 0 && shared < finder_.rest(before) &&
        shared < finder_.rest(position)) {
      bits += static_cast<uint64_t>(
          std::countl_zero(charactersAt(words, before + shared) ^
                           charactersAt(words, position + shared)));
    }
    writer_.append(block, position, charactersAt(words, position), bits);
    if (block.records.size() == kGroup) {
      writer_.write(block);
      block.begin(rank + 1);
    }
    before = position;
  }
  writer_.write(block);
  return psa_.characters;
}

}  // namespace kit
