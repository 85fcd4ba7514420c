// A buffered suffix stream: one input suffix array, or a slice of it, read in
// blocks through a buffer of its own and handed out record by record.
//
// A block is read with one call into the whole buffer, through a descriptor
// that is kept, or by opening the file, reading at the stream's own offset and
// closing it again. Every record is tested before it is handed out: none names
// an input or a position that is not there.

#ifndef PALVOR_STREAM_SUFFIX_STREAM_H_
#define PALVOR_STREAM_SUFFIX_STREAM_H_

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "palvor/format/suffix.h"
#include "palvor/io/files.h"
#include "palvor/io/memory.h"
#include "palvor/stream/slice.h"
#include "palvor/stream/stream_files.h"
#include "palvor/text/collection.h"

namespace palvor {

class SuffixStream {
 public:
  // A stream that reads a slice of the array at `path` into a buffer of
  // `capacity` records. In front of the buffer there must be room for one more
  // record.
  //   origin  added to the word `input` of every record: 4 for each input that
  //           lies before those that the array numbers from 0 on
  // Nothing is read yet. The collection, the buffer and `time` must outlive it.
  SuffixStream(const Collection& text, std::string path, const Slice& slice,
               Suffix* buffer, int capacity, uint32_t origin, IoTime& time)
      : text_(&text),
        time_(&time),
        path_(std::move(path)),
        slice_(slice),
        buffer_(buffer),
        capacity_(capacity),
        origin_(origin),
        read_(static_cast<uint32_t>(slice.first)),
        current_(buffer - 1),
        tested_(buffer),
        end_(buffer) {}

  // Keeps the file open from now on.
  void keepOpen();

  // Takes the next record, which is then the current one; false, as often as it
  // is asked, when the stream has ended. A file that cannot be opened or read,
  // that ends before the slice does, unless that is the whole array, and a
  // record that names an input or a position that is not there, fail; bytes
  // after the last whole record are not looked at.
  bool advance() {
    if (current_ + 1 < tested_) {
      current_++;
      return true;
    }
    return advanceAnew();
  }

  // The record taken last. It and the one before it stay where they are until
  // the next call of `advance`.
  const Suffix* current() const { return current_; }
  const Suffix* previous() const { return current_ - 1; }

  // The records from `current` to here (but for the end) are tested.
  const Suffix* testedEnd() const { return tested_; }
  // The end of the records that were read.
  const Suffix* readEnd() const { return end_; }

  // Takes records that are tested up to a later one.
  void advanceTo(const Suffix* record) {
    current_ = const_cast<Suffix*>(record);
  }

  // Whether `advance` has found the stream's end.
  bool hasEnded() const { return exhausted_; }

  // Number of the current record in its file; one below the slice's before the
  // first. Of the first record that is not there, once the stream has ended.
  int64_t recordNumber() const { return number(current_); }

  // Records read from the file so far.
  uint32_t recordsRead() const {
    return read_ - static_cast<uint32_t>(slice_.first);
  }

 private:
  bool advanceAnew();
  bool refill();
  int64_t readBlock();
  void expectEnd(const File& file, int64_t end) const;
  bool isWhole() const { return slice_.count == kWholeArray.count; }
  void testRecords();
  [[noreturn]] void refuseRecord(const Suffix* record, uint32_t input) const;
  int64_t number(const Suffix* record) const {
    return static_cast<int64_t>(read_) - (end_ - record);
  }

  const Collection* text_;
  IoTime* time_;
  std::string path_;
  Slice slice_;
  File file_;  // if it is kept open
  Suffix* buffer_;
  int capacity_;  // records
  uint32_t origin_;
  uint32_t read_;           // number of the record to be read next
  bool ended_ = false;      // the slice's end was reached
  bool exhausted_ = false;  // and all before it was taken
  Suffix* current_;         // the record taken last
  Suffix* tested_;          // the records before it are tested
  Suffix* end_;             // the records before it are read
};

// The streams of a merge.
struct SuffixStreams {
  // Sets up one stream for each suffix array, with a buffer of `capacity`
  // records each.
  //   slices  of each array; empty if all are read whole
  // Counts the buffers, and for each stream an address and four numbers, with
  // origins five.
  SuffixStreams(const Collection& text, const StreamFiles& files, int capacity,
                std::span<const Slice> slices, MemoryCount& memory,
                IoTime& time);

  int count() const { return static_cast<int>(streams.size()); }
  SuffixStream& operator[](int k) { return streams[static_cast<size_t>(k)]; }
  const SuffixStream& operator[](int k) const {
    return streams[static_cast<size_t>(k)];
  }

  Block<Suffix> buffers;
  std::vector<SuffixStream> streams;
};

}  // namespace palvor

#endif  // PALVOR_STREAM_SUFFIX_STREAM_H_
