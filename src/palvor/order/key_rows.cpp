#include "palvor/order/key_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "palvor/order/key_rows.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "palvor/order/row_merge-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {
namespace {

bool hasRows() { return PALVOR_HAS_VECTORS; }

#if PALVOR_HAS_VECTORS

// In rows that have room for all streams.
std::unique_ptr<KeyRows> makeRows(Front& front, LcpList& list) {
  const int streams = front.streams.count();
  if (streams <= 4) return std::make_unique<RowMerge<4>>(front, list);
  if (streams <= 8) return std::make_unique<RowMerge<8>>(front, list);
  if (streams <= 16) return std::make_unique<RowMerge<16>>(front, list);
  if (streams <= 32) return std::make_unique<RowMerge<32>>(front, list);
  return std::make_unique<RowMerge<64>>(front, list);
}

#else

std::unique_ptr<KeyRows> makeRows(Front&, LcpList&) { return nullptr; }

#endif  // PALVOR_HAS_VECTORS

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace palvor {
bool canMergeByRows(const Front& front, Processor processor) {
  return front.streams.count() <= kMostRows &&
         processor != Processor::kPortable &&
         choose(PALVOR_VERSIONS(hasRows), processor)();
}

std::unique_ptr<KeyRows> makeKeyRows(Front& front, LcpList& list,
                                     Processor processor) {
  return choose(PALVOR_VERSIONS(makeRows), processor)(front, list);
}

}  // namespace palvor

#endif  // HWY_ONCE
