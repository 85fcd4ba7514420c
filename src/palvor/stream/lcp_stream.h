// An LCP stream: the LCP entries of a suffix stream, computed elsewhere, read
// alongside it from its .stlcp file (palvor/format/lcp_entry.h), one entry for
// each record of the suffix stream. The file is opened and closed for each
// block.

#ifndef PALVOR_STREAM_LCP_STREAM_H_
#define PALVOR_STREAM_LCP_STREAM_H_

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "palvor/format/lcp_entry.h"
#include "palvor/io/data_paths.h"
#include "palvor/io/files.h"
#include "palvor/io/memory.h"
#include "palvor/stream/suffix_stream.h"

namespace palvor {

class LcpStream {
 public:
  static constexpr int kBlockEntries = 16384;

  // A stream that reads the file at `path`, from entry `first` on, into a
  // buffer of kBlockEntries entries. Nothing is read yet. The buffer and `time`
  // must outlive it.
  LcpStream(std::string path, int64_t first, LcpEntry* buffer, IoTime& time)
      : time_(&time),
        path_(std::move(path)),
        buffer_(buffer),
        next_(buffer + kBlockEntries),
        read_(static_cast<uint32_t>(first)) {}

  // The next entry. The first is taken together with the first record of the
  // suffix stream, entry m with record m, after that record; entry 0 describes
  // no pair, and its value means nothing. A file that cannot be opened or read,
  // that ends before the suffix stream does, or whose entry (but entry 0) has
  // bit 31 set and so holds no length below 2^30 bits, fails.
  LcpEntry take(const SuffixStream& suffixes) {
    if (isUsedUp()) refill();
    const LcpEntry entry = *next_++;
    if ((entry >> 31) != 0) refuseEntry(suffixes);
    return entry;
  }

  // Whether `take` reads a block.
  bool isUsedUp() const { return next_ == buffer_ + kBlockEntries; }

  // Takes the next entry if it is at hand and is this one, which must be a
  // valid entry. Otherwise nothing is taken, and the answer is false.
  bool takeExpected(LcpEntry entry) {
    if (isUsedUp() || *next_ != entry) return false;
    next_++;
    return true;
  }

 private:
  void refill();
  void refuseEntry(const SuffixStream& suffixes) const;

  IoTime* time_;
  std::string path_;
  LcpEntry* buffer_;
  const LcpEntry* next_;
  uint32_t read_;  // number of the entry to be read next
};

// The LCP streams of a merge; none unless common prefixes are read.
struct LcpStreams {
  LcpStreams() = default;
  // Of so many streams, or of their slices if there are any. Counts the buffers
  // and 20 bytes for each stream.
  LcpStreams(const DataPaths& paths, int count, std::span<const Slice> slices,
             MemoryCount& memory, IoTime& time);

  bool areRead() const { return !streams.empty(); }
  LcpStream& operator[](int k) { return streams[static_cast<size_t>(k)]; }

  Block<LcpEntry> buffers;
  std::vector<LcpStream> streams;
};

}  // namespace palvor

#endif  // PALVOR_STREAM_LCP_STREAM_H_
