// Which of the versions of the vector code runs.
//
// The files that hold vector code are compiled once for each target of Google
// Highway: on x86-64 for AVX-512 (as of Ice Lake and Zen 4), AVX2 and, in
// portable code, for all others; on ARM for NEON. All versions give the same
// results, the same counts included.
//
// Only Highway's headers are used. Its library would measure the clock whenever
// it is loaded, by an instruction that not every (virtual) machine has.

#ifndef PALVOR_SIMD_TARGET_H_
#define PALVOR_SIMD_TARGET_H_

#include <cstddef>

namespace palvor {

// The most that may be used; a processor that has less uses what it has.
enum class Processor {
  kPortable,  // no vectors
  kAvx2,      // elsewhere than on x86-64 as kBest
  kBest,
};

// The versions of a function, most capable first; null where a version is not
// compiled. The last is always there.
template <typename Function>
struct Versions {
  Function avx512;
  Function avx2;
  Function fallback;
};

// Whether this processor has all that the versions use.
bool hasAvx512();
bool hasAvx2();

// The version that may run on this processor.
template <typename Function>
Function choose(const Versions<Function>& versions, Processor most) {
  if (most == Processor::kBest && versions.avx512 && hasAvx512()) {
    return versions.avx512;
  }
  if (most != Processor::kPortable && versions.avx2 && hasAvx2()) {
    return versions.avx2;
  }
  return versions.fallback;
}

}  // namespace palvor

// All versions of a function that a file with vector code defines for each
// target, to be used in its part that is compiled once.
#define PALVOR_VERSIONS(function)                              \
  palvor::Versions<decltype(&HWY_STATIC_DISPATCH(function))> { \
    HWY_CHOOSE_AVX3_DL(function), HWY_CHOOSE_AVX2(function),   \
        HWY_CHOOSE_FALLBACK(function)                          \
  }

#endif  // PALVOR_SIMD_TARGET_H_
