#include "palvor/stream/lcp_stream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "palvor/error.h"

namespace palvor {
namespace {

// Stands behind the last entry of a file. Any word with bit 31 set is no valid
// entry, so one test finds both the end and a length that is too large.
constexpr LcpEntry kNoEntry = 0xFFFFFFFF;

}  // namespace

void LcpStream::refill() {
  File file = File::openInput(path_);
  if (!file.isOpen()) {
    fail(blameSystem(path_), "can't open LCP file %s", path_.c_str());
  }
  constexpr int64_t kEntrySize = sizeof(LcpEntry);
  const int64_t got = file.readAt(buffer_, kEntrySize * kBlockEntries,
                                  kEntrySize * read_, *time_);
  if (got < 0) {
    fail("can't read LCP file %s: %s", path_.c_str(), std::strerror(errno));
  }
  const int64_t count = got / kEntrySize;
  std::fill(buffer_ + count, buffer_ + kBlockEntries, kNoEntry);
  if (read_ == 0 && count > 0) buffer_[0] &= ~(1U << 31);
  next_ = buffer_;
  read_ += static_cast<uint32_t>(count);
}

// Fails because of a word with bit 31 set, unless it only stands for the
// missing entry 0 of a stream without records.
void LcpStream::refuseEntry(const SuffixStream& suffixes) const {
  if (suffixes.recordsRead() == 0) return;
  const auto record = static_cast<long long>(suffixes.recordNumber());
  if (record >= read_) {
    fail(
        "LCP file %s is shorter than its Suffix file: no entry for record %lld",
        path_.c_str(), record);
  }
  fail(
      "entry %lld of LCP file %s: the common prefix does not fit, it has 2^30 "
      "bits or more",
      record, path_.c_str());
}

LcpStreams::LcpStreams(const DataPaths& paths, int count,
                       std::span<const Slice> slices, MemoryCount& memory,
                       IoTime& time)
    : buffers(int64_t{count} * LcpStream::kBlockEntries,
              "the LCP streams' buffers") {
  memory.add(int64_t{count} * 20);
  memory.add(
      Block<LcpEntry>::bytesOf(int64_t{count} * LcpStream::kBlockEntries));
  streams.reserve(static_cast<size_t>(count));
  for (int j = 0; j < count; j++) {
    streams.emplace_back(
        paths.lcpFile(j),
        slices.empty() ? 0 : slices[static_cast<size_t>(j)].first,
        buffers.data() + int64_t{j} * LcpStream::kBlockEntries, time);
  }
}

}  // namespace palvor
