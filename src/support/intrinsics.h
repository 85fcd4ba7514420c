// The instructions of particular processors as functions, where there is code
// for them (support/processor.h).

#ifndef PALVOR_SUPPORT_INTRINSICS_H_
#define PALVOR_SUPPORT_INTRINSICS_H_

#include "support/processor.h"

#if defined(PALVOR_HAS_VERSIONS)
// With sanitizers g++ 12 takes offence at its own header.
#pragma GCC diagnostic push
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#pragma GCC diagnostic ignored "-Wuninitialized"
#include <immintrin.h>
#pragma GCC diagnostic pop
#endif

#endif  // PALVOR_SUPPORT_INTRINSICS_H_
