#include "kit/build/machine.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <thread>

namespace kit {

int usableThreads() {
  return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

uint64_t usableMemory() {
  uint64_t memory = static_cast<uint64_t>(::sysconf(_SC_PHYS_PAGES)) *
                    static_cast<uint64_t>(::sysconf(_SC_PAGESIZE));
  // Of a container, in either version of control groups; no number: no limit.
  for (const char* path : {"/sys/fs/cgroup/memory.max",
                           "/sys/fs/cgroup/memory/memory.limit_in_bytes"}) {
    uint64_t limit = 0;
    if (std::ifstream(path) >> limit && limit > 0) {
      memory = std::min(memory, limit);
    }
  }
  return memory;
}

uint64_t peakMemory() {
  struct rusage usage = {};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace kit
