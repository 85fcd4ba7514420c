#include "kit/answers/marker_table.h"

#include <utility>

namespace kit {

MarkerTable::MarkerTable(const MergedInputs& inputs,
                         const std::vector<bool>& wanted, uint32_t longest,
                         uint32_t needed)
    : inputs_(inputs), longest_(longest), needed_(needed) {
  uint64_t size = 0;
  for (uint32_t i = 0; i < inputs.count(); i++) {
    begins_.push_back(wanted[i] ? size : kUnwanted);
    if (wanted[i]) size += inputs.length(i);
  }
  shortest_.reserve(size);
  std::fill_n(shortest_.data(), size, kNone);
  if (longest > kLongestRepeat) isLongRepeat_.resize((size + 63) / 64);
}

void MarkerTable::setRepeat(const MarkerPlace& place, uint32_t length) {
  if (length <= kLongestRepeat) {
    set(place, kLongestMarker + length);
    return;
  }
  set(place, length);
  const uint64_t bit = begins_[place.input] + place.pos;
  std::atomic_ref(isLongRepeat_[bit / 64])
      .fetch_or(uint64_t{1} << bit % 64, std::memory_order_relaxed);
}

bool MarkerTable::Writer::settle(std::span<const MarkerPlace> places,
                                 uint32_t length) {
  if (length > table_.longest_) return false;
  bool isThere = false, isMarker = false;
  for (const MarkerPlace& place : places) {
    if (!table_.isWanted(place.input)) continue;
    // The rest is the same everywhere.
    if (!isThere) isMarker = !table_.isKeptByRest(place, length);
    isThere = true;
    if (isMarker) {
      table_.setRepeat(place, length);
    } else {
      table_.set(place, length);
    }
  }
  return isMarker;
}

void MarkerTable::Writer::add(std::span<const MarkerPlace> places,
                              const MarkerGenomes& genomes, uint32_t length) {
  if (genomes.in < table_.needed_) return;
  Occurrence first = {UINT32_MAX, 0, false};
  for (const MarkerPlace& place : places) {
    if (!table_.isWanted(place.input)) continue;
    first = std::min(
        first, occurrenceOf(table_.inputs_, place.input, place.pos, length));
  }
  // One whose first occurrence is reverse is found as its reverse complement.
  if (first.reverse) return;
  const uint64_t firstPlace = repeats_.places.size();
  repeats_.places.insert(repeats_.places.end(), places.begin(), places.end());
  repeats_.firsts.push_back(
      {repeats_.strings.size(), table_.begins_[first.input] + first.start});
  repeats_.strings.push_back(
      {genomes, static_cast<uint32_t>(places.size()), firstPlace});
}

void MarkerTable::add(Writer& writer) {
  const std::lock_guard lock(mutex_);
  Repeats& added = writer.repeats_;
  if (repeats_.strings.empty()) {
    repeats_ = std::move(added);
    return;
  }
  for (hwy::K64V64& first : added.firsts)
    first.value += repeats_.strings.size();
  for (Repeat& string : added.strings) {
    string.firstPlace += repeats_.places.size();
  }
  const auto append = [](auto& to, const auto& from) {
    to.insert(to.end(), from.begin(), from.end());
  };
  append(repeats_.strings, added.strings);
  append(repeats_.firsts, added.firsts);
  append(repeats_.places, added.places);
  added = {};
}

void MarkerTable::finish() {
  hwy::Sorter()(repeats_.firsts.data(), repeats_.firsts.size(),
                hwy::SortAscending());
}

}  // namespace kit
