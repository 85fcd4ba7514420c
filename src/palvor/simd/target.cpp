#include "palvor/simd/target.h"

#include <hwy/highway.h>

namespace palvor {

size_t targetIndex([[maybe_unused]] Processor most) {
#if (HWY_TARGETS & (HWY_TARGETS - 1)) == 0
  return 0;  // one version, and tables of one entry
#else
  int64_t targets = hwy::SupportedTargets();
  if (most == Processor::kPortable) targets = 0;
#if HWY_ARCH_X86
  // The rows use it beyond what Highway asks for.
  if (!__builtin_cpu_supports("avx512cd")) targets &= ~HWY_AVX3_DL;
  if (most == Processor::kAvx2) targets &= HWY_AVX2;
#endif
  hwy::ChosenTarget chosen;
  chosen.Update(targets);
  return chosen.GetIndex();
#endif
}

}  // namespace palvor
