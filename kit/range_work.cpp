#include "kit/range_work.h"

#include <stdexcept>

#include "kit/workers.h"

namespace kit {

void RangeWork::run(int jobs, const std::function<Worker()>& makeWorker) {
  runWorkers(jobs, [&] {
    try {
      const Worker worker = makeWorker();
      for (size_t range = next_++; range < ranges_; range = next_++) {
        if (failed_) return false;
        worker(range);
      }
    } catch (...) {
      failed_ = true;
      throw;
    }
    return false;
  });
}

void RangeWork::advance(uint64_t suffixes) {
  // What the first one threw is thrown on, and not this.
  if (failed_) throw std::runtime_error("another thread failed");
  progress_.add(suffixes);
}

}  // namespace kit
