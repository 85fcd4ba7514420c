#include "kit/check/array_proof.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "kit/check/suffix_run.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "kit/workers.h"

namespace kit {
namespace {

constexpr uint64_t kPieceBlock = 1 << 15;  // records read at once
constexpr uint64_t kPiece = 1 << 19;       // records

// An array's records and entries, block by block.
class ArrayRecords {
 public:
  explicit ArrayRecords(const std::string& path) : suffixes_(path + ".stpsa") {
    if (isThere(path + ".stlcp")) entries_.emplace(path + ".stlcp");
  }

  uint64_t size() const { return suffixes_.size(); }
  // In a file that is too short, some have none.
  bool hasEntry(uint64_t record) const {
    return entries_ && record < entries_->size();
  }
  bool isEven() const {
    return !entries_ || entries_->size() == suffixes_.size();
  }

  const Suffix& suffix(uint64_t record) {
    reach(record);
    return block_[record - first_];
  }
  LcpEntry entry(uint64_t record) {
    reach(record);
    return entryBlock_[record - first_];
  }

 private:
  void reach(uint64_t record) {
    if (record >= first_ && record < first_ + block_.size()) return;
    first_ = record;
    block_ = suffixes_.read(first_, kPieceBlock);
    if (entries_) entryBlock_ = entries_->read(first_, kPieceBlock);
  }

  RecordFile<Suffix> suffixes_;
  std::optional<RecordFile<LcpEntry>> entries_;
  uint64_t first_ = 0;
  std::vector<Suffix> block_;
  std::vector<LcpEntry> entryBlock_;
};

// The suffix that a record names; nothing if the array can't have it.
std::optional<Place> placeOf(const ArrayToCheck& array, const Suffix& suffix,
                             const CheckedStrings& strings) {
  const uint64_t input = uint64_t{inputNumber(suffix)} + array.origin;
  if (input < array.firstInput || input >= array.endInput) return {};
  const Place place = {static_cast<uint32_t>(input), suffix.pos};
  return strings.has(place) ? std::optional(place) : std::nullopt;
}

// Goes through the records of one piece.
class PieceProof {
 public:
  PieceProof(const ArrayPiece& piece, const CheckedStrings& strings)
      : piece_(piece), strings_(strings), records_(piece.array.path) {}

  std::optional<PieceFault> run(CommonPrefix& prefixes, EqualSuffixes& equal,
                                const std::function<void(uint64_t)>& advance);

 private:
  PieceFault fault(uint64_t record, std::string reason) const {
    return {piece_.array.path + ".stpsa", record, std::move(reason)};
  }
  PieceFault noSuffix(uint64_t record) const {
    return fault(record, "names no suffix of the array");
  }

  bool isInRange(uint64_t key) const {
    return key >= piece_.low && !(piece_.high && key >= *piece_.high);
  }

  // Whether a record's entry is the expected one, if there are any.
  bool hasEntry(uint64_t record, uint64_t expected) {
    return !records_.hasEntry(record) || records_.entry(record) == expected;
  }

  // What is wrong with a record of this place, or else with its entry. The step
  // is not handed over: if it had to stand in memory, the reads of one record
  // would wait for those of the last.
  PieceFault faultIn(uint64_t record, Place place, uint64_t entry);

