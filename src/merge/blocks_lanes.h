// placeBefore and rankOf, several keys and blocks at a time. Included by
// merge/blocks.cpp alone, once for each kind of processor, behind the lanes
// that are written for it (merge/lanes_avx512.h).

// The first of the keys `begin` to `end` - 1, which are in order, that is not
// below a key; `end` if there is none. `room` keys can be read, kKeysAtOnce or
// more.
inline int firstNotBelow(const int64_t* keys, int begin, int end, int room,
                         int64_t key) {
  while (end - begin > kKeysAtOnce) {
    const int half = (end - begin) / 2;
    const bool isBelow = keys[begin + half - 1] < key;
    end = isBelow ? end : begin + half;
    begin = isBelow ? begin + half : begin;
  }
  const int from = std::min(begin, room - kKeysAtOnce);
  const uint64_t asked = bitsBelow(end - from) & ~bitsBelow(begin - from);
  return begin + std::popcount(keysBelow(keys + from, key) & asked);
}

// placeBefore, if there are blocks.
Place placeBeforeByLanes(int64_t key) {
  const int number =
      firstNotBelow(firstKeys, 1, blockCount, kRoomOfTables, key) - 1;
  const Block& block = blockAt(number);
  return {number,
          firstNotBelow(block.key, block.begin, block.end, kBlockRoom, key)};
}

// How many elements the blocks before a number have.
int elementsBeforeBlock(int number) {
  Ints sum = Ints::all(0);
  int from = 0;
  for (; from + Ints::kLanes <= number; from += Ints::kLanes) {
    sum = sum + Ints::load(counts + from);
  }
  const uint32_t rest = (uint32_t{1} << (number - from)) - 1;
  sum = sum + Ints::choose(rest, Ints::load(counts + from), Ints::all(0));
  return sum.sum();
}
