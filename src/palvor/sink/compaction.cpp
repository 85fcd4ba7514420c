#include "palvor/sink/compaction.h"

#include <algorithm>

#include "palvor/error.h"

namespace palvor {
namespace {

// A prime, so that every step visits all slots.
constexpr int kSlots = 319993;
constexpr int kStep = 113;

// A negative key's remainder is negative, and is folded back.
int homeSlot(int key) {
  const int slot = key % kSlots;
  return slot >= 0 ? slot : (159996 - slot) % kSlots;
}

}  // namespace

Compaction::Compaction()
    : keys_(int64_t{3} * kSlots, "the compaction statistics") {}

void Compaction::add(Set set, int key) {
  Counts& counts = counts_[set];
  counts.registrations++;
  int slot = homeSlot(key);
  if (counts.distinct >= kSlots) fail("hash full, table %d", set);
  int* keys = keys_.data() + kSlots * int64_t{set};
  while (keys[slot] != 0 && keys[slot] != key) {
    slot = (slot + kStep) % kSlots;
    counts.probes++;
  }
  if (keys[slot] == key) return;
  keys[slot] = key;
  counts.distinct++;
}

void Compaction::clear() {
  std::fill_n(keys_.data(), int64_t{3} * kSlots, 0);
  std::fill_n(counts_, 3, Counts{});
}

}  // namespace palvor
