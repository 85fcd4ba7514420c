#include "support/processor.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

Processor best() {
#if defined(PALVOR_HAS_VERSIONS)
  __builtin_cpu_init();
  const bool avx2 =
      __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  const bool avx512 = __builtin_cpu_supports("avx512f") &&
                      __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512cd") &&
                      __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512vl") &&
                      __builtin_cpu_supports("avx512vbmi2");
  if (avx2) return avx512 ? Processor::kAvx512 : Processor::kAvx2;
#endif
  return Processor::kAny;
}

Processor wanted() {
  const char* name = std::getenv("PALVOR_PROCESSOR");
  if (name == nullptr) return Processor::kAvx512;
  if (std::strcmp(name, "any") == 0) return Processor::kAny;
  if (std::strcmp(name, "avx2") == 0) return Processor::kAvx2;
  return Processor::kAvx512;
}

}  // namespace

Processor processor() {
  static const Processor chosen = std::min(best(), wanted());
  return chosen;
}
