// Finds the shortest strings that keep a rule (marker_rules.h) which takes
// several suffixes to break.
//
// A string keeps the rule if the smallest LCP interval that has it does. So the
// shortest prefix of a suffix that does is one character longer than the
// smallest interval around the suffix that breaks it. As soon as an interval is
// known to break the rule, what is in it and keeps it can be settled; until
// then its suffixes wait.

#ifndef PALVOR_KIT_ANSWERS_MARKER_FINDER_H_
#define PALVOR_KIT_ANSWERS_MARKER_FINDER_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/lcp_intervals.h"
#include "kit/answers/marker_rules.h"
#include "kit/answers/marker_table.h"
#include "kit/records.h"

namespace kit {

// Memory: 8 bytes for each suffix that waits.
class MarkerFinder {
 public:
  // The genomes and the table must outlive this.
  MarkerFinder(const Genomes& genomes, GroupRule rule, MarkerTable& table)
      : genomes_(genomes),
        rule_(std::move(rule)),
        table_(table),
        writer_(table),
        intervals_(*this) {}
  MarkerFinder(const MarkerFinder&) = delete;
  MarkerFinder& operator=(const MarkerFinder&) = delete;

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries) {
    for (size_t i = 0; i < suffixes.size(); i++) {
      if (i + kAhead < suffixes.size()) {
        const Suffix& ahead = suffixes[i + kAhead];
        table_.prefetch(inputNumber(ahead), ahead.pos);
      }
      if (taken_ > 0) {
        intervals_.step(std::min(lcpCharacters(entries[i]), table_.longest()));
      }
      last_ = {inputNumber(suffixes[i]), suffixes[i].pos};
      taken_++;
    }
  }

  // To be called once, when all suffixes were taken: adds to the table.
  void finish() {
    if (taken_ > 0) intervals_.finish();
    table_.add(writer_);
  }

 private:
  friend class LcpIntervals<MarkerFinder>;

  static constexpr size_t kAhead = 16;  // suffixes whose memory is asked for

  // Suffixes that keep the rule together, and wait for what is around them.
  struct Part {
    size_t firstPlace;  // of places_, where the next part's begin
    MarkerGenomes genomes;
  };

  struct Slot {
    bool broken;       // the rule is
    size_t firstPart;  // of parts_, if it is kept
  };

  void open(size_t slot) {
    if (slots_.size() <= slot) slots_.resize(slot + 1);
    slots_[slot] = {false, parts_.size()};
    rule_.open(slot);
  }

  void addSuffix(size_t slot, uint32_t depth) {
    const uint32_t genome = genomes_.of(last_.input);
    const bool kept = rule_.isKeptBy(genome);
    const Part part = {places_.size(), rule_.genomesOf(genome)};
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

  void settle(const Part& part, std::span<const MarkerPlace> places,
              uint32_t length) {
    if (places.size() > 1) {
      if (!writer_.settle(places, length)) return;
      writer_.add(places, part.genomes, length);
    } else if (table_.isWanted(places[0].input)) {
      writer_.settle(places[0], length);
    }
  }

  const Genomes& genomes_;
  GroupRule rule_;
  MarkerTable& table_;
  MarkerTable::Writer writer_;
  std::vector<Part> parts_;          // that wait, those of inner intervals last
  std::vector<MarkerPlace> places_;  // of their suffixes
  std::vector<Slot> slots_;
  MarkerPlace last_{};
  uint64_t taken_ = 0;
  LcpIntervals<MarkerFinder> intervals_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_FINDER_H_
