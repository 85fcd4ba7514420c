#include "output/compaction.h"

#include <algorithm>

#include "output/tree_buffer.h"
#include "run/options.h"
#include "support/report.h"

constinit int hset[3] = {};
constinit int hacc[3] = {};
constinit int hcol[3] = {};

namespace {

// A prime, so that every step visits all slots.
constexpr int kSlots = 319993;
constexpr int kStep = 113;

int hasht[3][kSlots];  // keys; 0 is an empty slot

// A negative key's remainder is negative, and is folded back.
int homeSlot(int key) {
  const int slot = key % kSlots;
  return slot >= 0 ? slot : (159996 - slot) % kSlots;
}

}  // namespace

void addHT(int set, int key) {
  hset[set]++;
  int slot = homeSlot(key);
  if (hacc[set] >= kSlots) die("hash full, table %d\n", set);
  int* keys = hasht[set];
  while (keys[slot] != 0 && keys[slot] != key) {
    slot = (slot + kStep) % kSlots;
    hcol[set]++;
  }
  if (keys[slot] == key) return;
  keys[slot] = key;
  hacc[set]++;
}

void registerLink(int m) {
  const PathEntry& parent = lastPath[m];
  const PathEntry& child = lastPath[m + 1];
  // The path leads to the largest suffix: to the right wherever it can.
  addHT(rightChild(*parent.node) != 0 ? 1 : 0,
        indexOf(child.node) - indexOf(parent.node));
  if (!isLeaf(*child.node)) addHT(2, child.depth - parent.depth);
}

void finalSplit() {
  if (compact == 0) return;
  for (int i = pathCounter - 2; i >= 0; i--) registerLink(i);
}

void clearHashSets() {
  for (int set = 0; set < 3; set++) {
    std::fill_n(hasht[set], kSlots, 0);
    hset[set] = hacc[set] = hcol[set] = 0;
  }
}
