#include "palvor/range/ranges.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

#include "palvor/range/array_reader.h"
#include "palvor/range/entry_order.h"
#include "palvor/simd/target.h"
#include "palvor/text/compare.h"

namespace palvor {
namespace {

// What stands beside a cut in a stream.
struct Beside {
  std::optional<Suffix> before;
  std::optional<Suffix> behind;
};

// A cut in all streams.
struct Cut {
  std::vector<int64_t> firsts;  // records behind it
  std::vector<Beside> beside;
};

// Finds all cuts in a stream, so that its file is opened once.
void cutStream(const StreamFiles& files, int k, const Collection& text,
               std::span<const uint64_t> keys, std::vector<Cut>& cuts,
               std::vector<MergeRange>& ranges) {
  ArrayReader array(files, k);
  array.hold();
  int64_t first = 0;
  for (size_t c = 0; c < keys.size(); c++) {
    const int64_t next = array.lowerBound(keys[c], first);
    ranges[c].slices.push_back({first, next - first});
    first = next;
    cuts[c].firsts.push_back(first);
    Beside& beside = cuts[c].beside.emplace_back();
    if (first > 0) beside.before = array.suffixAt(first - 1, text);
    if (first < array.size()) beside.behind = array.suffixAt(first, text);
  }
  ranges.back().slices.push_back({first, array.size() - first});
}

bool isLess(SuffixCompare& compare, const Suffix& a, const Suffix& b) {
  return compare(b, a, 0).after();
}

// The entry of the first suffix behind a cut with the last one before it.
LcpEntry entryAcross(const Cut& cut, SuffixCompare& compare) {
  const Suffix* last = nullptr;
  const Suffix* first = nullptr;
  for (const Beside& beside : cut.beside) {
    if (beside.before &&
        (last == nullptr || isLess(compare, *last, *beside.before))) {
      last = &*beside.before;
    }
    if (beside.behind &&
        (first == nullptr || isLess(compare, *beside.behind, *first))) {
      first = &*beside.behind;
    }
  }
  if (last == nullptr || first == nullptr) return 0;
  return entryOf(compare(*last, *first, 0));
}

// Puts streams into the order in which their suffixes behind the cut enter, as
// far as that matters: those that are of the same text.
void orderEqual(const Cut& cut, const Collection& text, EntryOrder& entryOrder,
                std::vector<int>& order) {
  const auto behind = [&](int k) -> const Suffix& {
    return *cut.beside[static_cast<size_t>(k)].behind;
  };
  const auto placeOf = [&](int k) {
    const auto& before = cut.beside[static_cast<size_t>(k)].before;
    return RecordPlace{k, cut.firsts[static_cast<size_t>(k)],
                       before ? &*before : nullptr};
  };
  std::vector<int> sorted;
  for (const int k : order) {
    if (cut.beside[static_cast<size_t>(k)].behind) sorted.push_back(k);
  }
  const auto shapeOf = [&](int k) {
    return std::pair(prefixKey(behind(k)), text.remainingBits(behind(k)));
  };
  std::ranges::stable_sort(sorted, {}, shapeOf);
  // One text after the other: of those that are left of a shape, the streams
  // whose suffix is that of the first one.
  std::vector<bool> isDone(order.size());
  for (size_t i = 0; i < sorted.size(); i++) {
    const int k = sorted[i];
    if (isDone[static_cast<size_t>(k)]) continue;
    std::vector<int> places;  // in `order`, ascending
    std::vector<int> equal;   // streams, in the order in which they enter
    for (size_t j = i; j < sorted.size(); j++) {
      const int other = sorted[j];
      if (shapeOf(other) != shapeOf(k)) break;
      if (isDone[static_cast<size_t>(other)] ||
          (j > i && !entryOrder.areEqual(behind(k), behind(other)))) {
        continue;
      }
      isDone[static_cast<size_t>(other)] = true;
      places.push_back(other);
      const auto place = std::ranges::partition_point(equal, [&](int listed) {
        return entryOrder.entersFirst(placeOf(listed), placeOf(other));
      });
      equal.insert(place, other);
    }
    for (size_t e = 0; e < equal.size(); e++) {
      order[static_cast<size_t>(places[e])] = equal[e];
    }
  }
}

}  // namespace

std::vector<MergeRange> cutRanges(const StreamFiles& files,
                                  const Collection& text,
                                  std::span<const uint64_t> keys) {
  std::vector<MergeRange> ranges(keys.size() + 1);
  std::vector<Cut> cuts(keys.size());
  for (int k = 0; k < files.count(); k++) {
    cutStream(files, k, text, keys, cuts, ranges);
  }
  SuffixCompare compare(text, true, Processor::kBest);
  EntryOrder entryOrder(files, compare);
  for (size_t r = 0; r < ranges.size(); r++) {
    std::vector<int>& order = ranges[r].order;
    order.resize(static_cast<size_t>(files.count()));
    std::iota(order.begin(), order.end(), 0);
    if (r == 0) continue;
    ranges[r].entry = entryAcross(cuts[r - 1], compare);
    orderEqual(cuts[r - 1], text, entryOrder, order);
  }
  return ranges;
}

std::vector<int64_t> countSuffixes(const StreamFiles& files,
                                   std::span<const uint64_t> cuts) {
  std::vector<int64_t> counts(cuts.size() + 1);
  for (int k = 0; k < files.count(); k++) {
    ArrayReader array(files, k);
    array.hold();
    int64_t first = 0;
    for (size_t c = 0; c < cuts.size(); c++) {
      const int64_t next = array.lowerBound(cuts[c], first);
      counts[c] += next - first;
      first = next;
    }
    counts.back() += array.size() - first;
  }
  return counts;
}

}  // namespace palvor
