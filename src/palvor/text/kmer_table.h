// Where k-mers stand: for each the first position that was told, a number of 32
// bits that is not UINT32_MAX. They are known by hashes alone, so that what is
// found may be another k-mer: compare the strings.

#ifndef PALVOR_TEXT_KMER_TABLE_H_
#define PALVOR_TEXT_KMER_TABLE_H_

#include <bit>
#include <cstddef>
#include <cstdint>

#include "palvor/io/huge_pages.h"

namespace palvor {

class KmerTable {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;

  // With room for `expected` k-mers before it has to grow.
  explicit KmerTable(size_t expected)
      : slots_(std::bit_ceil(2 * expected + 64)), shift_(shiftFor(slots_)) {}

  // The position of the k-mer with this hash; if none was told yet, kNone, and
  // it is at `position` from now on.
  uint32_t findOrAdd(uint64_t hash, uint32_t position) {
    const auto tag = static_cast<uint32_t>(hash >> 32);
    size_t slot = slotOf(tag);
    for (; slots_[slot].next != 0; slot = (slot + 1) & (slots_.size() - 1)) {
      if (slots_[slot].tag == tag) return slots_[slot].next - 1;
    }
    slots_[slot] = {position + 1, tag};
    if (2 * ++used_ > slots_.size()) grow();
    return kNone;
  }

  [[gnu::always_inline]] void prefetch(uint64_t hash) const {
    __builtin_prefetch(&slots_[slotOf(static_cast<uint32_t>(hash >> 32))]);
  }

 private:
  struct Slot {
    uint32_t next = 0;  // the position and one; 0 if the slot is empty
    uint32_t tag = 0;
  };

  // A tag's bits stand for a number below 1: that part of all slots lies
  // before its own.
  size_t slotOf(uint32_t tag) const {
    return static_cast<size_t>(static_cast<uint64_t>(tag) << 32 >> shift_);
  }
  static int shiftFor(const HugeTable<Slot>& slots) {
    return 64 - std::countr_zero(slots.size());
  }

  void grow() {
    HugeTable<Slot> old(2 * slots_.size());
    old.swap(slots_);
    shift_ = shiftFor(slots_);
    for (const Slot& moved : old) {
      if (moved.next == 0) continue;
      size_t slot = slotOf(moved.tag);
      while (slots_[slot].next != 0) slot = (slot + 1) & (slots_.size() - 1);
      slots_[slot] = moved;
    }
  }

  HugeTable<Slot> slots_;  // a power of two of them
  int shift_;
  size_t used_ = 0;
};

}  // namespace palvor

#endif  // PALVOR_TEXT_KMER_TABLE_H_
