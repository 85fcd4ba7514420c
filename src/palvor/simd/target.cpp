#include "palvor/simd/target.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace palvor {

#if defined(__x86_64__)

namespace {

// The count of leading zeros, which __builtin_cpu_supports cannot be asked for
// by every compiler.
bool hasLzcnt() {
  unsigned a, b, c, d;
  return __get_cpuid(0x80000001, &a, &b, &c, &d) != 0 && (c & bit_ABM) != 0;
}

}  // namespace

bool hasAvx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
         __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
         __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("aes") &&
         hasLzcnt();
}

// What Highway may emit for its target AVX3_DL, and the conflict detection that
// the rows use beyond it.
bool hasAvx512() {
  return hasAvx2() && __builtin_cpu_supports("avx512f") &&
         __builtin_cpu_supports("avx512vl") &&
         __builtin_cpu_supports("avx512dq") &&
         __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512cd") &&
         __builtin_cpu_supports("avx512vnni") &&
         __builtin_cpu_supports("avx512vbmi") &&
         __builtin_cpu_supports("avx512vbmi2") &&
         __builtin_cpu_supports("avx512vpopcntdq") &&
         __builtin_cpu_supports("avx512bitalg") &&
         __builtin_cpu_supports("vpclmulqdq") && __builtin_cpu_supports("gfni");
}

#else

bool hasAvx2() { return false; }
bool hasAvx512() { return false; }

#endif

}  // namespace palvor
