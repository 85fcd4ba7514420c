#include "kit/workers.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kit {

void runWorkers(int threads, const std::function<bool()>& turn) {
  std::atomic<bool> failed = false;
  std::mutex mutex;
  std::exception_ptr failure;  // guarded by the mutex
  const auto fail = [&](std::exception_ptr exception) {
    const std::lock_guard lock(mutex);
    if (!failure) failure = std::move(exception);
    failed = true;
  };
  const auto work = [&] {
    try {
      while (!failed && turn()) {
      }
    } catch (...) {
      fail(std::current_exception());
    }
  };
  {
    std::vector<std::jthread> workers;  // joins, however the block is left
    try {
      for (int i = 1; i < threads; i++) workers.emplace_back(work);
    } catch (const std::system_error& error) {
      fail(std::make_exception_ptr(
          std::system_error(error.code(), "can't start a thread")));
    }
    work();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace kit
