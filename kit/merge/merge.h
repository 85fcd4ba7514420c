// Merges a data folder in ranges, by several threads, into the files that
// palvor writes.

#ifndef PALVOR_KIT_MERGE_MERGE_H_
#define PALVOR_KIT_MERGE_MERGE_H_

#include <string>

#include "kit/answers/pangenome_table.h"
#include "kit/merge/range_merger.h"
#include "kit/progress.h"

namespace kit {

struct MergeCommand {
  MergePlaces places;
  MergeMeans means;
  int ranges = 0;  // 0: as many as suit the threads
  bool trees = false;
  int treeNodes = 0;     // records of a tree; 0: as palvor's
  bool sayNeeds = true;  // on standard error, before it begins
  ProgressStyle progress = {};

  // Instead of an array or trees, the answer of palvor-kit pangenome: the file
  // that it is written to, "-" for standard output; empty: not wanted.
  std::string pangenome;
  PangenomeChoice pangenomeChoice;
  std::string groups;  // table of genomes; empty: each file is a genome
};

// Ranges that a merge in so many threads is cut into, unless told otherwise.
int usualRanges(int jobs);

// Writes the merged array and its LCP array, byte for byte what palvor -a -l
// writes, or suffix tree partitions, of which a range never shares one with
// another; or counts k-mers, which writes neither. Files get their names when
// all are whole. Throws std::exception.
void merge(const MergeCommand& command);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_MERGE_H_
