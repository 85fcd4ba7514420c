// How far work is that several threads share.

#ifndef PALVOR_KIT_WORK_PROGRESS_H_
#define PALVOR_KIT_WORK_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

#include "kit/progress.h"

namespace kit {

class WorkProgress {
 public:
  // Of so many units together, of whatever kind; `what` is shown: "merging".
  WorkProgress(std::string what, uint64_t all, const ProgressStyle& style = {});

  // To be told of units that are done, now and then: shows how far it is, and
  // the time left. Threads may call it side by side.
  void add(uint64_t done);

 private:
  const std::string what_;
  const uint64_t all_;
  const std::chrono::steady_clock::time_point begun_ =
      std::chrono::steady_clock::now();
  std::mutex mutex_;  // guards all below
  uint64_t done_ = 0;
  Progress progress_;
};

}  // namespace kit

#endif  // PALVOR_KIT_WORK_PROGRESS_H_
