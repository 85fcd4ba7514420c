#include "kit/answers/array_pieces.h"

#include <span>

#include "kit/range_work.h"
#include "kit/records.h"

namespace kit {

void passPieces(
    const MergedArray& array, const std::string& doing, const ArrayCuts& cuts,
    int jobs,
    const std::function<void(size_t piece, const PassPiece& pass)>& work) {
  const size_t pieces = cuts.size() - 1;
  if (pieces == 1) {
    work(0, [&](const TakeSuffixes& take) { array.pass(doing, take); });
    return;
  }
  RangeWork shared(doing, pieces, array.size());
  shared.run(jobs, [&] {
    return [&](size_t piece) {
      work(piece, [&](const TakeSuffixes& take) {
        array.passPart(cuts[piece], cuts[piece + 1],
                       [&](std::span<const Suffix> suffixes,
                           std::span<const LcpEntry> entries) {
                         take(suffixes, entries);
                         shared.advance(suffixes.size());
                       });
      });
    };
  });
}

}  // namespace kit
