#include "watch.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "support/memory.h"

// The sanitizers ask for their settings by these names. A report has to end
// the process by a signal. The tables of a run are never freed, by design.
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

constexpr long long kMostRequested = 1LL << 30;      // bytes
constexpr long long kRequestedPerByte = 32LL << 10;  // of the case
constexpr long kMostTouched = 1L << 20;              // KiB

const CaseFolder* watched = nullptr;
long long caseBytes = 0;
bool failureIsFinding = false;

void testExit(int status, void*) {
  watched->remove();
  require(status == 0 || status == 1, "exit status " + std::to_string(status));
  require(status == 0 || !failureIsFinding, "a step failed that must not");
  require(MemUsed() <= kMostRequested + kRequestedPerByte * caseBytes,
          "requested " + std::to_string(MemUsed()) + " bytes");
  struct rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  require(usage.ru_maxrss <= kMostTouched,
          "touched " + std::to_string(usage.ru_maxrss) + " KiB");
  // What the process would still do, the fuzzer would wait for each time.
  std::fflush(nullptr);
  _exit(status);
}

}  // namespace

void watchExit(const CaseFolder& folder, size_t bytes) {
  watched = &folder;
  caseBytes = static_cast<long long>(bytes);
  on_exit(testExit, nullptr);
}

void mustNotFail(bool must) { failureIsFinding = must; }

void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "FINDING: %s\n", what.c_str());
  std::abort();
}
