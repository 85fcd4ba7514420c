// The merge loop for few streams. Included by merge/few_streams.cpp alone, once
// for each kind of processor, behind the Rows that are written for it.

// Finds the place of stream k's long suffix, whose key others have. A walk, but
// only of those. `own` is its entry with the suffix emitted last.
template <int kRoom>
[[gnu::always_inline]] inline Move findAmongEqualKeys(const Rows<kRoom>& rows,
                                                      int k,
                                                      const Suffix& suffix,
                                                      LcpEntry own) {
  using Places = typename Rows<kRoom>::Places;
  const int64_t key = prefixKey(suffix);
  const Places all = rows.placesBelow(listedCount) & ~Places{1};
  const Places below = rows.below(key) & all;
  const Places equal = rows.equal(key) & all;
  Places compared = rows.sharing(key) & below;
  const Places unchanged = rows.unchanged();
  np2 += std::popcount(compared);

  Move move;
  int& place = move.place;
  place = std::popcount(below) + 1;
  const int end = place + std::popcount(equal);
  move.entry = place > 1 ? entryOfKeys(listedKeys[place - 1], key) : own;
  int shared = lcpBits(move.entry);
  for (; place < end; place++) {
    const LcpEntry stored = entryOf(listedStates[place]);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    compared |= Places{1} << place;
    const int i = streamOf(listedStates[place]);
    const Comparison found = compareListed(i, *Suffixes[i], k, suffix, shared);
    if (found.common >= 64) nnac++;
    if (found.common >= shared + 64) nnrc++;
    const LcpEntry entry = fittingEntry(found.common, found.firstbit() ? 1 : 0);
    if (found.after()) {
      move.entry = stored;
      move.changes = true;
      move.nextEntry = entry;
      break;
    }
    move.entry = entry;
    shared = found.common;
  }
  nncmp += std::popcount(compared);
  nnoc += std::popcount(compared & unchanged);
  nlcmp += std::min(place, listedCount - 1);
  return move;
}

// Moves the head, with its new key. The rows are in their tables, too. Returns
// the stream that comes next.
template <int kRoom>
[[gnu::always_inline]] inline int moveTo(Rows<kRoom>& rows, const Move& move,
                                         int64_t key, int64_t suffixBits) {
  using Places = typename Rows<kRoom>::Places;
  const int place = move.place;
  const int64_t behind = listedStates[place] & kSuffixBits;
  const int next = streamOf(place > 1 ? listedStates[1] : suffixBits);
  rows.load();
  rows.move(rows.placesBelow(place - 1), key, stateOf(move.entry, suffixBits),
            move.changes ? Places{1} << place : 0,
            stateOf(move.nextEntry, behind));
  return next;
}

// Moves the head to the place of its new suffix, which is long, and parts from
// all listed ones within the prefix words, so that these tell everything.
// Counts what a walk would have done, but in np2, and returns the comparisons.
// `walked` are all places but the last: a walk looks at as many of these as
// there are keys below the new one, the last key included.
template <int kRoom>
[[gnu::always_inline]] inline unsigned moveByKey(
    Rows<kRoom>& rows, typename Rows<kRoom>::Places walked, int k,
    int64_t key) {
  const auto below = rows.below(key);
  const auto compared = rows.sharing(key) & below << 1;
  const unsigned comparisons = countOf(compared);
  nncmp += comparisons;
  nnoc += countOf(compared & rows.unchanged());
  nlcmp += countOf(below & walked);
  rows.moveByKey(key, kLong << kLengthShift | k);
  return comparisons;
}

// Moves the head's stream k to the place of its new suffix. The rows are in
// their tables.
template <int kRoom>
[[gnu::noinline]] void moveHead(int k, const Suffix& suffix) {
  const int64_t key = takeKey(k, suffix);
  const int64_t lastKey = listedKeys[0];
  const int length = remainingBits(suffix);
  Rows<kRoom> rows;
  rows.load();
  // It begins with no listed one, so that no length but its own matters.
  const bool clear =
      length >= 64 && (!mayHoldShort || rows.beginnings(key) == 0);
  LcpEntry own = entryOfKeys(lastKey, key);
  bool settled = clear && lastKey < key && rows.equal(key) == 0;
  if (Manzini != 0 || !settled) {
    const LcpEntry byKeys = own;
    own = refillEntry(k);
    settled = settled && own == byKeys;
  }
  LOCP[k] = own;
  if (settled) {
    np2 += moveByKey<kRoom>(rows, rows.placesBelow(listedCount - 1), k, key) +
           ownComparisons();
  } else {
    const Move move = clear && streamsAscend
                          ? findAmongEqualKeys<kRoom>(rows, k, suffix, own)
                          : findByWalk(suffix, own);
    // Where prefix words contradict the strings, the list goes on.
    if (key < listedKeys[move.place - 1] || key > listedKeys[move.place]) {
      streamsAscend = false;
    }
    moveTo<kRoom>(rows, move, key, suffixBitsOf(k, length));
    if (length < 64) mayHoldShort = true;
  }
  rows.store();
}

