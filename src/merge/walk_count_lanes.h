// countInBlock, as many suffixes at a time as there are lanes. Included by
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

// countInBlock (merge/walk_count.h).
inline int countByLanes(WalkCount& count, const Block& block, int end, int bits,
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
