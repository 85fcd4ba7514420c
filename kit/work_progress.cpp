#include "kit/work_progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace kit {

WorkProgress::WorkProgress(std::string what, uint64_t all,
                           const ProgressStyle& style)
    : what_(std::move(what)), all_(all), progress_(style) {}

void WorkProgress::add(uint64_t done) {
  const std::lock_guard lock(mutex_);
  // Files may have grown since their sizes were added up.
  done_ = std::min(done_ + done, all_);
  const uint64_t percent = all_ == 0 ? 100 : done_ * 100 / all_;
  progress_.show(
      fmt::format("{}, {}%{}", what_, percent, timeLeft(begun_, done_, all_)));
}

}  // namespace kit
