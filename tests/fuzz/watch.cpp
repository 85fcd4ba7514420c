#include "watch.h"

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>

// The sanitizers ask for their settings by these names. A report has to end
// the process by a signal. Leaks the other tests look for: here they would cost
// every case its time.
extern "C" const char* __asan_default_options();
extern "C" const char* __ubsan_default_options();

extern "C" const char* __asan_default_options() {
  return "abort_on_error=1:detect_leaks=0:max_allocation_size_mb=1024:"
         "allocator_may_return_null=0";
}

extern "C" const char* __ubsan_default_options() {
  return "abort_on_error=1:halt_on_error=1:print_stacktrace=1";
}

namespace {

constexpr int64_t kMostRequested = int64_t{1} << 30;      // bytes
constexpr int64_t kRequestedPerByte = int64_t{32} << 10;  // of the case
constexpr long kMostTouched = 1L << 20;                   // KiB

}  // namespace

void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "FINDING: %s\n", what.c_str());
  std::abort();
}

void testRequest(int64_t bytes, size_t caseBytes) {
  const int64_t most =
      kMostRequested + kRequestedPerByte * static_cast<int64_t>(caseBytes);
  require(bytes <= most, "requested " + std::to_string(bytes) + " bytes");
}

void testTouched() {
  struct rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  require(usage.ru_maxrss <= kMostTouched,
          "touched " + std::to_string(usage.ru_maxrss) + " KiB");
}
