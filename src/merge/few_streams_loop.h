// The merge loop for few streams. Included by merge/few_streams.cpp alone, once
// for each kind of processor, behind the Rows that are written for it.

// Moves the head to the place of its new suffix, whose prefix words tell too
// little, since others have the same. A walk, but only of those. `own` is its
// entry with the suffix emitted last.
template <int kRoom>
[[gnu::always_inline]] inline int placeAmongEqualKeys(Rows<kRoom>& rows,
                                                      const Suffix& suffix,
                                                      LcpEntry own) {
  const int64_t key = prefixKey(suffix);
  const uint32_t all = placesBelow(listedCount) & ~1U;
  const uint32_t below = rows.below(key) & all;
  const uint32_t equal = rows.equal(key) & all;
  uint32_t compared = rows.sharing(key) & below;
  np2 += std::popcount(compared);

  int place = std::popcount(below) + 1;
  const int end = place + std::popcount(equal);
  LcpEntry entry = own;
  if (place > 1) entry = entryOfKeys(listedKeys[place - 1], key);
  int shared = lcpBits(entry);
  bool changes = false;  // the suffix behind has another entry
  LcpEntry nextEntry = 0;
  for (; place < end; place++) {
    const LcpEntry stored = entryOf(listedStates[place]);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    compared |= 1U << place;
    const Comparison found = compareEqualKeys(
        *Suffixes[streamOf(listedStates[place])], suffix, shared);
    if (found.common >= 64) nnac++;
    if (found.common >= shared + 64) nnrc++;
    const LcpEntry between =
        fittingEntry(found.common, found.firstbit() ? 1 : 0);
    if (found.after()) {
      entry = stored;
      changes = true;
      nextEntry = between;
      break;
    }
    entry = between;
    shared = found.common;
  }
  nncmp += std::popcount(compared);
  nnoc += std::popcount(compared & rows.unchanged());
  const uint32_t passed = placesBelow(place - 1);
  nlcmp += walked(place - 1, listedCount);
  const int k = streamOf(listedStates[0]);
  const int behind = streamOf(listedStates[place]);
  const int head = passed != 0 ? streamOf(listedStates[1]) : k;
  rows.load();
  rows.move(passed, key, stateOf(entry, k), changes ? 1U << place : 0,
            stateOf(nextEntry, behind));
  return head;
}

// Moves the head to the place of its new suffix, which is long, and parts from
// all listed ones within the prefix words, so that these tell everything.
// Counts what a walk would have done, but in np2, and returns the comparisons.
template <int kRoom>
[[gnu::always_inline]] inline int moveByKey(Rows<kRoom>& rows, int count,
                                            int64_t key) {
  const uint32_t below = rows.below(key);
  const uint32_t compared = rows.sharing(key) & below << 1;
  const int comparisons = std::popcount(compared);
  nncmp += comparisons;
  nnoc += std::popcount(compared & rows.unchanged());
  nlcmp += walked(std::popcount(below) - 1, count);
  rows.moveByKey(key);
  return comparisons;
}

// Moves the head's stream k to the place of its new suffix.
template <int kRoom>
[[gnu::always_inline]] inline void moveHead(int k, const Suffix& suffix) {
  const int64_t key = takeKey(k, suffix);
  const int64_t lastKey = listedKeys[0];
  Rows<kRoom> rows;
  rows.load();
  bool settled = lastKey < key && rows.equal(key) == 0 &&
                 remainingBits(suffix) >= 64 &&
                 !(mayHoldShort && meetsShort(key));
  LcpEntry own = entryOfKeys(lastKey, key);
  if (Manzini != 0 || !settled) {
    const LcpEntry byKeys = own;
    own = refillEntry(k);
    settled = settled && own == byKeys;
  }
  if (!settled &&
      (!streamsAscend || mayHoldShort || remainingBits(suffix) < 64)) {
    placeByWalk(k, own);
    return;
  }
  LOCP[k] = own;
  if (!settled) {
    placeAmongEqualKeys<kRoom>(rows, suffix, own);
    rows.store();
  } else {
    np2 += moveByKey<kRoom>(rows, listedCount, key) + (Manzini == 0 ? 1 : 0);
    rows.store();
  }
}

