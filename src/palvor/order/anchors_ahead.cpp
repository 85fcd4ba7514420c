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
  const auto most = static_cast<size_t>(most_);
  records_.resize(count * most);
  streamsAhead_.resize(count);
  for (size_t k = 0; k < count; k++) {
    streamsAhead_[k].records = records_.data() + k * most;
  }
}

// Asks for the blocks of records.
void AnchorsAhead::ask(Batch& batch, const Suffix* first, int64_t count) const {
  batch.count = static_cast<int>(std::max<int64_t>(count, 0));
  for (int r = 0; r < batch.count; r++) {
    batch.places[r] = placeOf(first[r]);
    stretches_.prefetchBlock(batch.places[r]);
  }
}

// Asks for the stretches of records whose blocks were asked for.
void AnchorsAhead::askStretches(Batch& batch) const {
  for (int r = 0; r < batch.count; r++) {
    batch.stretches[r] = stretches_.prefetchStretch(batch.places[r]);
  }
}

// Looks up the records from `first` on, whose stretches were asked for. False
// if they are not those any more: the buffer was read anew.
bool AnchorsAhead::take(Ahead& ahead, const Suffix* first,
                        const Batch& batch) const {
  ahead.first = first;
  ahead.count = batch.count;
  ahead.used = 1;
  bool areThose = true;
  for (int r = 0; r < batch.count; r++) {
    areThose &= batch.places[r] == placeOf(first[r]);
    const Anchor anchor =
        stretches_.anchorFrom(batch.stretches[r], batch.places[r]);
    stretches_.prefetchCommonBits(anchor.key);
    ahead.records[r] = {identityOf(first[r]), anchor.key, anchor.position};
  }
  return areThose;
}

// Looks up a record, and more of those behind it than the last time if half of
// these were asked for, and this one soon after them; else fewer.
Anchor AnchorsAhead::lookUp(int k, Ahead& ahead, const Suffix& record) {
  const Suffix* const tested = streams_[k].testedEnd();
  const Suffix* const behind = ahead.first + ahead.count;
  const auto passed = static_cast<uint64_t>(&record - behind);
  const bool areDense = 2 * ahead.used >= ahead.count;
  Batch& asked = ahead.batches[ahead.next];
  Batch& last = ahead.batches[ahead.next ^ 1];
  if (areDense && passed < static_cast<uint64_t>(asked.count) &&
      asked.count <= tested - behind && take(ahead, behind, asked)) {
    askStretches(last);
    const Suffix* const from = behind + asked.count + last.count;
    ask(asked, from, std::min<int64_t>(most_, tested - from));
    ahead.next ^= 1;
    return {ahead.records[passed].position, ahead.records[passed].key};
  }

  const bool isSoon = areDense && passed <= static_cast<uint64_t>(ahead.count);
  ahead.wanted = isSoon ? std::min(2 * ahead.wanted, most_)
                        : std::max(ahead.wanted / 2, 1);
  const int64_t count = std::max<int64_t>(tested - &record, 1);
  ask(asked, &record, std::min<int64_t>(ahead.wanted, count));
  askStretches(asked);
  take(ahead, &record, asked);
  asked.count = last.count = 0;
  if (ahead.wanted == most_) {
    const Suffix* const from = &record + ahead.count;
    ask(asked, from, std::min<int64_t>(most_, tested - from));
    askStretches(asked);
    const Suffix* const behindThese = from + asked.count;
    ask(last, behindThese, std::min<int64_t>(most_, tested - behindThese));
  }
  return {ahead.records[0].position, ahead.records[0].key};
}

}  // namespace palvor
