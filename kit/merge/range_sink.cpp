#include "kit/merge/range_sink.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace kit {

RangeSink::RangeSink(const ArrayFiles& files, const Part& part,
                     RangeBuffers& buffers,
                     std::function<void(uint64_t)> advance)
    : files_(files),
      part_(part),
      buffers_(buffers),
      advance_(std::move(advance)) {}

palvor::SinkRoom RangeSink::room() {
  if (filled_ == buffers_.capacity) flush();
  return {buffers_.suffixes.data() + filled_, buffers_.entries.data() + filled_,
          buffers_.capacity - filled_};
}

void RangeSink::flush() {
  if (filled_ == 0) return;
  if (written_ == 0) buffers_.entries.data()[0] = part_.firstEntry;
  const auto count = static_cast<size_t>(filled_);
  const auto at = static_cast<uint64_t>(part_.first + written_);
  if (written_ + filled_ > part_.count) {
    throw std::runtime_error(
        fmt::format("more than the {} suffixes that a range should have: the "
                    "suffix arrays have changed",
                    part_.count));
  }
  files_.suffixes.writeAt(sizeof(Suffix) * at, buffers_.suffixes.data(),
                          sizeof(Suffix) * count);
  files_.entries.writeAt(sizeof(LcpEntry) * at, buffers_.entries.data(),
                         sizeof(LcpEntry) * count);
  written_ += filled_;
  filled_ = 0;
  advance_(count);
}

void RangeSink::finish() {
  flush();
  if (written_ != part_.count) {
    throw std::runtime_error(fmt::format(
        "{} suffixes merged of the {} that a range should have: the suffix "
        "arrays have changed",
        written_, part_.count));
  }
}

}  // namespace kit
