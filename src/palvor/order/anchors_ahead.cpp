#include "palvor/order/anchors_ahead.h"

#include <algorithm>
#include <span>

namespace palvor {
namespace {

// Of more streams the records would push each other out of the caches.
constexpr int kFewStreams = 64;
constexpr int kMostOfMany = 16;

}  // namespace

AnchorsAhead::AnchorsAhead(const Collection& text, const Stretches& stretches,
                           const SuffixStreams& streams)
    : text_(text), stretches_(stretches), streams_(streams) {
  if (stretches.empty()) return;
  if (streams.count() > kFewStreams) most_ = kMostOfMany;
  const auto count = static_cast<size_t>(streams.count());
  const auto most = static_cast<size_t>(most_);
  records_.resize(count * most);
  streamsAhead_.resize(count);
  for (size_t k = 0; k < count; k++) {
    streamsAhead_[k].records = records_.data() + k * most;
  }
}

// Looks up a record, and more of those behind it than the last time if half of
// these were asked for, and this one soon after them; else fewer.
Anchor AnchorsAhead::lookUp(int k, Ahead& ahead, const Suffix& record) {
  const auto passed =
      static_cast<uint64_t>(&record - (ahead.first + ahead.count));
  const bool areDense = 2 * ahead.used >= ahead.count &&
                        passed <= static_cast<uint64_t>(ahead.count);
  ahead.wanted = areDense ? std::min(2 * ahead.wanted, most_)
                          : std::max(ahead.wanted / 2, 1);
  const int64_t tested =
      std::max<int64_t>(streams_[k].testedEnd() - &record, 1);
  ahead.first = &record;
  ahead.count = static_cast<int>(std::min<int64_t>(ahead.wanted, tested));
  ahead.used = 1;

  uint32_t places[kMost];
  uint32_t positions[kMost];
  uint64_t keys[kMost];
  for (int r = 0; r < ahead.count; r++) {
    places[r] = axisPositionOf(ahead.first[r]);
  }
  stretches_.anchorsAt(std::span(places, static_cast<size_t>(ahead.count)),
                       positions, keys);
  for (int r = 0; r < ahead.count; r++) {
    ahead.records[r] = {identityOf(ahead.first[r]), keys[r], positions[r]};
    stretches_.prefetchCommonBits(keys[r]);
  }
  // Early for the next time.
  const int64_t next = std::min(int64_t{2} * ahead.count, tested);
  for (int64_t r = ahead.count; r < next; r++) askFirst(ahead.first[r]);
  return {positions[0], keys[0]};
}

}  // namespace palvor
