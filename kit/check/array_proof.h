// Suffix arrays proved in pieces, by several threads, without a table of all
// suffixes.
//
// An array of so many records as it should have suffixes holds each of them
// once if every record names one that is there, none sorts before the one in
// front of it, and among equal ones no input comes twice, as an input has one
// suffix of a length. A piece is right if that holds for its records, the first
// of them against the last one of the piece before, and for the equal ones that
// it begins.

#ifndef PALVOR_KIT_CHECK_ARRAY_PROOF_H_
#define PALVOR_KIT_CHECK_ARRAY_PROOF_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/check/check_arrays.h"
#include "kit/check/checked_strings.h"
#include "kit/check/common_prefix.h"
#include "kit/file_error.h"

namespace kit {

// Records of an array to be proved, and what stands around them.
struct ArrayPiece {
  ArrayToCheck array;
  uint64_t from = 0;  // records `from` to `to` - 1
  uint64_t to = 0;
  std::optional<Place> before = {};   // suffix before record 0, if there is one
  uint64_t low = 0;                   // the least key: a suffix's first 64 bits
  std::optional<uint64_t> high = {};  // the first that is too large
};

// The first thing that is wrong, in which file.
struct PieceFault {
  std::string file;
  uint64_t record;
  std::string reason;
};

// Which inputs have a suffix in a group of equal ones.
class EqualSuffixes {
 public:
  explicit EqualSuffixes(uint32_t inputs) : groups_(inputs) {}

  // Begins a group with a suffix of this input.
  void begin(uint32_t input) { groups_[input] = ++group_; }

  // False if the group has one of this input already.
  bool meet(uint32_t input) {
    return std::exchange(groups_[input], group_) != group_;
  }

 private:
  std::vector<uint64_t> groups_;  // per input, the last that it was met in
  uint64_t group_ = 0;            // number of the present one
};

// Proves pieces, one after the other.
class PieceProver {
 public:
  explicit PieceProver(const CheckedStrings& strings)
      : strings_(strings), prefixes_(strings), equal_(strings.count()) {}

  // Nothing if the piece is right: prefix words and LCP entries, if there are
  // any, included. Throws FileError if a file cannot be read.
  //   advance  told the number of records done, now and then
  std::optional<PieceFault> prove(const ArrayPiece& piece,
                                  const std::function<void(uint64_t)>& advance);

 private:
  const CheckedStrings& strings_;
  CommonPrefix prefixes_;
  EqualSuffixes equal_;
};

// What a proof found out about an array.
struct ArrayVerdict {
  bool isRight = true;
  std::optional<FileError> unread = {};  // why, if it could not be read
};

// Whether each of these arrays is wholly right, by up to `jobs` threads. One
// that cannot be read is not.
//   advance  told the number of records done, now and then, by any thread
std::vector<ArrayVerdict> proveArrays(
    const std::vector<ArrayToCheck>& arrays, const CheckedStrings& strings,
    int jobs, const std::function<void(uint64_t)>& advance);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_ARRAY_PROOF_H_
