// The shortest prefixes that keep a rule (marker_rules.h), of all suffixes of
// the wanted genomes by their places, and the markers that these make.
//
// A string that keeps the rule, and not without its last character, is a marker
// unless it keeps it without its first one: unless the suffix that begins one
// character later has a shorter prefix that does. So markers that occur once
// are read off the table, place by place, when it is complete. What occurs
// several times and may be a marker is written down as it is met.

#ifndef PALVOR_KIT_ANSWERS_MARKER_TABLE_H_
#define PALVOR_KIT_ANSWERS_MARKER_TABLE_H_

#include <hwy/contrib/sort/vqsort.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "kit/answers/marker_rules.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/occurrence.h"
#include "kit/huge_buffer.h"

namespace kit {

// Where a suffix begins.
struct MarkerPlace {
  uint32_t input;
  uint32_t pos;
};

struct Marker {
  Occurrence first;  // in a wanted genome
  uint32_t length;
  MarkerGenomes genomes;
  std::span<const MarkerPlace> places;  // all, in any order; none: `first` only
};

// Characters `from` to `to` - 1 of an input.
struct MarkerStretch {
  uint32_t input;
  uint32_t from;
  uint32_t to;
};

// Characters of the longest markers that can be looked for.
constexpr uint32_t kLongestMarker = 60'000;

// Memory: 2 bytes for each character of the wanted inputs; for each string that
// occurs several times and might be a marker 40, and 8 for each place.
class MarkerTable {
  struct Repeat {
    MarkerGenomes genomes;
    uint32_t places;      // how many
    uint64_t firstPlace;  // of all places
  };
  struct Repeats {
    std::vector<Repeat> strings;
    std::vector<hwy::K64V64> firsts;  // their numbers, by where they first are
    std::vector<MarkerPlace> places;
  };

 public:
  // The inputs must outlive this.
  //   wanted   of each input, whether its genome's markers are looked for
  //   longest  characters of a marker, kLongestMarker at most
  //   needed   wanted genomes that must have it, 1 or more
  MarkerTable(const MergedInputs& inputs, const std::vector<bool>& wanted,
              uint32_t longest, uint32_t needed);
  MarkerTable(const MarkerTable&) = delete;
  MarkerTable& operator=(const MarkerTable&) = delete;

  uint32_t longest() const { return longest_; }
  bool isWanted(uint32_t input) const { return begins_[input] != kUnwanted; }

  // Asks for the memory of a suffix that will be settled soon.
  void prefetch(uint32_t input, uint32_t pos) const {
    if (isWanted(input)) __builtin_prefetch(at(input, pos), 1);
  }

  // What one thread writes into the table.
  class Writer {
   public:
    // The table must outlive this.
    explicit Writer(MarkerTable& table) : table_(table) {}

    // Says that a suffix of a wanted input keeps the rule with so many
    // characters, which no other suffix has, and with no fewer.
    void settle(const MarkerPlace& place, uint32_t length) {
      if (table_.canHave(place, length)) table_.set(place, length);
    }

    // The same of several suffixes that share so many, if some are of wanted
    // inputs. Returns whether they may be a marker, so that add() is to be
    // called: most that are none are known not to be.
    bool settle(std::span<const MarkerPlace> places, uint32_t length);

    //   genomes  that these are of
    void add(std::span<const MarkerPlace> places, const MarkerGenomes& genomes,
             uint32_t length);

   private:
    friend class MarkerTable;

    MarkerTable& table_;
    Repeats repeats_;
  };

  // Takes over what a writer has written. Threads may add side by side.
  void add(Writer& writer);

  // To be called once, when all was added.
  void finish();

  // Then calls take(marker) with the markers whose first occurrences begin in a
  // stretch, in the order of these: of the two directions in which a marker may
  // be read that in which this is forward. Threads may do so side by side.
  template <typename Take>
  void eachMarker(const MarkerStretch& stretch, Take take) const;

 private:
  static constexpr uint64_t kUnwanted = UINT64_MAX;
  static constexpr uint16_t kNone = UINT16_MAX;  // no prefix keeps the rule
  static constexpr uint32_t kLongestRepeat = kNone - 1 - kLongestMarker;

  // Goes through the strings, one after the other, as they first occur.
  class RepeatReader {
   public:
    RepeatReader(const Repeats& repeats, uint64_t first)
        : repeats_(repeats),
          next_(std::lower_bound(repeats.firsts.begin(), repeats.firsts.end(),
                                 first,
                                 [](const hwy::K64V64& some, uint64_t key) {
                                   return some.key < key;
                                 })) {}

