// Code for particular processors, chosen while the program runs.
//
// What stands between PALVOR_AVX512_BEGIN and PALVOR_END is compiled for
// processors with those instructions, and must only run where processor() says
// so; for AVX2 likewise. All versions of a function give the same results.

#ifndef PALVOR_SUPPORT_PROCESSOR_H_
#define PALVOR_SUPPORT_PROCESSOR_H_

// Each can do what those before it can.
enum class Processor { kAny, kAvx2, kAvx512 };

// The best there is code for. The environment variable PALVOR_PROCESSOR ("any",
// "avx2", "avx512") can lower it, for tests and measurements.
Processor processor();

#if defined(__x86_64__)

#define PALVOR_HAS_VERSIONS

#define PALVOR_PRAGMA(text) _Pragma(#text)
#if defined(__clang__)
#define PALVOR_BEGIN(features)                                          \
  PALVOR_PRAGMA(clang attribute push(__attribute__((target(features))), \
                                     apply_to = function))
#define PALVOR_END PALVOR_PRAGMA(clang attribute pop)
#else
#define PALVOR_BEGIN(features)    \
  PALVOR_PRAGMA(GCC push_options) \
  PALVOR_PRAGMA(GCC target(features))
#define PALVOR_END PALVOR_PRAGMA(GCC pop_options)
#endif

#define PALVOR_AVX2_BEGIN PALVOR_BEGIN("avx2,bmi,bmi2,lzcnt,popcnt")
#define PALVOR_AVX512_BEGIN                                            \
  PALVOR_BEGIN(                                                        \
      "avx2,bmi,bmi2,lzcnt,popcnt,avx512f,avx512bw,avx512cd,avx512dq," \
      "avx512vl,avx512vbmi2")

#endif  // __x86_64__

#endif  // PALVOR_SUPPORT_PROCESSOR_H_
