// The ordering of the streams as a plain linked list, walked from its head:
// the yardstick for the program's own one. `palvor_plain` is the program with
// this header and bench/plain/list.cpp in place of src/merge/ordering.h, whose
// functions these are, and of what stands behind it. Its output files and its
// counters are the same; it knows no heap.

#ifndef PALVOR_BENCH_PLAIN_MERGE_ORDERING_H_
#define PALVOR_BENCH_PLAIN_MERGE_ORDERING_H_

#include "run/options.h"
#include "sources/lcp_entry.h"

void allocateOrdering(int k);
bool canBeRows();
void primeStream(int k);
int headStream();
LcpEntry headEntry();
void moveHead(int k, LcpEntry entry);
void dropHead();

#endif  // PALVOR_BENCH_PLAIN_MERGE_ORDERING_H_
