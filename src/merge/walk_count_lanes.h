// countWalk, as many suffixes at a time as there are lanes. Included by
// merge/walk_count.cpp alone, once for each kind of processor, behind the lanes
// that are written for it (merge/lanes_avx512.h).

// Comparisons, one in each of some lanes.
struct Compared {
  uint32_t lanes;  // a bit for each of these
  Ints known;      // bits that were known to be shared
  Ints found;      // bits that are
};

constexpr uint32_t kAllLanes = (uint32_t{1} << Ints::kLanes) - 1;

// A bit for each lane, of those that begin at index `from`, whose index is at
// least `begin` and below `end`.
inline uint32_t lanesWithin(int from, int begin, int end) {
  const uint32_t below = kAllLanes >> std::max(from + Ints::kLanes - end, 0);
  return below & kAllLanes << std::max(begin - from, 0);
}

// Counts on with those comparisons that found 64 bits or more, which are
// `found64`. Returns the words that each examined, in its lane.
inline Ints countLong(WalkCount& count, const Block& block, int from, int bits,
                      const Compared& compared, uint32_t found64) {
  const Ints n64 = Ints::all(64);
  const Ints one = Ints::all(1);
  const Ints shorter = min(Ints::all(bits), Ints::load(block.bits + from));
  count.found64 += std::popcount(found64);
  count.found64More += std::popcount(
      found64 & isAbove(compared.found - compared.known, Ints::all(63)));
  // As isSettledByPrefix and wordsExamined (sources/compare.h).
  const uint32_t read = found64 & (isAbove(compared.known, Ints::all(63)) |
                                   isAbove(shorter, n64));
  count.settled -= std::popcount(read);
  const Ints pos = Ints::load(block.pos + from);
  const Ints start = max(compared.known, n64);
  const Ints skip = start - ((start + pos + pos) & Ints::all(31));
  const Ints last = min(compared.found, shorter - one);
  const Ints words = max((last - skip).shiftedRight<5>() + one, Ints::all(0));
  return Ints::choose(read, words, Ints::all(0));
}

// Counts comparisons with the suffixes of a block before index `end`, the last
// of which shares `common` bits with the new suffix. Returns what the suffix
// before the block shares with it.
inline int countInBlock(WalkCount& count, const Block& block, int end, int bits,
                        int common) {
  Ints words = Ints::all(0);
  for (int from = (end - 1) & -Ints::kLanes; from > block.begin - Ints::kLanes;
       from -= Ints::kLanes) {
    const Ints entries = Ints::load(block.entry + from);
    const Ints stored =
        Ints::choose(lanesWithin(from, block.begin, end),
                     entries.template shiftedRight<1>(), Ints::all(kMostInt));
    const Ints entering = Ints::all(common);
    if (isAbove(stored, entering) == kAllLanes) continue;

    const Ints least = leastBehind(stored);
    const Ints found = min(least.behind(), entering);
    const Compared compared = {kAllLanes & ~isAbove(stored, found), stored,
                               found};
    count.comparisons += std::popcount(compared.lanes);
    count.settled += std::popcount(compared.lanes);
    count.unchanged += std::popcount(
        compared.lanes & isEqual(entries, Ints::load(block.own + from)));
    common = std::min(common, least.first());
    const uint32_t found64 = compared.lanes & isAbove(found, Ints::all(63));
    if (found64 != 0) {
      words = words + countLong(count, block, from, bits, compared, found64);
    }
  }
  count.words += words.sum();
  return common;
}

// Which of the lengths before index `end` are not above `common` nor those
// behind them; a bit for each lane of those that begin at index `from`. Lowers
// `common` to the least of these lanes.
inline uint64_t leastOf(const uint8_t* lengths, int from, int end,
                        int& common) {
  const Bytes stored = Bytes::load(lengths + from).beginning(end - from);
  const Bytes least = leastBehind(stored);
  const Bytes found = min(least.behind(), Bytes::all(common));
  common = std::min(common, least.first());
  return isAtMost(stored, found);
}

// As countInBlock, for less than 64 common bits. The prefix words settle all
// comparisons then.
inline int countShortInBlock(WalkCount& count, const Block& block, int end,
                             int common) {
  uint64_t compared = 0;
  for (int from = kBlockRoom - Bytes::kLanes; from >= 0;
       from -= Bytes::kLanes) {
    if (Bytes::kLanes < kBlockRoom && from >= end) continue;
    compared |= leastOf(block.shortLength, from, end, common) << from;
  }
  compared &= ~uint64_t{0} << block.begin;
  const int comparisons = std::popcount(compared);
  count.comparisons += comparisons;
  count.settled += comparisons;
  count.unchanged += std::popcount(compared & block.unchanged);
  return common;
}

// Counts comparisons with the suffixes of all blocks before a number, the last
// of which shares `common` bits, less than 64.
inline void countShortBefore(WalkCount& count, int number, int common) {
  for (int from = (number - 1) & -Bytes::kLanes; from >= 0;
       from -= Bytes::kLanes) {
    int entering = common;
    uint64_t blocks = leastOf(shortLeasts, from, number, common);
    while (blocks != 0) {
      const int lane = 63 - std::countl_zero(blocks);
      const Block& block = blockAt(from + lane);
      entering = countShortInBlock(count, block, block.end, entering);
      blocks ^= uint64_t{1} << lane;
    }
  }
}

// countWalk (merge/walk_count.h).
void countByLanes(WalkCount& count, const Place& place, int bits, int common) {
  int number = place.block;
  int end = place.index;
  for (; number >= 0 && common > 63; number--) {
    if (number != place.block) end = blockAt(number).end;
    if (leasts[number] <= common) {
      common = countInBlock(count, blockAt(number), end, bits, common);
    }
  }
  if (number == place.block) {
    common = countShortInBlock(count, blockAt(number), end, common);
    number--;
  }
  countShortBefore(count, number + 1, common);
}
