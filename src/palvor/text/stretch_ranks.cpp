#include "palvor/text/stretch_ranks.h"

#include <algorithm>
#include <array>
#include <utility>

#include "palvor/text/second_key.h"
#include "palvor/text/stretch_walk.h"

namespace palvor {
namespace {

// What one comparison may cost where ranks are made, and all of them: so much,
// and so many stretches and characters for each stretch.
constexpr WalkLimits kOneWalk = {4096, 1 << 16};
constexpr WalkLimits kAllWalks = {1 << 16, 1 << 20};
constexpr WalkLimits kWalksPerStretch = {4, 64};

// Of a larger group, members are not moved one by one.
constexpr size_t kMostMoved = 4096;

// Equal up to the ends of their strings: more than any common prefix.
constexpr uint32_t kEqual = UINT32_MAX - 1;

// Stretches are sorted by where they leave their anchors' texts.
struct Leaving {
  uint32_t at;
  uint32_t stretch;
};

// By three times eleven bits, the lowest first.
void sortByPlace(HugeTable<Leaving>& leaving) {
  constexpr uint32_t kDigit = 11;
  HugeTable<Leaving> sorted(leaving.size());
  for (uint32_t shift = 0; shift < 32; shift += kDigit) {
    std::array<uint32_t, 1 << kDigit> places{};
    const auto digit = [&](const Leaving& one) {
      return one.at >> shift & ((1U << kDigit) - 1);
    };
    for (const Leaving& one : leaving) places[digit(one)]++;
    uint32_t sum = 0;
    for (uint32_t& place : places) sum += std::exchange(place, sum);
    for (const Leaving& one : leaving) sorted[places[digit(one)]++] = one;
    leaving.swap(sorted);
  }
}

}  // namespace

class StretchRanker {
 public:
  StretchRanker(const Axis& axis, std::span<Stretch> stretches,
                StretchRanks& ranks)
      : axis_(axis), stretches_(stretches), ranks_(ranks) {
    const auto limit = [&](uint32_t all, uint32_t each) {
      return static_cast<uint32_t>(std::min<uint64_t>(
          UINT32_MAX, all + uint64_t{each} * stretches.size()));
    };
    limits_ = {limit(kAllWalks.stretches, kWalksPerStretch.stretches),
               limit(kAllWalks.characters, kWalksPerStretch.characters)};
  }

  void rank() {
    group();
    const auto count = static_cast<uint32_t>(order_.size());
    for (uint32_t rank = count; rank-- > 0;) {
      if (sizes_[rank] > 1) rankWithOthers(rank);
    }
  }

 private:
  // What stands behind a difference.
  struct Member {
    uint32_t stretch;  // that ends with the difference
    uint32_t anchor;   // of the suffix behind it
    uint32_t behind;   // that suffix's position on the axis
    uint32_t next;     // and its stretch
    uint64_t key;
  };

  struct Compared {
    int order;
    uint32_t bits;
    bool known;
  };

  // Brings stretches that share a difference together. The lowest rank of each
  // group stands for it until it is ranked.
  void group() {
    HugeTable<Leaving> leaving;
    leaving.reserve(stretches_.size());
    for (uint32_t n = 0; n + 1 < stretches_.size(); n++) {
      if (symbolOf(stretches_[n].parting) == kEndOfString) continue;
      leaving.push_back({leftAt(stretches_[n]), n});
    }
    sortByPlace(leaving);
    const auto count = static_cast<uint32_t>(leaving.size());
    const auto symbol = [&](const Leaving& one) {
      return symbolOf(stretches_[one.stretch].parting);
    };
    order_.resize(count);
    sizes_.assign(count, 0);
    ranks_.common_.assign(count, 0);
    ranks_.least_.assign(count / StretchRanks::kBlock, 0);
    for (uint32_t from = 0; from < count;) {
      uint32_t to = from + 1;
      while (to < count && leaving[to].at == leaving[from].at) to++;
      std::sort(leaving.begin() + from, leaving.begin() + to,
                [&](const Leaving& a, const Leaving& b) {
                  return symbol(a) != symbol(b) ? symbol(a) < symbol(b)
                                                : a.stretch < b.stretch;
                });
      while (from < to) {
        const uint32_t first = from;
        do {
          order_[from] = leaving[from].stretch;
          stretches_[order_[from]].parting |= first << kRankShift;
          from++;
        } while (from < to && symbol(leaving[from]) == symbol(leaving[first]));
        sizes_[first] = from - first;
        if (from - first > 1) ranks_.common_[first] = StretchRanks::kUnknown;
      }
    }
  }

