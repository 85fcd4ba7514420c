// In which order equal suffixes of different streams enter the merged order.
//
// Equal suffixes leave the merge list in the order in which they entered it
// (palvor/order/lcp_list.h), and a suffix enters it when the one before it in
// its stream leaves. So two equal suffixes stand in the order of the ones
// before them: if these are equal, too, in that of the ones before those; and
// first suffixes, which enter before the merge begins, in the order of the
// streams.
//
//   stream 0, of ACA   A  ACA  CA    as A of stream 0 enters first, it leaves
//   stream 1, of CCA   A  CA   CCA   first, too; but then CA of stream 1 enters
//                                    at once, and CA of stream 0 when ACA
//                                    leaves

#ifndef PALVOR_RANGE_ENTRY_ORDER_H_
#define PALVOR_RANGE_ENTRY_ORDER_H_

#include <cstddef>
#include <cstdint>
#include <map>

#include "palvor/range/array_reader.h"
#include "palvor/range/equal_suffixes.h"
#include "palvor/stream/stream_files.h"
#include "palvor/text/compare.h"

namespace palvor {

// A record of an array, and the one before it, if there is one.
struct RecordPlace {
  int stream;
  int64_t record;
  const Suffix* before;
};

class EntryOrder {
 public:
  EntryOrder(const StreamFiles& files, SuffixCompare& compare)
      : files_(files), compare_(compare), equal_(compare.text()) {}

  // Whether two suffixes are the same text.
  bool areEqual(const Suffix& a, const Suffix& b) { return equal_(a, b); }

  // Whether record a, which has the text of record b in another stream, enters
  // before it. Reads both arrays backwards from there for as long as they hold
  // equal suffixes, but not where the streams are of the same strings.
  bool entersFirst(const RecordPlace& a, const RecordPlace& b);

 private:
  // Arrays that are open at once, at most, and one more.
  static constexpr size_t kMostArrays = 200;

  bool areOfSameStrings(int a, int b);
  const ArrayReader& arrayOf(int k);

  const StreamFiles& files_;
  SuffixCompare& compare_;
  EqualSuffixes equal_;
  std::map<int, ArrayReader> arrays_;
};

}  // namespace palvor

#endif  // PALVOR_RANGE_ENTRY_ORDER_H_
