// Inputs in memory for the micro-benchmarks, always the same ones.

#ifndef PALVOR_BENCH_RANDOM_INPUTS_H_
#define PALVOR_BENCH_RANDOM_INPUTS_H_

#include <cstdint>
#include <random>
#include <vector>

#include "run/values.h"
#include "sources/packing.h"
#include "sources/strings.h"

// Makes `count` inputs of `words` random words each, all alike but for one bit
// in every `differEvery` words (0: independent ones), and sets the tables that
// the comparison reads.
inline void useRandomInputs(int count, int words, int differEvery) {
  std::mt19937 random(1);
  static std::vector<std::vector<unsigned>> strings;
  static std::vector<unsigned*> pointers;
  static std::vector<unsigned> bits;
  strings.assign(static_cast<size_t>(count), {});
  pointers.clear();
  bits.assign(static_cast<size_t>(count), static_cast<unsigned>(32 * words));
  for (auto& string : strings) {
    if (differEvery == 0 || &string == &strings[0]) {
      for (int w = 0; w < words; w++) {
        string.push_back(static_cast<unsigned>(random()));
      }
    } else {
      string.assign(strings[0].begin(), strings[0].end() - 1);
      for (int w = 0; w < words; w += differEvery) {
        string[static_cast<size_t>(w)] ^= 1U << (random() % 32);
      }
    }
    string.push_back(0);
    pointers.push_back(string.data());
  }
  ninputs = count;
  blengths = bits.data();
  binaryString = pointers.data();
}

inline Suffix suffixOf(unsigned input, unsigned pos) {
  const unsigned* words = binaryString[input];
  return {input << 2, pos, sliceAt(words, 2 * pos),
          sliceAt(words, 2 * pos + 32)};
}

#endif  // PALVOR_BENCH_RANDOM_INPUTS_H_
