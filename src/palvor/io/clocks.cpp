#include "palvor/io/clocks.h"

#include <sys/resource.h>
#include <sys/time.h>

#include <ctime>

namespace palvor {

int64_t wallMilliseconds() {
  struct timeval now = {};
  gettimeofday(&now, nullptr);
  return now.tv_sec * int64_t{1000} + now.tv_usec / 1000;
}

int64_t wallNanoseconds() {
  struct timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * int64_t{1'000'000'000} + now.tv_nsec;
}

ProcessorTime processorTime() {
  struct rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const int64_t seconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
  const int64_t microseconds = usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
  return {seconds * 1000 + microseconds / 1000, usage.ru_majflt};
}

}  // namespace palvor
