#include "merge/list.h"

#include "merge/front.h"
#include "output/counters.h"
#include "sources/compare.h"
#include "support/memory.h"

constinit int Lfst = -1;
constinit int* LNXT = nullptr;
constinit LcpEntry* LLCP = nullptr;
constinit LcpEntry* LOCP = nullptr;
constinit int currlcp = 0;
constinit int currfbt = 0;

namespace {

void linkBefore(int k, int previous, int current) {
  (previous < 0 ? Lfst : LNXT[previous]) = k;
  LNXT[k] = current;
}

}  // namespace

void allocateList(int k) {
  LNXT = zeroedTable<int>(k, "the merge list");
  LLCP = zeroedTable<LcpEntry>(k, "the merge list's LCP entries");
  LOCP = zeroedTable<LcpEntry>(k, "the streams' own LCP entries");
  Lfst = -1;
}

void addList(int k) {
  if (k < 0) {
    Lfst = LNXT[Lfst];
  } else {
    insertIntoList(k);
  }
}

void moveHeadByWalk(int k, LcpEntry entry) {
  LLCP[k] = LOCP[k] = entry;
  currlcp = lcpBits(entry);
  currfbt = lcpFirstbit(entry);
  addList(-1);
  addList(k);
}

int insertIntoList(int k) {
  if (Lfst < 0) {
    Lfst = k;
    LNXT[k] = -1;
    return 0;
  }
  int place = 0;
  int shared = currlcp;
  int firstbit = currfbt;
  int previous = -1;
  int current = Lfst;
  while (current >= 0) {
    nlcmp++;
    const LcpEntry stored = LLCP[current];
    if (shared > lcpBits(stored)) break;
    if (shared == lcpBits(stored)) {
      const int after =
          compareSuffixes(Suffixes[current], Suffixes[k], &firstbit, shared);
      nncmp++;
      if (comLCP >= 64) nnac++;
      if (comLCP >= shared + 64) nnrc++;
      if (LOCP[current] == stored) nnoc++;
      const LcpEntry found = comparedEntry(firstbit);
      if (after != 0) {
        linkBefore(k, previous, current);
        LLCP[k] = stored;
        LLCP[current] = found;
        return place;
      }
      shared = comLCP;
    }
    previous = current;
    current = LNXT[current];
    place++;
  }
  linkBefore(k, previous, current);
  LLCP[k] = makeLcpEntry(shared, firstbit);
  return place;
}
