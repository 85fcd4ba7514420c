#include "kit/check/array_proof.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <memory>

#include "kit/check/suffix_run.h"
#include "kit/file_error.h"
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
  bool hasEntries() const { return entries_.has_value(); }
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

// Pieces of all arrays whose sizes are right.
std::vector<ArrayPiece> piecesOf(const std::vector<ArrayToCheck>& arrays,
                                 const CheckedStrings& strings,
                                 std::vector<char>& right,
                                 std::vector<size_t>& owners) {
  std::vector<ArrayPiece> pieces;
  for (size_t j = 0; j < arrays.size(); j++) {
    const ArrayToCheck& array = arrays[j];
    try {
      const ArrayRecords records(array.path);
      right[j] =
          records.isEven() &&
          records.size() == strings.total(array.firstInput, array.endInput);
    } catch (const FileError&) {
      right[j] = 0;
    }
    if (right[j] == 0) continue;
    const uint64_t size = strings.total(array.firstInput, array.endInput);
    for (uint64_t from = 0; from < size; from += kPiece) {
      pieces.push_back({array, from, std::min(size, from + kPiece)});
      owners.push_back(j);
    }
  }
  return pieces;
}

}  // namespace

std::optional<PieceFault> PieceProver::prove(
    const ArrayPiece& piece, const std::function<void(uint64_t)>& advance) {
  const std::string path = piece.array.path + ".stpsa";
  ArrayRecords records(piece.array.path);
  const auto fault = [&](uint64_t record, std::string reason) {
    return PieceFault{path, record, std::move(reason)};
  };
  std::optional<Place> previous = piece.before;
  uint64_t restBefore = 0;
  if (piece.from > 0) {
    previous = placeOf(piece.array, records.suffix(piece.from - 1), strings_);
    if (!previous) return fault(piece.from - 1, "names no suffix of the array");
  }
  if (previous) restBefore = strings_.restBits(*previous);
  bool inGroup = false;  // the record before is equal to the one before it
  bool isOwn = false;    // and they are a group that this piece began
  uint64_t done = piece.from;
  for (uint64_t r = piece.from; r < records.size(); r++) {
    const Suffix& suffix = records.suffix(r);
    const std::optional<Place> place = placeOf(piece.array, suffix, strings_);
    if (!place) return fault(r, "names no suffix of the array");
    const uint64_t rest = strings_.restBits(*place);
    uint64_t shared = 0;
    bool inside = false;
    bool isEqual = false;
    if (previous) {
      shared = prefixes_.bits(*previous, *place);
      inside = shared < restBefore && shared < rest;
      isEqual = shared == restBefore && shared == rest;
    }
    if (isEqual) {
      if (!inGroup) {
        isOwn = r > piece.from;
        groups_[previous->input] = ++group_;
      }
      if (isOwn) {
        if (groups_[place->input] == group_) {
          return fault(r, describe(*place) + " is there a second time");
        }
        groups_[place->input] = group_;
      }
    }
    // Behind the piece there are only suffixes that it began.
    if (r >= piece.to && !(isEqual && isOwn)) break;
    inGroup = isEqual;
    if (r < piece.to) {
      const bool rises =
          !previous ||
          (inside
               ? strings_.slice(place->input, 2 * place->pos + shared) >> 63 !=
                     0
               : restBefore <= rest);
      if (!rises) {
        return fault(r, describe(*place) + " sorts before " +
                            describe(*previous) + ", which stands before it");
      }
      const uint64_t key = strings_.slice(place->input, 2 * place->pos);
      if (key != (uint64_t{suffix.prefix0} << 32 | suffix.prefix1)) {
        return fault(r, "prefix words that are not those of the string");
      }
      if (key < piece.low || (piece.high && key >= *piece.high)) {
        return fault(r, describe(*place) + " does not belong into this range");
      }
      const uint64_t entry = shared << 1 | (inside ? 1 : 0);
      if (records.hasEntries() && previous && records.entry(r) != entry) {
        return PieceFault{
            piece.array.path + ".stlcp", r,
            fmt::format("entry {}, expected {}", records.entry(r), entry)};
      }
      if (r + 1 - done == kPieceBlock || r + 1 == piece.to) {
        advance(r + 1 - done);
        done = r + 1;
      }
    }
    previous = place;
    restBefore = rest;
  }
  return {};
}

std::vector<char> proveArrays(const std::vector<ArrayToCheck>& arrays,
                              const CheckedStrings& strings, int jobs,
                              const std::function<void(uint64_t)>& advance) {
  std::vector<char> right(arrays.size());
  std::vector<size_t> owners;
  const std::vector<ArrayPiece> pieces =
      piecesOf(arrays, strings, right, owners);
  const auto wrong = std::make_unique<std::atomic<bool>[]>(arrays.size());
  std::atomic<size_t> next = 0;
  runWorkers(jobs, [&] {
    PieceProver prover(strings);
    for (size_t p = next++; p < pieces.size(); p = next++) {
      if (wrong[owners[p]]) continue;
      try {
        if (prover.prove(pieces[p], advance)) wrong[owners[p]] = true;
      } catch (const FileError&) {
        wrong[owners[p]] = true;
      }
    }
    return false;
  });
  for (size_t j = 0; j < arrays.size(); j++) {
    if (wrong[j]) right[j] = 0;
  }
  return right;
}

}  // namespace kit
