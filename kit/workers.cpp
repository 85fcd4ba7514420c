#include "kit/workers.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace kit {

void runWorkers(int threads, const std::function<bool()>& turn) {
  std::atomic<bool> failed = false;
  std::mutex mutex;
  std::exception_ptr failure;  // guarded by the mutex
  const auto fail = [&] {
    const std::lock_guard lock(mutex);
    if (!failure) failure = std::current_exception();
    failed = true;
  };
  const auto work = [&] {
    try {
      while (!failed && turn()) {
      }
    } catch (...) {
      fail();
    }
  };
  {
    std::vector<std::jthread> workers;  // joins, however the block is left
    try {
      for (int i = 1; i < threads; i++) workers.emplace_back(work);
    } catch (...) {
      fail();  // the system has no more threads
    }
    work();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace kit
