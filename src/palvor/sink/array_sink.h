// The array output: the merged suffix array, and if wanted its LCP array.
//
// The merge fills two buffers in step; full ones are written to the files
// <output>.stpsa and <output>.stlcp, which the first flush creates and the last
// one closes. The layouts are those of the inputs (palvor/format/suffix.h,
// palvor/format/lcp_entry.h): entry m of the LCP array describes merged records
// m - 1 and m.

#ifndef PALVOR_SINK_ARRAY_SINK_H_
#define PALVOR_SINK_ARRAY_SINK_H_

#include <cstdint>
#include <functional>

#include "palvor/io/data_paths.h"
#include "palvor/io/files.h"
#include "palvor/io/memory.h"
#include "palvor/io/record_writer.h"
#include "palvor/sink/sink.h"

namespace palvor {

// A flush that was done.
struct ArrayFlush {
  int number;            // of the flushes before it
  int records;           // written
  int64_t milliseconds;  // of processor time, since the flush before
};

class ArraySink final : public Sink {
 public:
  using Report = std::function<void(const ArrayFlush&)>;

  // Has buffers of `capacity` records, with LCP entries if `lcps`; fails if
  // they can't be had. `report` is told each flush. `time` must outlive it.
  ArraySink(const DataPaths& paths, int capacity, bool lcps,
            MemoryCount& memory, IoTime& time, Report report);

  void begin(const MergeState& state) override;
  SinkRoom room() override;
  void put(int count) override { filled_ += count; }
  // Writes what is left, and creates the files even if there is nothing.
  void finish() override;

 private:
  void flush();

  int capacity_;  // records
  Block<Suffix> suffixes_;
  Block<LcpEntry> entries_;  // null unless they are wanted
  RecordWriter suffixFile_;
  RecordWriter entryFile_;
  Report report_;
  int filled_ = 0;         // records in use in both buffers
  int flushes_ = 0;        // done so far
  int64_t lastFlush_ = 0;  // processor time in milliseconds
};

}  // namespace palvor

#endif  // PALVOR_SINK_ARRAY_SINK_H_
