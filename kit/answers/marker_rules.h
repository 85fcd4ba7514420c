// What tells genomes apart: rules that a string keeps or breaks by the genomes
// that have it. One that keeps the rule keeps it with more characters too.
//
// A rule holds, for each open LCP interval, by its slot (lcp_intervals.h), what
// has to be known of the genomes in it.

#ifndef PALVOR_KIT_ANSWERS_MARKER_RULES_H_
#define PALVOR_KIT_ANSWERS_MARKER_RULES_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kit {

// Genomes that have a string.
struct MarkerGenomes {
  uint32_t in;   // of those that shall have it
  uint32_t out;  // of those that shall not
};

// Where genomes are in a question.
enum class Side : uint8_t { kNeither, kIn, kOut };

// At most so many genomes of one side have it.
class GroupRule {
 public:
  //   sides    of each genome
  //   allowed  genomes of kOut that may have it
  GroupRule(std::vector<Side> sides, uint32_t allowed)
      : sides_(std::move(sides)),
        allowed_(allowed),
        words_((sides_.size() + 63) / 64),
        in_(words_),
        out_(words_) {
    for (size_t g = 0; g < sides_.size(); g++) {
      const uint64_t bit = uint64_t{1} << g % 64;
      if (sides_[g] == Side::kIn) in_[g / 64] |= bit;
      if (sides_[g] == Side::kOut) out_[g / 64] |= bit;
    }
  }

  void open(size_t slot) {
    if (sets_.size() < (slot + 1) * words_) sets_.resize((slot + 1) * words_);
    for (size_t w = 0; w < words_; w++) sets_[slot * words_ + w] = 0;
  }
  void add(size_t slot, uint32_t genome) {
    sets_[slot * words_ + genome / 64] |= uint64_t{1} << genome % 64;
  }
  void merge(size_t slot) {
    uint64_t* set = &sets_[slot * words_];
    for (size_t w = 0; w < words_; w++) set[w] |= set[words_ + w];
  }
  bool isKept(size_t slot) const { return count(slot, out_) <= allowed_; }
  MarkerGenomes genomes(size_t slot) const {
    return {count(slot, in_), count(slot, out_)};
  }

  // The same of what has suffixes of one genome only.
  bool isKeptBy(uint32_t genome) const {
    return allowed_ > 0 || sides_[genome] != Side::kOut;
  }
  MarkerGenomes genomesOf(uint32_t genome) const {
    return {sides_[genome] == Side::kIn ? 1U : 0U,
            sides_[genome] == Side::kOut ? 1U : 0U};
  }

 private:
  uint32_t count(size_t slot, const std::vector<uint64_t>& side) const {
    int result = 0;
    for (size_t w = 0; w < words_; w++) {
      result += std::popcount(sets_[slot * words_ + w] & side[w]);
    }
    return static_cast<uint32_t>(result);
  }

  std::vector<Side> sides_;
  uint32_t allowed_;
  size_t words_;  // of a set
  std::vector<uint64_t> in_, out_;
  std::vector<uint64_t> sets_;  // by slot
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_RULES_H_
