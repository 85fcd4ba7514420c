// Where the merged suffixes of a range go: to their places in the files of the
// whole array.

#ifndef PALVOR_KIT_MERGE_RANGE_SINK_H_
#define PALVOR_KIT_MERGE_RANGE_SINK_H_

#include <cstddef>
#include <cstdint>
#include <functional>

#include "kit/huge_buffer.h"
#include "kit/merge/array_output.h"
#include "kit/records.h"
#include "palvor/sink/sink.h"

namespace kit {

// A worker's buffers, used for one range after the other.
struct RangeBuffers {
  explicit RangeBuffers(int records) : capacity(records) {
    suffixes.reserve(static_cast<size_t>(records));
    entries.reserve(static_cast<size_t>(records));
  }

  static constexpr int64_t kRecordBytes = sizeof(Suffix) + sizeof(LcpEntry);

  int capacity;
  HugeBuffer<Suffix> suffixes;
  HugeBuffer<LcpEntry> entries;
};

class RangeSink final : public palvor::Sink {
 public:
  struct Part {
    int64_t first;        // record of the files that the range begins with
    int64_t count;        // of records
    LcpEntry firstEntry;  // entry of that record
  };

  // Writes a part of the files. `advance` is told the number of records
  // written, now and then; what it throws ends the merge. All must outlive the
  // sink.
  RangeSink(const ArrayFiles& files, const Part& part, RangeBuffers& buffers,
            std::function<void(uint64_t)> advance);

  void begin(const palvor::MergeState&) override {}
  palvor::SinkRoom room() override;
  void put(int count) override { filled_ += count; }
  bool needsEntry() const override { return true; }
  // Throws std::runtime_error if other than the expected records came.
  void finish() override;

 private:
  void flush();

  const ArrayFiles files_;
  const Part part_;
  RangeBuffers& buffers_;
  std::function<void(uint64_t)> advance_;
  int filled_ = 0;       // records in the buffers
  int64_t written_ = 0;  // records
};

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_RANGE_SINK_H_
