#include <cstddef>
#include <vector>

#include "merge/front.h"
#include "merge/ordering.h"
#include "output/counters.h"
#include "sources/compare.h"
#include "support/report.h"

namespace {

// Per stream.
std::vector<int> following;       // next stream; -1 ends the list
std::vector<LcpEntry> withOne;    // entry with the predecessor's suffix; of the
                                  // first stream: with the suffix emitted last
std::vector<LcpEntry> asFetched;  // entry as it was when the suffix was fetched
int first = -1;

void linkBefore(int k, int previous, int current) {
  (previous < 0 ? first : following[static_cast<size_t>(previous)]) = k;
  following[static_cast<size_t>(k)] = current;
}

LcpEntry& entryOf(int k) { return withOne[static_cast<size_t>(k)]; }

// Inserts stream k, whose suffix is known to share so many bits with the one
// emitted last.
void insert(int k, int shared, int firstbit) {
  int previous = -1;
  int current = first;
  if (current < 0) {
    linkBefore(k, previous, current);
    return;
  }
  while (current >= 0) {
    nlcmp++;
    const LcpEntry stored = entryOf(current);
    if (shared > lcpBits(stored)) break;
    if (shared == lcpBits(stored)) {
      const int after =
          ZEPCompare(Suffixes[current], Suffixes[k], &firstbit, shared);
      nncmp++;
      if (comLCP >= 64) nnac++;
      if (comLCP >= shared + 64) nnrc++;
      if (asFetched[static_cast<size_t>(current)] == stored) nnoc++;
      const LcpEntry found = comparedEntry(firstbit);
      if (after != 0) {
        linkBefore(k, previous, current);
        entryOf(k) = stored;
        entryOf(current) = found;
        return;
      }
      shared = comLCP;
    }
    previous = current;
    current = following[static_cast<size_t>(current)];
  }
  linkBefore(k, previous, current);
  entryOf(k) = makeLcpEntry(shared, firstbit);
}

}  // namespace

void allocateOrdering(int k) {
  if (hpflag != 0) die("the plain list has no heap\n");
  following.assign(static_cast<size_t>(k), -1);
  withOne.assign(static_cast<size_t>(k), 0);
  asFetched.assign(static_cast<size_t>(k), 0);
}

void primeStream(int k) { insert(k, 0, 0); }

int headStream() { return first; }

LcpEntry headEntry() { return entryOf(first); }

void moveHead(int k, LcpEntry entry) {
  dropHead();
  entryOf(k) = asFetched[static_cast<size_t>(k)] = entry;
  insert(k, lcpBits(entry), lcpFirstbit(entry));
}

void dropHead() { first = following[static_cast<size_t>(first)]; }

bool canBeRows() { return false; }
