// Searching keys, and summing numbers, several at a time.

#ifndef PALVOR_ORDER_KEY_SEARCH_H_
#define PALVOR_ORDER_KEY_SEARCH_H_

#include <cstdint>

#include "palvor/simd/target.h"

namespace palvor {

// Keys that are looked at together.
constexpr int kKeysAtOnce = 32;

// The first of the keys `begin` to `end` - 1, which are in order, that is not
// below a key; `end` if there is none. `room` keys can be read, kKeysAtOnce or
// more.
using FirstNotBelow = int (*)(const int64_t* keys, int begin, int end, int room,
                              int64_t key);

// The sum of the first `count` numbers; kKeysAtOnce more can be read, and they
// begin with a cache line.
using Sum = int (*)(const int32_t* numbers, int count);

struct KeySearch {
  FirstNotBelow firstNotBelow;
  Sum sum;
};

// The versions for this processor; null if it has no vectors.
KeySearch keySearch(Processor processor);

}  // namespace palvor

#endif  // PALVOR_ORDER_KEY_SEARCH_H_
