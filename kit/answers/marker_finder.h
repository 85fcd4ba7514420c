// Finds the shortest strings that keep a rule (marker_rules.h): those that
// break it without their first character, and without their last one.
//
// A string keeps the rule if the smallest LCP interval that has it does. So the
// shortest prefix of a suffix that does is one character longer than the
// smallest interval around the suffix that breaks it. As soon as an interval is
// known to break the rule, what is in it and keeps it can be settled; until
// then its suffixes wait. Whether what begins one character later keeps the
// rule too is looked up at the end, in a table of the shortest prefixes.

#ifndef PALVOR_KIT_ANSWERS_MARKER_FINDER_H_
#define PALVOR_KIT_ANSWERS_MARKER_FINDER_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/lcp_intervals.h"
#include "kit/answers/marker_rules.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/occurrence.h"
#include "kit/huge_buffer.h"
#include "kit/records.h"

namespace kit {

struct Marker {
  Occurrence first;  // in a wanted genome
  uint32_t length;
  MarkerGenomes genomes;
  uint64_t begin;  // its suffixes in the merged order, from 0
  uint64_t end;
};

// Characters of the longest markers that can be looked for.
constexpr uint32_t kLongestMarker = 60'000;

// Memory: 2 bytes for each character of the wanted genomes, on all strands; 48
// for each string that might be a marker; 8 for each suffix that waits.
template <typename Rule>
class MarkerFinder {
 public:
  // The inputs and genomes must outlive this.
  //   longest  characters of a marker, kLongestMarker at most
  //   needed   genomes that shall have it that must, 1 or more
  MarkerFinder(const MergedInputs& inputs, const Genomes& genomes, Rule rule,
               uint32_t longest, uint32_t needed)
      : inputs_(inputs),
        genomes_(genomes),
        rule_(std::move(rule)),
        longest_(longest),
        needed_(needed),
        intervals_(*this) {
    uint64_t size = 0;
    for (uint32_t i = 0; i < inputs.count(); i++) {
      tableBegins_.push_back(size);
      if (rule_.isWanted(genomes.of(i))) size += inputs.length(i);
    }
    shortest_.reserve(size);
    std::fill_n(shortest_.data(), size, kNone);
  }
  MarkerFinder(const MarkerFinder&) = delete;
  MarkerFinder& operator=(const MarkerFinder&) = delete;

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries) {
    for (size_t i = 0; i < suffixes.size(); i++) {
      if (i + kAhead < suffixes.size()) prefetch(suffixes[i + kAhead]);
      if (taken_ > 0) intervals_.step(std::min(entries[i] >> 2, longest_));
      last_ = {inputNumber(suffixes[i]), suffixes[i].pos};
      taken_++;
    }
  }

  // To be called once, when all suffixes were taken. The markers, of the two
  // directions in which each may be read the one whose first occurrence is
  // forward, in the order of these.
  std::vector<Marker> finish() {
    if (taken_ > 0) intervals_.finish();
    std::erase_if(found_, [&](const Marker& marker) {
      return isKeptByRest(marker.first, marker.length);
    });
    std::sort(
        found_.begin(), found_.end(), [](const Marker& a, const Marker& b) {
          return std::pair(a.first, a.length) < std::pair(b.first, b.length);
        });
    return std::move(found_);
  }

 private:
  friend class LcpIntervals<MarkerFinder>;

  static constexpr uint16_t kNone = UINT16_MAX;  // no prefix keeps the rule

  static constexpr size_t kAhead = 16;  // suffixes that are known before they
                                        // are taken

  struct Place {
    uint32_t input;
    uint32_t pos;
  };

  // Suffixes that keep the rule together, and wait for what is around them.
  struct Part {
    size_t firstPlace;  // of places_, where the next part's begin
    uint64_t begin;     // in the merged order
    uint64_t end;
    MarkerGenomes genomes;
  };

  struct Slot {
    bool broken;       // the rule is
    size_t firstPart;  // of parts_, if it is kept
  };

  // Asks for the suffix's place in the table.
  void prefetch(const Suffix& suffix) const {
    const uint32_t input = inputNumber(suffix);
    if (!rule_.isWanted(genomes_.of(input))) return;
    __builtin_prefetch(shortest_.data() + tableBegins_[input] + suffix.pos, 1);
  }

