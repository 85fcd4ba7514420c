#include "merge/walk_count.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "sources/compare.h"
#include "support/intrinsics.h"
#include "support/processor.h"

namespace {

void countOneByOne(WalkCount& count, const Place& place, int bits, int common) {
  for (int number = place.block; number >= 0; number--) {
    if (leasts[number] > common) continue;
    const Block& block = blockAt(number);
    const int end = number == place.block ? place.index : block.end;
    for (int index = end - 1; index >= block.begin; index--) {
      const int stored = lcpBits(block.entry[index]);
      if (stored > common) continue;
      countComparison(count, block, index, bits, stored, common);
      common = stored;
    }
  }
}

#if defined(PALVOR_HAS_VERSIONS)

PALVOR_AVX2_BEGIN
namespace avx2 {
#include "merge/lanes_avx2.h"
#include "merge/walk_count_lanes.h"
}  // namespace avx2
PALVOR_END

PALVOR_AVX512_BEGIN
namespace avx512 {
#include "merge/lanes_avx512.h"
#include "merge/walk_count_lanes.h"  // NOLINT(readability-duplicate-include)
}  // namespace avx512
PALVOR_END

#endif  // PALVOR_HAS_VERSIONS

auto fastest() {
#if defined(PALVOR_HAS_VERSIONS)
  if (processor() == Processor::kAvx512) return &avx512::countByLanes;
  if (processor() == Processor::kAvx2) return &avx2::countByLanes;
#endif
  return &countOneByOne;
}

}  // namespace

void countComparison(WalkCount& count, const Block& block, int index, int bits,
                     int known, int common) {
  count.comparisons++;
  count.unchanged += block.entry[index] == block.own[index] ? 1 : 0;
  if (common < 64) {
    count.settled++;
    return;
  }
  count.found64++;
  count.found64More += common >= known + 64 ? 1 : 0;
  const int shorter = std::min(bits, block.bits[index]);
  if (isSettledByPrefix(shorter, known, common)) {
    count.settled++;
  } else {
    count.words += wordsExamined(block.pos[index], shorter, known, common);
  }
}

void (*const countWalk)(WalkCount& count, const Place& place, int bits,
                        int common) = fastest();
