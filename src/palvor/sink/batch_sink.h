// A sink that hands batches of merged suffixes to a function.

#ifndef PALVOR_SINK_BATCH_SINK_H_
#define PALVOR_SINK_BATCH_SINK_H_

#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "palvor/sink/sink.h"

namespace palvor {

class BatchSink final : public Sink {
 public:
  // Takes the next suffixes of the merged order and their LCP entries, of which
  // the very first describes no pair. Only valid during the call.
  using Take = std::function<void(std::span<const Suffix> suffixes,
                                  std::span<const LcpEntry> entries)>;

  explicit BatchSink(Take take, int batch = 4096)
      : take_(std::move(take)),
        suffixes_(static_cast<size_t>(batch)),
        entries_(static_cast<size_t>(batch)) {}

  void begin(const MergeState&) override {}
  SinkRoom room() override {
    return {suffixes_.data(), entries_.data(),
            static_cast<int>(suffixes_.size())};
  }
  void put(int count) override {
    begun_ = true;
    const auto n = static_cast<size_t>(count);
    take_({suffixes_.data(), n}, {entries_.data(), n});
  }
  bool needsEntry() const override { return begun_; }
  void finish() override {}

 private:
  Take take_;
  bool begun_ = false;  // a suffix was put in
  std::vector<Suffix> suffixes_;
  std::vector<LcpEntry> entries_;
};

}  // namespace palvor

#endif  // PALVOR_SINK_BATCH_SINK_H_