// Moves the head's stream k, whose suffix `currSuffix` was, to the place of its
// new suffix, which is long and begins with no listed one, but whose key is not
// above the last one or equals another. `own` is the entry that the keys tell.
// Returns the stream that comes next.
template <int kRoom>
[[gnu::always_inline]] inline int moveAmongEqualKeys(Rows<kRoom>& rows, int k,
                                                     const Suffix& suffix,
                                                     int64_t key,
                                                     LcpEntry own) {
  if (listedKeys[0] < key) {
    np2 += ownComparisons();
  } else {
    own = refillEntry(k);
  }
  LOCP[k] = own;
  const Move move = streamsAscend
                        ? findAmongEqualKeys<kRoom>(rows, k, suffix, own)
                        : findByWalk(suffix, own);
  return moveTo<kRoom>(rows, move, key, kLong << kLengthShift | k);
}

// The hot path. Merges as long as the streams' buffers hold tested records (and
// entries, where these are read, which the keys confirm) and these are long,
// but `room` suffixes at most, which are written to `suffixes`, and their
// entries, unless null, to `entries`. Returns how many there are. Without
// `kShort` no listed suffix may be short.
//
// What comes next waits for what came last: the stream for the key of its
// suffix, the key for the stream. So the rows stay in registers where keys tell
// everything, and nothing is called there.
template <int kRoom, bool kShort>
[[gnu::noinline]] int mergeBatch(Suffix* suffixes, LcpEntry* entries,
                                 int room) {
  Rows<kRoom> rows;
  rows.load();
  const auto walked = rows.placesBelow(listedCount - 1);
  const bool read = Manzini != 0;
  const unsigned ownComparison = ownComparisons();
  long long settled = 0;
  int k = streamOf(rows.firstState());
  int n = 0;
  for (; n < room; n++) {
    Suffix* const current = Suffixes[k];
    Suffix* const next = current + 1;
    const int64_t key = upcomingKeys[k];
    const int64_t lastKey = rows.firstKey();
    if (next >= lastTested[k] || remainingBits(*next) < 64) break;
    if (kShort && rows.beginnings(key) != 0) break;
    const LcpEntry own = entryOfKeys(lastKey, key);
    if (read && (lastKey >= key || !takeExpected(k, own))) break;
    const LcpEntry entry = entryOf(rows.firstState());
    if (entries != nullptr) entries[n] = entry;
    suffixes[n] = *current;
    if (lcpBits(entry) >= 64 && next + kRecordsAhead <= lastTested[k]) {
      prefetchStrings(next[kRecordsAhead], kExcerptWords);
    }
    sufps[k]++;
    Suffixes[k] = next;
    upcomingKeys[k] = prefixKey(next[1]);
    if (lastKey >= key || rows.equal(key) != 0) {
      rows.store();
      currSuffix = suffixes[n];
      k = moveAmongEqualKeys<kRoom>(rows, k, *next, key, own);
      if (!streamsAscend) {
        n++;
        break;
      }
      continue;
    }
    LOCP[k] = own;
    // The stream to come next is known before the rows are.
    const int passed = -static_cast<int>(rows.secondKey() < key);
    const int stream = k;
    k ^= (k ^ streamOf(rows.secondState())) & passed;
    settled += moveByKey<kRoom>(rows, walked, stream, key) + ownComparison;
  }
  rows.store();
  nsuff += n;
  np2 += settled;
  if (n > 0) lastSuffix = currSuffix = suffixes[n - 1];
  return n;
}

// The same, for what the list holds now.
template <int kRoom>
int mergeBatch(Suffix* suffixes, LcpEntry* entries, int room) {
  if (!mayHoldShort) return mergeBatch<kRoom, false>(suffixes, entries, room);
  // It may soon hold none.
  lookForShort();
  return mergeBatch<kRoom, true>(suffixes, entries, std::min(room, kBatch));
}

// Merges and emits batches, until something has to be done between them.
// Returns false if that is to leave this loop, since order has broken.
template <int kRoom>
bool emitBatches() {
  if (sarray != 0) {
    nbuff += mergeBatch<kRoom>(suffBuff + nbuff,
                               larray != 0 ? lcpfBuff + nbuff : nullptr,
                               treeBuffSize - nbuff);
    return streamsAscend;
  }
  int n;
  do {
    n = mergeBatch<kRoom>(batchSuffixes, batchEntries,
                          std::min(kBatch, treeRoom()));
    for (int i = 0; i < n; i++) emitIntoTree(batchSuffixes[i], batchEntries[i]);
  } while (n == kBatch && streamsAscend);
  return streamsAscend;
}

// Emits the head, whatever comes behind it: the end of a buffer or of a stream,
// a short suffix, an entry that is not what the keys say.
template <int kRoom>
void emitHead() {
  const int k = streamOf(listedStates[0]);
  const LcpEntry entry = entryOf(listedStates[0]);
  currSuffix = *Suffixes[k];
  emit(currSuffix, entry);
  if (lcpBits(entry) >= 64) prefetchAhead(k, kExcerptWords);
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
    if (emitBatches<kRoom>()) emitHead<kRoom>();
  }
  writeList();
}

// Merges the listed streams, k at most, in rows that have room for them.
void mergeUpTo(int k) {
  k <= 4    ? mergeListed<4>()
  : k <= 8  ? mergeListed<8>()
  : k <= 16 ? mergeListed<16>()
  : k <= 32 ? mergeListed<32>()
            : mergeListed<64>();
}