  // Ranks a group, and before it those that its order depends on.
  void rankWithOthers(uint32_t group) {
    if (begun_.empty()) begun_.resize(order_.size());
    if (begun_[group]) return;
    waiting_.push_back(group);
    begun_[group] = true;
    while (!waiting_.empty()) {
      const uint32_t next = waiting_.back();
      lookBehind(next);
      const size_t before = waiting_.size();
      for (size_t m = 1; m < members_.size(); m++) {
        if (!shareUnranked(members_[m - 1], members_[m])) continue;
        const uint32_t needed = keyRank(members_[m].key);
        if (begun_[needed]) continue;
        begun_[needed] = true;
        waiting_.push_back(needed);
      }
      if (waiting_.size() > before) continue;
      waiting_.pop_back();
      rankMembers(next);
    }
  }

  // Fills members_ with a group's, in the order of anchors and keys.
  void lookBehind(uint32_t group) {
    members_.clear();
    for (uint32_t i = 0; i < sizes_[group]; i++) {
      const uint32_t n = order_[group + i];
      const uint32_t at = stretches_[n].end + 1;
      uint32_t next = n + 1;
      if (stretches_[next + 1].start <= at) next = stretchAt(next, at);
      const Stretch& stretch = stretches_[next];
      members_.push_back({n, stretch.anchor + (at - stretch.start), at, next,
                          secondKey(stretch.end - at, stretch.parting)});
    }
    if (members_.size() == 2) {
      if (std::pair(members_[1].anchor, members_[1].key) <
          std::pair(members_[0].anchor, members_[0].key)) {
        std::swap(members_[0], members_[1]);
      }
      return;
    }
    std::ranges::sort(members_, [](const Member& a, const Member& b) {
      return a.anchor != b.anchor ? a.anchor < b.anchor
             : a.key != b.key     ? a.key < b.key
                                  : a.stretch < b.stretch;
    });
  }

  // The stretch of a position on the axis that lies behind stretch n's start.
  uint32_t stretchAt(uint32_t n, uint32_t axisPosition) const {
    const auto behind = std::upper_bound(
        stretches_.begin() + n, stretches_.end(), axisPosition,
        [](uint32_t at, const Stretch& stretch) { return at < stretch.start; });
    return static_cast<uint32_t>(behind - stretches_.begin()) - 1;
  }

  WalkingSuffix walkBehind(const Member& member) const {
    const Axis::Place place = axis_.placeOf(member.behind);
    return {axis_.string(place.string), place.position, member.behind,
            &stretches_[member.next], &stretches_[stretches_.size() - 1]};
  }

  bool shareUnranked(const Member& a, const Member& b) const {
    return a.anchor == b.anchor && a.key == b.key &&
           keySymbol(a.key) != kEndOfString && !ranks_.known(keyRank(a.key));
  }

