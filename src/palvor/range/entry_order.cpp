#include "palvor/range/entry_order.h"

#include <algorithm>
#include <cstddef>

#include "palvor/range/array_reader.h"

namespace palvor {
namespace {

// The records of an array from the last to the first.
class BackwardReader {
 public:
  BackwardReader(const ArrayReader& array, const Collection& text,
                 const RecordPlace& behind)
      : array_(array), text_(text), next_(behind.record) {}

  bool isAtBegin() const { return next_ == 0; }

  // The record before the one that was taken last; there must be one.
  Suffix take() {
    if (next_ == first_ || block_.empty()) {
      const int64_t count = std::min<int64_t>(next_, kBlock);
      first_ = next_ - count;
      block_.resize(static_cast<size_t>(count));
      array_.read(first_, count, block_.data());
    }
    next_--;
    return array_.tested(block_[static_cast<size_t>(next_ - first_)], next_,
                         text_);
  }

 private:
  static constexpr int64_t kBlock = 1024;  // records

  const ArrayReader& array_;
  const Collection& text_;
  int64_t next_;
  int64_t first_ = 0;  // of the block
  std::vector<Suffix> block_;
};

}  // namespace

// Whether the inputs of two streams are, in turn, the same texts. Then their
// arrays hold the same suffixes in turn.
bool EntryOrder::areOfSameStrings(int a, int b) {
  const auto firstInput = [&](int k) {
    return files_.firstInputs[static_cast<size_t>(k)];
  };
  const uint32_t inputs = firstInput(a + 1) - firstInput(a);
  if (firstInput(b + 1) - firstInput(b) != inputs) return false;
  const uint32_t all = compare_.text().inputs();
  for (uint32_t i = 0; i < inputs; i++) {
    if (firstInput(a) + i >= all || firstInput(b) + i >= all) return false;
    if (!equal_.areWhole(firstInput(a) + i, firstInput(b) + i)) return false;
  }
  return true;
}

const ArrayReader& EntryOrder::arrayOf(int k) {
  const auto found = arrays_.find(k);
  if (found != arrays_.end()) return found->second;
  ArrayReader& array = arrays_.emplace(k, ArrayReader(files_, k)).first->second;
  array.hold();
  return array;
}

bool EntryOrder::entersFirst(const RecordPlace& a, const RecordPlace& b) {
  if (a.before != nullptr && b.before != nullptr &&
      !equal_(*a.before, *b.before)) {
    return !compare_(*a.before, *b.before, 0).after();
  }
  if (a.record == b.record && areOfSameStrings(a.stream, b.stream)) {
    return a.stream < b.stream;
  }
  if (arrays_.size() > kMostArrays) arrays_.clear();
  BackwardReader readerA(arrayOf(a.stream), compare_.text(), a);
  BackwardReader readerB(arrayOf(b.stream), compare_.text(), b);
  while (!readerA.isAtBegin() && !readerB.isAtBegin()) {
    const Suffix before = readerA.take();
    const Suffix other = readerB.take();
    if (!equal_(before, other)) return !compare_(before, other, 0).after();
  }
  if (readerA.isAtBegin() && readerB.isAtBegin()) return a.stream < b.stream;
  return readerA.isAtBegin();
}

}  // namespace palvor