    // The string that first occurs there, or null. To be asked in order.
    const Repeat* at(uint64_t place) {
      const auto end = repeats_.firsts.end();
      while (next_ != end && next_->key < place) ++next_;
      if (next_ == end || next_->key != place) return nullptr;
      // They were found in another order.
      if (end - next_ > 16) {
        __builtin_prefetch(&repeats_.strings[next_[16].value]);
        const Repeat& soon = repeats_.strings[next_[8].value];
        __builtin_prefetch(&repeats_.places[soon.firstPlace]);
      }
      return &repeats_.strings[next_->value];
    }

   private:
    const Repeats& repeats_;
    std::vector<hwy::K64V64>::const_iterator next_;
  };

  uint16_t* at(uint32_t input, uint32_t pos) const {
    return shortest_.data() + begins_[input] + pos;
  }

  // A suffix may end where it would begin to tell.
  bool canHave(const MarkerPlace& place, uint32_t length) const {
    return length <= longest_ &&
           inputs_.length(place.input) - place.pos >= length;
  }

  // Other threads may look at it meanwhile.
  void set(const MarkerPlace& place, uint32_t entry) {
    std::atomic_ref(*at(place.input, place.pos))
        .store(static_cast<uint16_t>(entry), std::memory_order_relaxed);
  }

  void setRepeat(const MarkerPlace& place, uint32_t length);

  // The characters that an entry tells of, or kNone.
  static uint32_t lengthOf(uint16_t entry) {
    return entry > kLongestMarker && entry != kNone ? entry - kLongestMarker
                                                    : entry;
  }

  bool isRepeat(uint32_t input, uint32_t pos, uint16_t entry) const {
    if (entry > kLongestMarker) return true;
    if (entry <= kLongestRepeat) return false;
    const uint64_t bit = begins_[input] + pos;
    return (isLongRepeat_[bit / 64] >> bit % 64 & 1) != 0;
  }

  // Whether the string without its first character is known to keep the rule.
  bool isKeptByRest(const MarkerPlace& place, uint32_t length) const {
    const uint32_t next = place.pos + 1;
    return next < inputs_.length(place.input) &&
           lengthOf(std::atomic_ref(*at(place.input, next))
                        .load(std::memory_order_relaxed)) < length;
  }

  const MergedInputs& inputs_;
  uint32_t longest_;
  uint32_t needed_;
  std::vector<uint64_t> begins_;  // of each input in the table
  // Characters of the shortest prefix that keeps the rule. If it occurs several
  // times and may be a marker, kLongestMarker more: where that is too much for
  // an entry, there is a bit.
  HugeBuffer<uint16_t> shortest_;
  std::vector<uint64_t> isLongRepeat_;  // a bit each
  std::mutex mutex_;                    // guards the last one
  Repeats repeats_;
};

template <typename Take>
void MarkerTable::eachMarker(const MarkerStretch& stretch, Take take) const {
  const uint32_t input = stretch.input;
  if (!isWanted(input) || inputs_.forwardOf(input) != input) return;
  const uint16_t* const entries = at(input, 0);
  // Which ones these are cannot be foreseen, so that nothing is jumped over.
  std::vector<uint32_t> found(stretch.to - stretch.from + 1);
  size_t count = 0;
  const uint32_t last = inputs_.length(input) - 1;
  for (uint32_t pos = stretch.from; pos < stretch.to; pos++) {
    const uint32_t length = lengthOf(entries[pos]);
    const uint32_t rest = pos < last ? lengthOf(entries[pos + 1]) : kNone;
    found[count] = pos;
    count += length != kNone && rest >= length ? 1 : 0;
  }
  RepeatReader repeats(repeats_, begins_[input] + stretch.from);
  for (const uint32_t pos : std::span(found).first(count)) {
    const uint32_t length = lengthOf(entries[pos]);
    if (!isRepeat(input, pos, entries[pos])) {
      if (needed_ > 1) continue;
      take(Marker{{input, pos, false}, length, {1, 0}, {}});
    } else if (const Repeat* repeat = repeats.at(begins_[input] + pos)) {
      const auto places = std::span(repeats_.places)
                              .subspan(repeat->firstPlace, repeat->places);
      take(Marker{{input, pos, false}, length, repeat->genomes, places});
    }
  }
}

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_TABLE_H_
