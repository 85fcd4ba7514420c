#include "support/clocks.h"

#include <sys/resource.h>
#include <sys/time.h>

#include <cstdint>
#include <ctime>

namespace {

int32_t rclockStart = 0;  // low 32 bits of the first reading's seconds
time_t sclockStart = 0;   // seconds of the first reading of sclock
struct rusage ru = {};    // resource usage as of the last mclock

}  // namespace

int rclock() {
  struct timeval now = {};
  gettimeofday(&now, nullptr);
  if (rclockStart == 0) rclockStart = static_cast<int32_t>(now.tv_sec);
  return static_cast<int>((now.tv_sec - rclockStart) * 1000 +
                          now.tv_usec / 1000);
}

int mclock() {
  getrusage(RUSAGE_SELF, &ru);
  return static_cast<int>((ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) * 1000 +
                          (ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1000);
}

int sclock() {
  const time_t now = std::time(nullptr);
  if (sclockStart == 0) sclockStart = now;
  return static_cast<int>(now - sclockStart);
}

long long nanoclock() {
  struct timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

int getPFs() { return static_cast<int>(ru.ru_majflt); }

int getRSS() { return static_cast<int>(ru.ru_maxrss); }

int elapsed(int earlier, int later) {
  return static_cast<int>(static_cast<unsigned>(later) -
                          static_cast<unsigned>(earlier));
}