// As moveHead, for a suffix that is long, where no listed one is short, if its
// key is not above the last one or equals another.
template <int kRoom>
[[gnu::always_inline]] inline int moveAmongEqualKeys(Rows<kRoom>& rows, int k,
                                                     const Suffix& suffix,
                                                     int64_t key) {
  LcpEntry own;
  if (listedKeys[0] < key) {
    own = entryOfKeys(listedKeys[0], key);
    np2++;
  } else {
    own = refillEntry(k);
    if (!streamsAscend) {
      placeByWalk(k, own);
      rows.load();
      return k;
    }
  }
  LOCP[k] = own;
  return placeAmongEqualKeys<kRoom>(rows, suffix, own);
}

// Merges as long as the keys tell everything and the streams' buffers have
// records, but `room` suffixes at most, which are written to `suffixes`, and
// their entries, unless null, to `entries`. Returns how many there are. Calls
// nothing, so that the rows stay in registers.
template <int kRoom>
[[gnu::noinline]] int mergeByKeys(Suffix* suffixes, LcpEntry* entries,
                                  int room) {
  Rows<kRoom> rows;
  rows.load();
  const int count = listedCount;
  long long settled = 0;
  int k = streamOf(rows.firstState());
  int n = 0;
  for (; n < room; n++) {
    Suffix* const current = Suffixes[k];
    Suffix* const next = current + 1;
    const int64_t key = upcomingKeys[k];
    const int64_t lastKey = rows.firstKey();
    if (next >= lastTested[k] || remainingBits(*next) < 64) break;
    const LcpEntry entry = entryOf(rows.firstState());
    if (entries != nullptr) entries[n] = entry;
    suffixes[n] = *current;
    if (lcpBits(entry) >= 64 && next + kRecordsAhead <= lastTested[k]) {
      prefetchStrings(next[kRecordsAhead]);
    }
    sufps[k]++;
    Suffixes[k] = next;
    upcomingKeys[k] = prefixKey(next[1]);
    if (lastKey >= key || rows.equal(key) != 0) {
      rows.store();
      currSuffix = suffixes[n];
      k = moveAmongEqualKeys<kRoom>(rows, k, *next, key);
      if (!streamsAscend) {
        n++;
        break;
      }
      continue;
    }
    LOCP[k] = entryOfKeys(lastKey, key);
    // The stream to come next is known before the rows are.
    const int passed = -static_cast<int>(rows.secondKey() < key);
    k ^= (k ^ streamOf(rows.secondState())) & passed;
    settled += moveByKey<kRoom>(rows, count, key) + 1;
  }
  rows.store();
  nsuff += n;
  np2 += settled;
  return n;
}

// Merges and emits as long as the keys tell everything.
template <int kRoom>
void emitBatches() {
  if (sarray != 0) {
    nbuff += mergeByKeys<kRoom>(suffBuff + nbuff,
                                larray != 0 ? lcpfBuff + nbuff : nullptr,
                                treeBuffSize - nbuff);
    return;
  }
  int n;
  do {
    n = mergeByKeys<kRoom>(batchSuffixes, batchEntries,
                           std::min(kBatch, treeRoom()));
    for (int i = 0; i < n; i++) emitIntoTree(batchSuffixes[i], batchEntries[i]);
    if (n > 0) lastSuffix = batchSuffixes[n - 1];
  } while (n == kBatch);
}

// Emits the head, whatever comes behind it.
template <int kRoom>
void emitHead() {
  const int k = streamOf(listedStates[0]);
  const LcpEntry entry = entryOf(listedStates[0]);
  currSuffix = *Suffixes[k];
  emit(currSuffix, entry);
  if (lcpBits(entry) >= 64) prefetchAhead(k);
  Suffixes[k] = getNextSuf(k);
  if (Suffixes[k] == nullptr) {
    dropHead();
  } else {
    nsuff++;
    moveHead<kRoom>(k, *Suffixes[k]);
  }
  lastSuffix = currSuffix;
  if (treeIsFull()) closeTree();
}

template <int kRoom>
void mergeListed() {
  takeUpList();
  while (listedCount > 0 && streamsAscend) {
    if (!mayHoldShort && Manzini == 0) emitBatches<kRoom>();
    if (streamsAscend) emitHead<kRoom>();
  }
  writeList();
}
