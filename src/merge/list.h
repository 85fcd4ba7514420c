// The merge list: the streams linked in ascending order of their current
// suffixes, each with the LCP entry of its suffix and its predecessor's.
//
// A suffix s that is known to share L bits with the suffix emitted last finds
// its place by walking the list from its head and looking at the stored
// lengths alone, as long as they differ from L. With streams a, b, c:
//
//   Lfst -> a -> b -> c         stored length of each with its predecessor
//           8    10   4         (of a: with the suffix emitted last)
//
//   L = 9: above 8, so s shares more with the suffix before a than a does:
//          s goes before a.
//   L = 6: below 8 and 10: a and b leave s behind later than s leaves them,
//          so they sort before s, and share just 6 bits with it; above 4, so
//          s goes between b and c.
//   L = 8: equal: s and a share 8 bits at least, and only a comparison tells
//          which sorts first, and how much they share.
//
// Equal suffixes leave the list in the order in which they entered it.

#ifndef PALVOR_MERGE_LIST_H_
#define PALVOR_MERGE_LIST_H_

#include "sources/lcp_entry.h"

// The list. Per stream, but for the first; null with `hpflag`. Written by the
// functions below, and by those that find places without a walk
// (merge/few_streams.h, merge/many_streams.h).
extern int Lfst;        // first stream; -1 if the list is empty
extern int* LNXT;       // next stream; -1 ends the list
extern LcpEntry* LLCP;  // entry with the predecessor's current suffix; of the
                        // first stream: with the suffix emitted last
extern LcpEntry* LOCP;  // entry as it was when the suffix was fetched

// What addList knows of a new suffix: bits that it shares with the suffix
// emitted last, and the firstbit that goes with them. Written by moveHead; 0
// while priming.
extern int currlcp;
extern int currfbt;

// Allocates an empty list for k streams.
void allocateList(int k);

// k = -1: removes the first stream. The list must not be empty.
// k >= 0: inserts stream k, which is not in the list, by its current suffix
//         Suffixes[k], `currlcp` and `currfbt`. A common prefix of 2^30 bits
//         or more does not fit an entry and ends the run.
void addList(int k);

// Moves the first stream k to the place of its new suffix, whose entry relates
// it to the suffix emitted last.
void moveHeadByWalk(int k, LcpEntry entry);

// As addList(k) for k >= 0. Returns how many streams stand before k.
int insertIntoList(int k);

#endif  // PALVOR_MERGE_LIST_H_