  const ArrayPiece& piece_;
  const CheckedStrings& strings_;
  ArrayRecords records_;
};

std::optional<PieceFault> PieceProof::run(
    CommonPrefix& prefixes, EqualSuffixes& equal,
    const std::function<void(uint64_t)>& advance) {
  std::optional<Place> start = piece_.before;
  if (piece_.from > 0) {
    const uint64_t record = piece_.from - 1;
    start = placeOf(piece_.array, records_.suffix(record), strings_);
    if (!start) return noSuffix(record);
  }
  bool first = !start;
  Place before = start.value_or(Place{});
  bool inGroup = false;  // the record before is equal to the one before it
  bool isOwn = false;    // and they are a group that this piece began
  uint64_t done = piece_.from;
  for (uint64_t r = piece_.from; r < records_.size(); r++) {
    const Suffix& suffix = records_.suffix(r);
    const auto place = placeOf(piece_.array, suffix, strings_);
    if (!place) return noSuffix(r);
    Step step;
    if (!first) step = stepTo(*place, before, strings_, prefixes);
    if (step.isEqual && !inGroup) {
      isOwn = r > piece_.from;
      equal.begin(before.input);
    }
    inGroup = step.isEqual;
    // Behind the piece there are only suffixes that it began.
    if (r >= piece_.to && !(inGroup && isOwn)) break;
    if (inGroup && isOwn && !equal.meet(place->input)) {
      return fault(r, describe(*place) + " is there a second time");
    }
    if (r < piece_.to) {
      if (!step.rises) {
        return fault(r, describe(*place) + " sorts before " + describe(before) +
                            ", which stands before it");
      }
      const uint64_t entry = first ? 0 : step.entry();
      const uint64_t key = strings_.slice(place->input, 2 * place->pos);
      if (key != prefixBits(suffix) || !isInRange(key) ||
          (!first && !hasEntry(r, entry))) {
        return faultIn(r, *place, entry);
      }
      if (r + 1 - done == kPieceBlock || r + 1 == piece_.to) {
        advance(r + 1 - done);
        done = r + 1;
      }
    }
    before = *place;
    first = false;
  }
  return {};
}

PieceFault PieceProof::faultIn(uint64_t record, Place place, uint64_t entry) {
  const uint64_t key = strings_.slice(place.input, 2 * place.pos);
  if (key != prefixBits(records_.suffix(record))) {
    return fault(record, "prefix words that are not those of the string");
  }
  if (!isInRange(key)) {
    return fault(record, describe(place) + " does not belong into this range");
  }
  return {piece_.array.path + ".stlcp", record,
          fmt::format("entry {}, expected {}", records_.entry(record), entry)};
}

// Whether an array has as many records as it should have suffixes, and as many
// entries, if there are any. Throws FileError.
bool hasRightSize(const ArrayToCheck& array, const CheckedStrings& strings) {
  const ArrayRecords records(array.path);
  return records.isEven() &&
         records.size() == strings.total(array.firstInput, array.endInput);
}

// What threads find out about arrays.
class Verdicts {
 public:
  explicit Verdicts(size_t arrays) : verdicts_(arrays) {}

  bool isRight(size_t array) {
    const std::lock_guard lock(mutex_);
    return verdicts_[array].isRight;
  }

  // Does a part of an array's proof, which returns whether it is right.
  template <typename Part>
  void take(size_t array, Part isRight) {
    try {
      if (!isRight()) refuse(array, {});
    } catch (const FileError& error) {
      refuse(array, error);
    }
  }

  std::vector<ArrayVerdict> all() && { return std::move(verdicts_); }

 private:
  void refuse(size_t array, std::optional<FileError> unread) {
    const std::lock_guard lock(mutex_);
    ArrayVerdict& verdict = verdicts_[array];
    verdict.isRight = false;
    if (!verdict.unread) verdict.unread = std::move(unread);
  }

  std::mutex mutex_;
  std::vector<ArrayVerdict> verdicts_;
};

}  // namespace

std::optional<PieceFault> PieceProver::prove(
    const ArrayPiece& piece, const std::function<void(uint64_t)>& advance) {
  return PieceProof(piece, strings_).run(prefixes_, equal_, advance);
}

std::vector<ArrayVerdict> proveArrays(
    const std::vector<ArrayToCheck>& arrays, const CheckedStrings& strings,
    int jobs, const std::function<void(uint64_t)>& advance) {
  struct OwnedPiece {
    size_t array;
    ArrayPiece piece;
  };
  Verdicts verdicts(arrays.size());
  std::vector<OwnedPiece> pieces;
  for (size_t j = 0; j < arrays.size(); j++) {
    const ArrayToCheck& array = arrays[j];
    verdicts.take(j, [&] { return hasRightSize(array, strings); });
    if (!verdicts.isRight(j)) continue;
    const uint64_t size = strings.total(array.firstInput, array.endInput);
    for (uint64_t from = 0; from < size; from += kPiece) {
      pieces.push_back({j, {array, from, std::min(size, from + kPiece)}});
    }
  }
  std::atomic<size_t> next = 0;
  runWorkers(jobs, [&] {
    PieceProver prover(strings);
    for (size_t p = next++; p < pieces.size(); p = next++) {
      const OwnedPiece& owned = pieces[p];
      if (!verdicts.isRight(owned.array)) continue;
      verdicts.take(owned.array,
                    [&] { return !prover.prove(owned.piece, advance); });
    }
    return false;
  });
  return std::move(verdicts).all();
}

}  // namespace kit