  void open(size_t slot) {
    if (slots_.size() <= slot) slots_.resize(slot + 1);
    slots_[slot] = {false, parts_.size()};
    rule_.open(slot);
  }

  void addSuffix(size_t slot, uint32_t depth) {
    const uint32_t genome = genomes_.of(last_.input);
    const bool kept = rule_.isKeptBy(genome);
    const Part part = {places_.size(), taken_ - 1, taken_,
                       rule_.genomesOf(genome)};
    if (slots_[slot].broken) {
      if (kept) settle(part, {&last_, 1}, depth + 1);
      return;
    }
    if (kept) {
      parts_.push_back(part);
      places_.push_back(last_);
    }
    rule_.add(slot, genome);
    if (!kept || !rule_.isKept(slot)) breakRule(slot, depth);
  }

  // What keeps the rule as a whole waits as a whole.
  void close(size_t slot, uint32_t, uint32_t) {
    const Slot& closed = slots_[slot];
    if (closed.broken) return;
    Part& first = parts_[closed.firstPart];
    first.end = parts_.back().end;
    first.genomes = rule_.genomes(slot);
    parts_.resize(closed.firstPart + 1);
  }

  void merge(size_t slot, uint32_t depth) {
    const bool innerBroken = slots_[slot + 1].broken;
    if (slots_[slot].broken) {
      if (!innerBroken) settleFrom(slots_[slot + 1].firstPart, depth + 1);
      return;
    }
    rule_.merge(slot);
    if (innerBroken || !rule_.isKept(slot)) breakRule(slot, depth);
  }

  void breakRule(size_t slot, uint32_t depth) {
    settleFrom(slots_[slot].firstPart, depth + 1);
    slots_[slot].broken = true;
  }

  // Of parts that wait, the last ones: so many characters tell.
  void settleFrom(size_t firstPart, uint32_t length) {
    if (firstPart == parts_.size()) return;
    const size_t firstPlace = parts_[firstPart].firstPlace;
    for (size_t p = firstPart; p < parts_.size(); p++) {
      const size_t begin = parts_[p].firstPlace;
      const size_t end =
          p + 1 < parts_.size() ? parts_[p + 1].firstPlace : places_.size();
      settle(parts_[p], std::span(places_).subspan(begin, end - begin), length);
    }
    parts_.resize(firstPart);
    places_.resize(firstPlace);
  }

  void settle(const Part& part, std::span<const Place> places,
              uint32_t length) {
    std::optional<Occurrence> first;
    for (const Place& place : places) {
      if (!rule_.isWanted(genomes_.of(place.input))) continue;
      // A suffix may end where it would begin to tell.
      if (length > longest_ ||
          inputs_.length(place.input) - place.pos < length) {
        continue;
      }
      shortest_.data()[tableBegins_[place.input] + place.pos] =
          static_cast<uint16_t>(length);
      const Occurrence here =
          occurrenceOf(inputs_, place.input, place.pos, length);
      if (!first || here < *first) first = here;
    }
    // One whose first occurrence is reverse is found as its reverse complement.
    if (!first || first->reverse || part.genomes.in < needed_) return;
    // Most of those that are no markers are known not to be already.
    if (isKeptByRest(*first, length)) return;
    found_.push_back({*first, length, part.genomes, part.begin, part.end});
  }

  // Whether the string without its first character is known to keep the rule.
  bool isKeptByRest(const Occurrence& forward, uint32_t length) const {
    const uint32_t next = forward.start + 1;
    return next < inputs_.length(forward.input) &&
           shortest_.data()[tableBegins_[forward.input] + next] < length;
  }

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  Rule rule_;
  uint32_t longest_;
  uint32_t needed_;
  std::vector<uint64_t> tableBegins_;  // of each wanted input
  HugeBuffer<uint16_t> shortest_;      // prefix that keeps the rule, in
                                       // characters, of each suffix of these
  std::vector<Part> parts_;    // that wait, those of inner intervals last
  std::vector<Place> places_;  // of their suffixes
  std::vector<Slot> slots_;
  std::vector<Marker> found_;
  Place last_{};
  uint64_t taken_ = 0;
  LcpIntervals<MarkerFinder> intervals_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_FINDER_H_
