#include "palvor/stream/suffix_stream.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "palvor/error.h"

namespace palvor {
namespace {

constexpr int64_t kRecordSize = sizeof(Suffix);

// Records are tested this many at a time: few enough to be still at hand when
// they are taken.
constexpr int kTestedAtOnce = 512;

// In front of each buffer, records: one is needed, a cache line is kept.
constexpr int64_t kRoomBefore = 4;

}  // namespace

void SuffixStream::keepOpen() {
  file_ = File::openInput(path_);
  if (!file_.isOpen()) {
    fail(blameSystem(path_), "can't open Suffix file %s", path_.c_str());
  }
}

// A read that fell short is only right at the file's end: anything else would
// silently lose the rest of the stream.
void SuffixStream::expectEnd(const File& file, int64_t end) const {
  File::Status status = {};
  if (!file.examine(status)) {
    fail("can't examine Suffix file %s: %s", path_.c_str(),
         std::strerror(errno));
  }
  if (status.regular && status.size != end) {
    fail("reading error in Suffix file %s: got %lld of %lld bytes",
         path_.c_str(), static_cast<long long>(end),
         static_cast<long long>(status.size));
  }
}

// Reads the next block into the buffer; returns the bytes read.
int64_t SuffixStream::readBlock() {
  const int64_t rest = slice_.first + slice_.count - read_;
  const int64_t wanted = kRecordSize * std::min<int64_t>(capacity_, rest);
  if (wanted == 0) return 0;
  const int64_t offset = kRecordSize * read_;
  File opened;
  if (!file_.isOpen()) {
    opened = File::openInput(path_);
    if (!opened.isOpen()) {
      fail(blameSystem(path_), "can't open Suffix file %s", path_.c_str());
    }
  }
  File& file = file_.isOpen() ? file_ : opened;
  const int64_t got = file.readAt(buffer_, wanted, offset, *time_);
  if (got < 0) {
    fail("can't read Suffix file %s: %s", path_.c_str(), std::strerror(errno));
  }
  if (got < wanted) {
    expectEnd(file, offset + got);
    if (!isWhole()) {
      fail("Suffix file %s ends at record %lld, before its slice does",
           path_.c_str(), static_cast<long long>((offset + got) / kRecordSize));
    }
  }
  return got;
}

// Reads and counts the next block. False at the slice's end.
bool SuffixStream::refill() {
  if (ended_) return false;
  const Suffix last = *current_;
  const int64_t count = readBlock() / kRecordSize;
  if (count > UINT_MAX - static_cast<int64_t>(read_)) {
    fail("Suffix file %s holds more than %u records", path_.c_str(), UINT_MAX);
  }
  ended_ = count < capacity_ || count == 0;
  if (count == 0) return false;
  buffer_[-1] = last;
  current_ = buffer_ - 1;
  tested_ = buffer_;
  end_ = buffer_ + count;
  read_ += static_cast<uint32_t>(count);
  return true;
}

void SuffixStream::refuseRecord(const Suffix* record, uint32_t input) const {
  const auto place = static_cast<long long>(number(record));
  if (input >= text_->inputs()) {
    fail("record %lld of Suffix file %s: there is no input %u, only %d inputs",
         place, path_.c_str(), input, static_cast<int>(text_->inputs()));
  }
  fail(
      "record %lld of Suffix file %s: position %u is not inside input %u of %u "
      "characters",
      place, path_.c_str(), record->pos, input, (*text_)[input].bits / 2);
}

// Tests the next records and moves their input numbers to the stream's origin.
void SuffixStream::testRecords() {
  const uint64_t limit = static_cast<uint64_t>(text_->inputs()) << 2;
  const PackedString* const strings = text_->data();
  const uint64_t origin = origin_;
  Suffix* const end = std::min(end_, tested_ + kTestedAtOnce);
  for (Suffix* record = tested_; record < end; record++) {
    const uint64_t input = record->input + origin;
    if (input >= limit || record->pos >= strings[input >> 2].bits / 2) {
      refuseRecord(record, static_cast<uint32_t>(input >> 2));
    }
    record->input = static_cast<uint32_t>(input);
  }
  tested_ = end;
}

bool SuffixStream::advanceAnew() {
  if (current_ + 1 >= end_ && !refill()) {
    exhausted_ = true;
    return false;
  }
  if (current_ + 1 >= tested_) testRecords();
  current_++;
  return true;
}

SuffixStreams::SuffixStreams(const Collection& text, const StreamFiles& files,
                             int capacity, std::span<const Slice> slices,
                             MemoryCount& memory, IoTime& time) {
  const int count = files.count();
  memory.add(int64_t{count} * (files.hasOrigins ? 28 : 24));
  memory.add(count * Block<Suffix>::bytesOf(capacity));
  const auto sliceOf = [&](size_t k) {
    return slices.empty() ? kWholeArray : slices[k];
  };
  // One block for all: its pages are had once, and huge where they can be. So
  // buffers that their files can't fill are made no larger than these.
  std::vector<int64_t> begins;
  begins.reserve(static_cast<size_t>(count) + 1);
  int64_t records = 0;
  for (int k = 0; k < count; k++) {
    begins.push_back(records += kRoomBefore);
    const int64_t size = slices.empty() ? fileSize(files.path(k)) : -1;
    // With room for one more, the first read meets the end of the file.
    const int64_t most = !slices.empty() ? sliceOf(static_cast<size_t>(k)).count
                         : size < 0      ? capacity
                                         : size / kRecordSize + 1;
    // To a cache line, so that buffers begin with one.
    records += (std::min<int64_t>(capacity, most) + 3) & ~int64_t{3};
  }
  begins.push_back(records + kRoomBefore);
  buffers = Block<Suffix>(records, "the streams' buffers");
  streams.reserve(static_cast<size_t>(count));
  for (size_t k = 0; k < begins.size() - 1; k++) {
    const int64_t room = begins[k + 1] - kRoomBefore - begins[k];
    streams.emplace_back(text, files.path(static_cast<int>(k)), sliceOf(k),
                         buffers.data() + begins[k],
                         static_cast<int>(std::min<int64_t>(capacity, room)),
                         files.origin(static_cast<int>(k)), time);
  }
}

}  // namespace palvor
