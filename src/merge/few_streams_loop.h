// The merge loop for few streams. Included by merge/few_streams.cpp alone, once
// for each kind of processor, behind the Rows that are written for it.

// Where a suffix belongs whose prefix words tell too little, since others have
// the same. A walk, but only of those.
template <int kRoom>
[[gnu::noinline]] Move placeAmongEqualKeys(Listed listed, const Suffix& suffix,
                                           LcpEntry own) {
  using Row = Rows<kRoom>;
  const int64_t key = prefixKey(suffix);
  const uint32_t all = placesBelow(listed.count) & ~1U;
  const uint32_t below = Row::below(key) & all;
  const uint32_t equal = Row::equal(key) & all;
  uint32_t compared = Row::sharing(key) & below;
  np2 += std::popcount(compared);

  int place = std::popcount(below) + 1;
  const int end = place + std::popcount(equal);
  Move move = {.key = key, .entry = own};
  if (place > 1) move.entry = entryOfKeys(listedKeys[place - 1], key);
  int shared = lcpBits(move.entry);
  for (; place < end; place++) {
    const LcpEntry stored = listedEntries[place];
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    compared |= 1U << place;
    const int stream = listed.streamAt(place);
    const Comparison found =
        compareEqualKeys(*Suffixes[stream], suffix, shared);
    if (found.common >= 64) nnac++;
    if (found.common >= shared + 64) nnrc++;
    const LcpEntry entry = fittingEntry(found.common, found.firstbit ? 1 : 0);
    if (found.after) {
      move.entry = stored;
      move.changed = 1U << place;
      move.nextEntry = entry;
      // No longer than before, if the new suffix ends there.
      if (entry == LOCP[stream]) move.restored = move.changed;
      break;
    }
    move.entry = entry;
    shared = found.common;
  }
  nncmp += std::popcount(compared);
  nnoc += std::popcount(compared & listed.unchanged);
  move.passed = placesBelow(place - 1);
  return move;
}

// Where a suffix belongs that is long, and parts from all listed ones within
// the prefix words.
template <int kRoom>
[[gnu::always_inline]] inline Move placeByKey(Listed listed, int64_t key) {
  using Row = Rows<kRoom>;
  Move move;
  move.key = key;
  move.passed = Row::below(key) >> 1;
  const int place = std::popcount(move.passed);
  const uint32_t next = move.passed + 1;
  const uint32_t compared = (Row::sharing(key) >> 1) & (move.passed | next) &
                            placesBelow(listed.count - 1);
  const int comparisons = std::popcount(compared);
  np2 += comparisons;
  nncmp += comparisons;
  nnoc += std::popcount(compared & (listed.unchanged >> 1));
  move.entry = entryOfKeys(listedKeys[place], key);
  move.changed = (compared & next) << 1;
  move.nextEntry = entryOfKeys(listedKeys[place + 1], key);
  return move;
}

// Moves the head's stream k to the place of its new suffix.
template <int kRoom>
[[gnu::always_inline]] inline Listed moveHead(Listed listed, int k,
                                              const Suffix& suffix) {
  using Row = Rows<kRoom>;
  const int64_t key = takeKey(k, suffix);
  const int64_t lastKey = listedKeys[0];
  bool settled = lastKey < key && Row::equal(key) == 0 &&
                 remainingBits(suffix) >= 64 &&
                 !(mayHoldShort && meetsShort(listed, key));
  LcpEntry own = entryOfKeys(lastKey, key);
  if (Manzini != 0 || !settled) {
    const LcpEntry byKeys = own;
    own = refillEntry(k);
    settled = settled && own == byKeys;
  } else {
    np2++;
  }
  if (!settled &&
      (!streamsAscend || mayHoldShort || remainingBits(suffix) < 64))
    return placeByWalk(listed, k, own);

  const Move move = settled ? placeByKey<kRoom>(listed, key)
                            : placeAmongEqualKeys<kRoom>(listed, suffix, own);
  LOCP[k] = own;
  nlcmp += std::min(std::popcount(move.passed) + 1, listed.count - 1);
  Row::move(move);
  return listed.moved(move, own);
}

template <int kRoom>
void mergeListed() {
  Listed listed = takeUpList();
  const bool array = sarray != 0;
  while (listed.count > 0 && streamsAscend) {
    const int k = listed.streamAt(0);
    currSuffix = *Suffixes[k];
    emit(currSuffix, listedEntries[0]);
    if (lcpBits(listedEntries[0]) >= 64) prefetchAhead(k);
    Suffixes[k] = getNextSuf(k);
    if (Suffixes[k] == nullptr) {
      listed = withoutHead(listed);
    } else {
      nsuff++;
      listed = moveHead<kRoom>(listed, k, *Suffixes[k]);
    }
    lastSuffix = currSuffix;
    if (!array && treeIsFull()) closeTree();
  }
  writeList(listed);
}
