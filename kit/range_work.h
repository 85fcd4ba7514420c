// The ranges of a merge, shared out among threads.

#ifndef PALVOR_KIT_RANGE_WORK_H_
#define PALVOR_KIT_RANGE_WORK_H_

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "kit/progress.h"

namespace kit {

class RangeWork {
 public:
  // Does one range.
  using Worker = std::function<void(size_t range)>;

  // Of so many ranges with so many suffixes together; `what` is shown.
  RangeWork(std::string what, size_t ranges, uint64_t suffixes,
            const ProgressStyle& progress = {})
      : what_(std::move(what)),
        ranges_(ranges),
        suffixes_(suffixes),
        progress_(progress) {}

  // Has all ranges done, the first ones first, by up to `jobs` threads, each of
  // which makes a worker of its own. If one of them throws, the others end with
  // their next advance, and it is thrown on.
  void run(int jobs, const std::function<Worker()>& makeWorker);

  // To be told of suffixes that are done, now and then: shows how far it is.
  // Throws if another worker has failed. Threads may call it side by side.
  void advance(uint64_t suffixes);

 private:
  std::string what_;
  size_t ranges_;
  uint64_t suffixes_;
  std::atomic<size_t> next_ = 0;
  std::atomic<bool> failed_ = false;
  std::mutex mutex_;  // guards all below
  std::chrono::steady_clock::time_point begun_ =
      std::chrono::steady_clock::now();
  uint64_t done_ = 0;
  Progress progress_;
};

}  // namespace kit

#endif  // PALVOR_KIT_RANGE_WORK_H_
