// What a merge must bring, computed slowly: suffixes are texts, a suffix array
// is sorted by comparing texts, and the smallest of the streams' suffixes is
// searched for anew at every step.

#ifndef PALVOR_TESTS_SUPPORT_PLAIN_MERGE_H_
#define PALVOR_TESTS_SUPPORT_PLAIN_MERGE_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// A suffix record's four words, as they stand in a file.
using Record = std::array<uint32_t, 4>;

// Inputs, and how suffix arrays divide them.
struct Collection {
  std::vector<std::string> texts;
  std::vector<int> parts = {};  // inputs of each partition; empty: no
                                // partitions, one suffix array for each input
  bool zeroOrigin = false;      // inputs are numbered from 0 in every array
};

// One suffix array per stream, with global input numbers. The flag bits of
// every record are made of its place, so that a lost flag is noticed.
struct PlainArray {
  std::vector<Record> records;
  std::vector<uint32_t> entries;  // LCP entries; the first is 0
  std::vector<std::string_view>
      texts;  // of the suffixes, inside the collection
};
std::vector<PlainArray> plainArrays(const Collection& collection);

// Who comes first of equal suffixes: the one whose stream had it to offer
// earlier, or the one of the lower input number.
enum class Ties { kByArrival, kByInput };

PlainArray plainMerge(const Collection& collection, Ties ties);

// The collection in a form that can be pasted into a test.
std::string described(const Collection& collection);

#endif  // PALVOR_TESTS_SUPPORT_PLAIN_MERGE_H_
