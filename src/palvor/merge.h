// The merge: the partial suffix arrays of a data folder, merged into one order
// of all their suffixes. It is an LCP-aware k-way merge: each stream's suffixes
// come with their common prefixes, which place them among the others.
//
// Nothing here is process-wide: merges in several threads do not disturb each
// other. Whatever fails throws an Error (palvor/error.h), and leaves no file
// open.

#ifndef PALVOR_MERGE_H_
#define PALVOR_MERGE_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "palvor/error.h"
#include "palvor/io/data_paths.h"
#include "palvor/io/files.h"
#include "palvor/order/cost.h"
#include "palvor/range/merge_range.h"
#include "palvor/simd/target.h"
#include "palvor/sink/array_sink.h"
#include "palvor/sink/sink.h"
#include "palvor/sink/tree_sink.h"
#include "palvor/stream/stream_files.h"
#include "palvor/text/collection.h"
#include "palvor/text/stretches.h"

namespace palvor {

struct MergeOptions {
  DataPlace input;   // of the strings and lengths files
  DataPlace arrays;  // of the suffix arrays
  DataPlace output;  // of whatever is written

  // What is written: suffix trees, unless an array is asked for.
  bool array = false;
  bool lcps = false;  // with the array, its LCP array too
  bool reorderTrees = false;
  bool measureCompaction = false;

  // How it is read.
  int memory = 300'000'000;  // bytes for the buffers of all streams
  int streamBuffer = 0;      // bytes for the buffer of each; 0: their share
  int outputBuffer = 0;      // nodes of a tree, or records written at once; 0:
                             // the longest input's length, at most 1048576
  int mostInputs = 0;        // only so many are taken; 0: all
  bool keepFilesOpen = false;
  bool mapStrings = false;
  bool zeroOrigin = false;  // every array numbers its inputs from zero
  bool readLcps = false;    // common prefixes are read from .stlcp files

  // How it is ordered. What is written is the same.
  bool usePrefixKeys = true;  // look at the prefix words of the records
  bool heap = false;          // by a heap, which knows no common prefixes
  bool walkOnly = false;      // by walks of the list, whatever is faster
  Processor processor = Processor::kBest;

  // The input strings, if they were loaded before, to be shared, and what was
  // found out about them.
  std::shared_ptr<const Collection> strings;
  std::shared_ptr<const Stretches> stretches;

  // The range of the merged order that is merged; null: all of it. It is one of
  // those that cutRanges (palvor/range/ranges.h) makes of the same arrays.
  std::shared_ptr<const MergeRange> range;
};

// Of the inputs, in characters.
struct InputSummary {
  double total;
  int longest;
  int inputs;
  int streams;
};

struct BufferSummary {
  int records;  // of each stream's buffer
  int output;   // nodes, or records
};

struct MergeReport {
  int64_t suffixes = 0;
  int trees = 0;
  Cost cost;
  LcpStatistics lcps;  // of the trees
  int64_t memory = 0;  // bytes asked for (palvor/io/memory.h)
  IoTime io;
  int64_t lcpTime = 0;  // milliseconds that obtaining common prefixes took
};

// What a merge tells while it goes on, in this order. Nothing needs to be done.
class MergeObserver {
 public:
  virtual ~MergeObserver() = default;
  virtual void inputsKnown(const InputSummary&) {}
  // The streams' buffers hold no record: nothing will be merged.
  virtual void buffersTooSmall() {}
  virtual void ready(const BufferSummary&) {}
  virtual void flushed(const ArrayFlush&) {}
  virtual void flushed(const TreeFlush&) {}
  virtual void merged(const MergeReport&) {}
};

// Merges into files.
MergeReport merge(const MergeOptions& options, MergeObserver& observer);

// Merges into a sink, such as palvor/sink/batch_sink.h. Writes no file.
MergeReport merge(const MergeOptions& options, Sink& sink,
                  MergeObserver& observer);

// Loads the strings that `options` names, for merges to share.
std::shared_ptr<const Collection> loadStrings(const MergeOptions& options);

// Finds out which strings are like others, as a merge with these options does,
// for merges to share. Null if such a merge does without.
std::shared_ptr<const Stretches> findStretches(const MergeOptions& options,
                                               const Collection& strings);

// The suffix arrays that a merge with these options reads. Fails as a merge
// does if the lengths files cannot be read.
StreamFiles streamFilesOf(const MergeOptions& options);

}  // namespace palvor

#endif  // PALVOR_MERGE_H_
