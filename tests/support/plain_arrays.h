// The suffix arrays of a collection, made slowly: suffixes are texts, and an
// array is sorted by comparing texts.

#ifndef PALVOR_TESTS_SUPPORT_PLAIN_ARRAYS_H_
#define PALVOR_TESTS_SUPPORT_PLAIN_ARRAYS_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// A suffix record's four words, as they stand in a file.
using Record = std::array<uint32_t, 4>;

// Inputs, and how suffix arrays divide them.
struct Collection {
  std::vector<std::string> texts;
  std::vector<int> parts = {};  // inputs of each partition; empty: no
                                // partitions, one suffix array for each input
};

// One suffix array per stream. The flag bits of every record are made of its
// place, so that a lost flag is noticed.
struct PlainArray {
  std::vector<Record> records;
  std::vector<uint32_t> entries;  // LCP entries; the first is 0
};
std::vector<PlainArray> plainArrays(const Collection& collection);

#endif  // PALVOR_TESTS_SUPPORT_PLAIN_ARRAYS_H_
