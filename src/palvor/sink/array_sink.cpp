#include "palvor/sink/array_sink.h"

#include <utility>

#include "palvor/error.h"
#include "palvor/io/clocks.h"

namespace palvor {

ArraySink::ArraySink(const DataPaths& paths, int capacity, bool lcps,
                     MemoryCount& memory, IoTime& time, Report report)
    : capacity_(capacity),
      suffixes_(Block<Suffix>::orNull(capacity)),
      suffixFile_(paths.output + ".stpsa", time),
      entryFile_(paths.output + ".stlcp", time),
      report_(std::move(report)) {
  memory.add(Block<Suffix>::bytesOf(capacity));
  if (lcps) {
    entries_ = Block<LcpEntry>::orNull(capacity);
    memory.add(Block<LcpEntry>::bytesOf(capacity));
  }
  if (suffixes_.data() == nullptr || (lcps && entries_.data() == nullptr)) {
    fail("couldn't allocate %d Suffixes for suffBuff", capacity);
  }
}

void ArraySink::begin(const MergeState&) {
  lastFlush_ = processorTime().milliseconds;
}

SinkRoom ArraySink::room() {
  if (filled_ == capacity_) flush();
  LcpEntry* const entries = entries_.data();
  return {suffixes_.data() + filled_,
          entries != nullptr ? entries + filled_ : nullptr,
          capacity_ - filled_};
}

void ArraySink::flush() {
  const bool lcps = entries_.data() != nullptr;
  const int64_t now = processorTime().milliseconds;
  const int64_t previous = std::exchange(lastFlush_, now);
  if (!suffixFile_.isOpen() && !suffixFile_.create()) {
    fail(suffixFile_.blame(), "cannot open suffix array file for writing");
  }
  if (lcps && !entryFile_.isOpen() && !entryFile_.create()) {
    fail(entryFile_.blame(), "cannot open LCP array file for writing");
  }
  const int64_t suffixBytes = Block<Suffix>::bytesOf(filled_);
  if (suffixFile_.write(suffixes_.data(), suffixBytes) != suffixBytes) {
    fail(suffixFile_.blame(), "not all output Suffixes were written");
  }
  const int64_t entryBytes = Block<LcpEntry>::bytesOf(filled_);
  if (lcps && entryFile_.write(entries_.data(), entryBytes) != entryBytes) {
    fail(entryFile_.blame(), "not all output LCPs were written");
  }
  report_({flushes_++, filled_, now - previous});
  filled_ = 0;
}

void ArraySink::finish() {
  flush();
  if (!suffixFile_.close()) {
    fail(suffixFile_.blame(), "not all output Suffixes were written");
  }
  if (entries_.data() != nullptr && !entryFile_.close()) {
    fail(entryFile_.blame(), "not all output LCPs were written");
  }
}

}  // namespace palvor
