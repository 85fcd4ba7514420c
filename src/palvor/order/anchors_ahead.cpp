#include "palvor/order/anchors_ahead.h"

#include <algorithm>

namespace palvor {
namespace {

// Of more streams the records would push each other out of the caches.
constexpr int kFewStreams = 64;
constexpr int kMostOfMany = 16;

}  // namespace

AnchorsAhead::AnchorsAhead(const Collection& text, const Stretches& stretches,
                           const SuffixStreams& streams)
    : stretches_(stretches), streams_(streams) {
  if (stretches.empty()) return;
  constexpr uint32_t kShortest = kShort / 2 + 1;  // characters
  for (uint32_t input = 0; input < text.inputs(); input++) {
    const uint32_t length = text[input].bits / 2;
    const bool anchored = stretches.holds(input) && length >= kShortest;
    rooms_.push_back(anchored ? Room{stretches.axisPosition(input, kSkipped),
                                     length - kShortest + 1}
                              : Room{0, 0});
  }
  if (streams.count() > kFewStreams) most_ = kMostOfMany;
  const auto count = static_cast<size_t>(streams.count());
  batches_.resize(3 * count);
  streamsAhead_.resize(count);
  for (size_t k = 0; k < count; k++) {
    Batch* const batches = batches_.data() + 3 * k;
    streamsAhead_[k] = {batches, batches + 1, batches + 2};
  }
}

// Takes records from `first` on, as many as there are before `end`, and asks
// for their blocks.
void AnchorsAhead::begin(Batch& batch, const Suffix* first, const Suffix* end,
                         int most) const {
  batch.first = first;
  batch.count = static_cast<int>(std::clamp<int64_t>(end - first, 0, most));
  for (int r = 0; r < batch.count; r++) {
    batch.identities[r] = identityOf(first[r]);
    batch.positions[r] = placeOf(first[r]);
    stretches_.prefetchBlock(batch.positions[r]);
  }
}

void AnchorsAhead::askStretches(Batch& batch) const {
  for (int r = 0; r < batch.count; r++) {
    batch.stretches[r] = stretches_.prefetchStretch(batch.positions[r]);
  }
}

// Looks up the anchors. False if the records are not those any more: the buffer
// was read anew.
bool AnchorsAhead::finish(Batch& batch) const {
  uint64_t differing = 0;
  for (int r = 0; r < batch.count; r++) {
    differing |= batch.identities[r] ^ identityOf(batch.first[r]);
    const Anchor anchor =
        stretches_.anchorFrom(batch.stretches[r], batch.positions[r]);
    stretches_.prefetchCommonBits(anchor.key);
    batch.positions[r] = anchor.position;
    batch.keys[r] = anchor.key;
  }
  return differing == 0;
}

// Looks up a record, and more of those behind it than the last time if half of
// these were wanted, and this one soon after them; else fewer.
Anchor AnchorsAhead::lookUp(int k, Ahead& ahead, const Suffix& record) {
  const Suffix* const tested = streams_[k].testedEnd();
  const Batch& known = *ahead.known;
  const auto passed =
      static_cast<uint64_t>(&record - (known.first + known.count));
  const bool areDense = 2 * ahead.used >= known.count;
  Batch& next = *ahead.second;
  ahead.used = 1;
  if (areDense && next.first == known.first + known.count &&
      passed < static_cast<uint64_t>(next.count) &&
      next.first + next.count <= tested && finish(next)) {
    askStretches(*ahead.third);
    begin(*ahead.known, ahead.third->first + ahead.third->count, tested, most_);
    ahead = {&next, ahead.third, ahead.known, ahead.used, ahead.wanted};
    return {next.positions[passed], next.keys[passed]};
  }

  const bool isSoon = areDense && passed <= static_cast<uint64_t>(known.count);
  ahead.wanted = isSoon ? std::min(2 * ahead.wanted, most_)
                        : std::max(ahead.wanted / 2, 1);
  Batch& batch = *ahead.known;
  begin(batch, &record, std::max(tested, &record + 1), ahead.wanted);
  askStretches(batch);
  finish(batch);
  next.count = 0;
  if (ahead.wanted == most_) {
    begin(next, batch.first + batch.count, tested, most_);
    askStretches(next);
    begin(*ahead.third, next.first + next.count, tested, most_);
  }
  return {batch.positions[0], batch.keys[0]};
}

}  // namespace palvor
