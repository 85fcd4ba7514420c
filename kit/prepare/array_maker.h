// Makes the files of one suffix array and of its strings, in stages, each of
// tasks that threads may share out.
//
// The suffixes are spread over buckets, in ranges of buckets if their positions
// may not all be held at once; then the buckets are sorted and written, each to
// its place. A text that turns out to repeat itself too much is sorted as a
// whole instead. Which of the two was done changes no byte.

#ifndef PALVOR_KIT_PREPARE_ARRAY_MAKER_H_
#define PALVOR_KIT_PREPARE_ARRAY_MAKER_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "kit/huge_buffer.h"
#include "kit/prepare/array_writer.h"
#include "kit/prepare/bucket_sorter.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/input_finder.h"
#include "kit/prepare/position_buckets.h"
#include "kit/prepare/psa_text.h"
#include "kit/prepare/repeat_budget.h"

namespace kit {

// One thread's, for one array after the other.
struct SortBuffers {
  BucketSorter sorter;
  RecordBlock block;
};

// What one array may take beside its text.
struct MemoryLimits {
  size_t positions = std::numeric_limits<size_t>::max();  // held at once, if
                                                          // no bucket has more
  size_t bytes = std::numeric_limits<size_t>::max();  // of a sort as a whole
};

class ArrayMaker {
 public:
  // Creates the array's files. The folder must outlive the maker.
  //   positions  memory for the positions; to be taken back at the end
  //   threads    that will share the work
  // Throws std::exception, as all functions but takeBack.
  ArrayMaker(const DataFolder& folder, PsaText psa, const ArrayFormat& format,
             HugeBuffer<uint32_t> positions, const MemoryLimits& limits,
             size_t threads);

  // Begins the next stage and returns the number of its tasks; 0 if all is
  // done and the files have their names. To be called when all tasks of the
  // stage before have ended well.
  size_t beginStage();

  // Does a task of the stage, 0 to its number of tasks - 1. Returns the number
  // of suffixes that came into order by it.
  size_t run(size_t task, SortBuffers& buffers);

  const PsaText& text() const { return psa_; }

  // What is to be said in the manifest of the files, when all is done; sources
  // and inputs are left out.
  const std::vector<ManifestEntry>& written() const { return written_; }

  HugeBuffer<uint32_t> takeBack() { return std::move(positions_); }

 private:
  enum class Stage { kBegin, kStringsAndCount, kSpread, kSort, kWhole, kEnd };

  using Range = std::pair<size_t, size_t>;  // of buckets; the end is not in it

  size_t beginSpread(size_t firstBucket);
  size_t beginSort();
  size_t beginWhole();
  size_t sortBuckets(const Range& group, SortBuffers& buffers);
  size_t sortWhole(RecordBlock& block);

  const DataFolder& folder_;
  PsaText psa_;
  InputFinder finder_;
  PositionBuckets buckets_;
  RepeatBudget budget_;
  ArrayWriter writer_;
  HugeBuffer<uint32_t> positions_;
  MemoryLimits limits_;
  Stage stage_ = Stage::kBegin;
  Range held_ = {0, 0};        // the buckets whose positions are held
  std::vector<Range> groups_;  // of buckets, one for each task of kSort
  std::vector<ManifestEntry> written_;
  std::atomic<bool> repetitive_ = false;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_ARRAY_MAKER_H_