  Compared compare(const Member& a, const Member& b) {
    if (a.anchor == b.anchor && !shareUnranked(a, b)) {
      if (a.key == b.key) return {0, kEqual, true};
      const uint32_t bits =
          partBeforeRanks(a.key, b.key)
              ? commonBitsBeforeRanks(a.key, b.key)
              : bitsBeforeRanks(a.key) +
                    ranks_.commonBits(keyRank(a.key), keyRank(b.key));
      return {a.key < b.key ? -1 : 1, bits, true};
    }
    const WalkLimits most = {std::min(limits_.stretches, kOneWalk.stretches),
                             std::min(limits_.characters, kOneWalk.characters)};
    WalkLimits left = most;
    const StretchParting found =
        compareWalking(walkBehind(a), walkBehind(b), ranks_, left);
    limits_.stretches -= most.stretches - left.stretches;
    limits_.characters -= most.characters - left.characters;
    return {found.order, found.order == 0 ? kEqual : found.bits, found.known};
  }

  // Puts members_ into order, if need be. False if that can't be told.
  bool sortMembers() {
    bool ordered = true;
    for (size_t m = 1; m < members_.size(); m++) {
      const Member& a = members_[m - 1];
      const Member& b = members_[m];
      if (a.anchor != b.anchor || shareUnranked(a, b)) ordered = false;
    }
    if (ordered) return true;
    if (members_.size() > kMostMoved) return false;
    for (size_t m = 1; m < members_.size(); m++) {
      // Behind all that are not above it.
      size_t from = 0;
      size_t to = m;
      while (from < to) {
        const size_t middle = (from + to) / 2;
        const Compared found = compare(members_[middle], members_[m]);
        if (!found.known) return false;
        if (found.order > 0) {
          to = middle;
        } else {
          from = middle + 1;
        }
      }
      std::rotate(members_.begin() + static_cast<ptrdiff_t>(from),
                  members_.begin() + static_cast<ptrdiff_t>(m),
                  members_.begin() + static_cast<ptrdiff_t>(m) + 1);
    }
    return true;
  }

  // Ranks a group by its members_.
  void rankMembers(uint32_t group) {
    if (!sortMembers()) return;
    common_.assign(1, 0);
    for (size_t m = 1; m < members_.size(); m++) {
      const Compared found = compare(members_[m - 1], members_[m]);
      if (!found.known) return;
      common_.push_back(found.order == 0 ? kEqual : found.bits);
    }
    const auto size = static_cast<uint32_t>(members_.size());
    uint32_t rank = group;
    for (uint32_t m = 0; m < size; m++) {
      if (common_[m] != kEqual) rank = group + m;
      ranks_.common_[group + m] = common_[m];
      uint32_t& parting = stretches_[members_[m].stretch].parting;
      parting = (parting & ((1U << kRankShift) - 1)) | rank << kRankShift;
    }
    // Those of the blocks that lie in the group as a whole.
    constexpr uint32_t kBlock = StretchRanks::kBlock;
    for (uint32_t b = (group + kBlock - 1) / kBlock;
         (b + 1) * kBlock <= group + size; b++) {
      const uint32_t* const first = &ranks_.common_[size_t{b} * kBlock];
      ranks_.least_[b] = *std::min_element(first, first + kBlock);
    }
  }

  const Axis& axis_;
  std::span<Stretch> stretches_;
  StretchRanks& ranks_;
  HugeTable<uint32_t> order_;      // stretches, by difference
  HugeTable<uint32_t> sizes_;      // per group, at its lowest rank
  std::vector<bool> begun_;        // per group, too
  std::vector<uint32_t> waiting_;  // groups
  std::vector<Member> members_;
  std::vector<uint32_t> common_;
  WalkLimits limits_;
};

StretchRanks::StretchRanks(const Axis& axis, std::span<Stretch> stretches) {
  StretchRanker(axis, stretches, *this).rank();
}

uint32_t StretchRanks::commonBits(uint32_t a, uint32_t b) const {
  uint32_t from = std::min(a, b) + 1;
  const uint32_t to = std::max(a, b) + 1;
  uint32_t least = UINT32_MAX;
  while (from < to) {
    if (from % kBlock == 0 && to - from >= kBlock) {
      least = std::min(least, least_[from / kBlock]);
      from += kBlock;
    } else {
      least = std::min(least, common_[from++]);
    }
  }
  return least;
}

}  // namespace palvor
