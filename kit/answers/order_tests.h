// Whether suffixes and LCP entries that come in merged order can be what they
// claim to be, as far as that can be told from them alone.

#ifndef PALVOR_KIT_ANSWERS_ORDER_TESTS_H_
#define PALVOR_KIT_ANSWERS_ORDER_TESTS_H_

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "kit/records.h"

namespace kit {

class OrderTests {
 public:
  //   lengths  of the inputs in characters; must outlive this
  //   array, lcps  the files' names, for errors
  //   first        number of the first record
  OrderTests(const std::vector<uint32_t>& lengths, std::string array,
             std::string lcps, uint64_t first = 0);

  // Tests the next suffixes and as many entries. Throws FileError, which names
  // the file and the record, for a suffix that no input has, prefix words in
  // descending order, and an entry that contradicts the prefix words and the
  // lengths of its two suffixes. So the first 32 characters of a common prefix
  // are proved, and what is beyond is known to be inside both suffixes.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

 private:
  bool isRight(const Suffix& suffix, LcpEntry entry);
  [[noreturn]] void explain(const Suffix& suffix, LcpEntry entry) const;

  const std::vector<uint32_t>& lengths_;
  std::string arrayPath_, lcpPath_;
  uint64_t next_;  // record
  uint64_t previousPrefix_ = 0;
  uint64_t previousRest_ = 0;  // bits; 0: there was no suffix yet
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_ORDER_TESTS_H_
