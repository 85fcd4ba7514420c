// From sequence files to a data folder, by several threads.

#ifndef PALVOR_KIT_PREPARE_PREPARATION_H_
#define PALVOR_KIT_PREPARE_PREPARATION_H_

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "kit/huge_buffer.h"
#include "kit/prepare/array_maker.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/folder_writer.h"
#include "kit/prepare/manifest.h"
#include "kit/prepare/psa_source.h"
#include "kit/progress.h"

namespace kit {

struct PreparationPlan {
  std::vector<std::string> files;
  ReadingRules rules;
  ArrayFormat format;
  int jobs = 1;                                        // threads, 1 or more
  size_t memory = std::numeric_limits<size_t>::max();  // bytes to do with
  FolderBase base = {};     // comes first; its files are in the folder
  uint64_t characters = 0;  // to come, about, for the progress; 0: unknown
  ProgressStyle progress = {};
};

// Bytes of memory that a preparation takes at most if its longest array has so
// many characters, its files together so many, and memory is not limited.
uint64_t memoryNeed(uint64_t longest, uint64_t all, int jobs);

// Those that it does not do without.
uint64_t leastMemoryNeed(uint64_t longest, int jobs);

// Reading is done by one thread at a time, in order, so that all numbers come
// out the same for any number of threads; it goes on while others sort. The
// work on an array is shared out among all that are free.
class Preparation {
 public:
  // All three must outlive the preparation.
  Preparation(const PreparationPlan& plan, const DataFolder& folder,
              Manifest& manifest);

  // Writes all files of the folder. Throws std::exception, and then leaves no
  // lengths file.
  void run();

  const ReadingSummary& summary() const { return source_.summary(); }

  // Suffix arrays that stood in the folder, and were not made again.
  size_t resumed() const { return resumed_; }

 private:
  struct Array {
    template <typename... Arguments>
    explicit Array(Arguments&&... arguments)
        : maker(std::forward<Arguments>(arguments)...) {}

    ArrayMaker maker;
    size_t tasks = 0;  // of its stage
    size_t taken = 0;  // of these
    size_t ended = 0;
  };

  bool turn(SortBuffers& buffers);
  bool mayBegin() const;
  Array* arrayWithTasks();
  void readNext(std::unique_lock<std::mutex>& lock);
  void begin(std::unique_lock<std::mutex>& lock);
  bool stands(const PsaText& psa) const;
  void runTask(std::unique_lock<std::mutex>& lock, Array& array,
               SortBuffers& buffers);
  void enterStage(std::unique_lock<std::mutex>& lock, Array& array);
  MemoryLimits limitsFor(const PsaText& psa) const;
  void showProgress();
  std::vector<std::string> namesOf(const PsaText& psa) const;

  const PreparationPlan& plan_;
  const DataFolder& folder_;

  std::mutex mutex_;  // guards all below, but what one thread does for all, or
                      // none changes meanwhile
  std::condition_variable changed_;
  Manifest& manifest_;
  PsaSource source_;
  FolderIndex index_;
  Progress progress_;
  bool reading_ = false;       // a thread reads the next text
  bool ended_ = false;         // all is read
  bool failed_ = false;        // a thread threw: all others are to end
  std::deque<PsaText> texts_;  // read, and waiting
  std::vector<std::unique_ptr<Array>> arrays_;  // in work, in order
  size_t charactersInWork_ = 0;  // of arrays begun and not yet complete
  uint64_t charactersDone_ = 0;
  size_t resumed_ = 0;
  const std::chrono::steady_clock::time_point begun_ =
      std::chrono::steady_clock::now();
  std::vector<HugeBuffer<uint32_t>> spare_;  // for positions
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_PREPARATION_H_
