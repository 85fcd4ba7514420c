// Which of the versions of the vector code runs.
//
// The files that hold vector code are compiled once for each target of Google
// Highway: on x86-64 for AVX-512 (as of Ice Lake and Zen 4), AVX2 and, in
// portable code, for all others; on ARM for NEON. All versions give the same
// results, the same counts included.

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

// The entry of every table made by HWY_EXPORT that may run on this processor.
size_t targetIndex(Processor most);

}  // namespace palvor

#endif  // PALVOR_SIMD_TARGET_H_
