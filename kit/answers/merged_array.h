// A merged suffix array with its LCP file, as one pass from its first suffix to
// its last.

#ifndef PALVOR_KIT_ANSWERS_MERGED_ARRAY_H_
#define PALVOR_KIT_ANSWERS_MERGED_ARRAY_H_

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/record_series.h"
#include "kit/records.h"

namespace kit {

// Takes the next suffixes of a merged order, and as many LCP entries, of which
// the very first describes no pair. Only valid during the call.
using TakeSuffixes = std::function<void(std::span<const Suffix> suffixes,
                                        std::span<const LcpEntry> entries)>;

// Hands them on to the `take` of something that outlives this.
template <typename Taker>
TakeSuffixes takenBy(Taker& taker) {
  return [&taker](std::span<const Suffix> suffixes,
                  std::span<const LcpEntry> entries) {
    taker.take(suffixes, entries);
  };
}

// Throws FileError unless a file of a merged order has as many records as the
// inputs have suffixes: the merge did not finish, or was one of other inputs.
void testRecordCount(const std::string& path, uint64_t records,
                     const MergedInputs& inputs);

// Throws FileError, which names the record, unless a suffix, which one of the
// inputs must have, has the prefix words that its string has.
void testPrefixWords(const std::string& path, const Suffix& suffix,
                     uint64_t index, const MergedInputs& inputs,
                     MergedStrings& strings);

class MergedArray {
 public:
  // Opens <base>.stpsa and <base>.stlcp, or their parts. Throws FileError if
  // one is missing, or they have not one record for each suffix of the inputs,
  // which must outlive this: they are of other inputs, or the merge did not
  // finish.
  MergedArray(const MergedInputs& inputs, const std::string& base);

  uint64_t size() const { return array_.records(); }

  // Records `first` to `first` + `count` - 1, which must be there. Throws
  // FileError if they cannot be read or name no suffix.
  std::vector<Suffix> records(uint64_t first, uint64_t count) const;

  // Hands on every suffix in order, in batches, each of which has been tested
  // (kit/answers/order_tests.h), and some of whose prefix words are those of
  // the strings. Shows on a terminal how far it is, and the time left.
  //   doing  what is being done, for that: "counting k-mers"
  // Throws FileError as those tests do, and if a file cannot be read.
  void pass(const std::string& doing, const TakeSuffixes& take) const;

  // The same of records `first` to `end` - 1, which must be there, with the
  // order across `first`; tells nobody how far it is. Threads may do so side by
  // side.
  void passPart(uint64_t first, uint64_t end, const TakeSuffixes& take) const;

  // The LCP entry of a record, which must be there. By one thread at a time, as
  // records().
  LcpEntry entry(uint64_t index) const;

 private:
  const MergedInputs& inputs_;
  StoredSeries array_;
  StoredSeries lcps_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MERGED_ARRAY_H_
