// The ranges of a merge, shared out among threads.

#ifndef PALVOR_KIT_RANGE_WORK_H_
#define PALVOR_KIT_RANGE_WORK_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "kit/progress.h"
#include "kit/work_progress.h"

namespace kit {

class RangeWork {
 public:
  // Does one range.
  using Worker = std::function<void(size_t range)>;

  // Of so many ranges with so many suffixes together; `what` is shown.
  RangeWork(std::string what, size_t ranges, uint64_t suffixes,
            const ProgressStyle& progress = {})
      : ranges_(ranges), progress_(std::move(what), suffixes, progress) {}

  // Has all ranges done, the first ones first, by up to `jobs` threads, each of
  // which makes a worker of its own. If one of them throws, the others end with
  // their next advance, and it is thrown on.
  void run(int jobs, const std::function<Worker()>& makeWorker);

  // To be told of suffixes that are done, now and then: shows how far it is.
  // Throws if another worker has failed. Threads may call it side by side.
  void advance(uint64_t suffixes);

 private:
  size_t ranges_;
  std::atomic<size_t> next_ = 0;
  std::atomic<bool> failed_ = false;
  WorkProgress progress_;
};

}  // namespace kit

#endif  // PALVOR_KIT_RANGE_WORK_H_
