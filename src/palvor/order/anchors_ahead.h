// The anchors of streams' records (palvor/text/stretches.h), looked up before
// they are needed: for some records of a stream at once, where most of them are
// asked for.

#ifndef PALVOR_ORDER_ANCHORS_AHEAD_H_
#define PALVOR_ORDER_ANCHORS_AHEAD_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "palvor/format/suffix.h"
#include "palvor/stream/suffix_stream.h"
#include "palvor/text/axis.h"
#include "palvor/text/collection.h"
#include "palvor/text/stretches.h"

namespace palvor {

class AnchorsAhead {
 public:
  // A suffix is anchored behind its first characters, which the suffixes that
  // it is compared with share: those of the prefix words, but for what a
  // comparison behind these may look at again.
  static constexpr uint32_t kSkipped = 16;  // characters
  static constexpr int kSkippedBits = 2 * kSkipped;

  // Suffixes of so many bits have no anchors: their prefix words tell all.
  static constexpr int kShort = 64;

  // All of them must outlive it. `stretches` are those of the strings.
  AnchorsAhead(const Collection& text, const Stretches& stretches,
               const SuffixStreams& streams);

  // Whether no record has an anchor.
  bool areNone() const { return streamsAhead_.empty(); }

  const Stretches& stretches() const { return stretches_; }

  // Bits shared by suffixes of the same anchor, of which the shorter one has
  // `shorter`, and that are equal if their keys are.
  int sharedBits(uint64_t keyA, uint64_t keyB, int shorter) const {
    if (keyA == keyB) return shorter;
    return kSkippedBits + static_cast<int>(stretches_.commonBits(keyA, keyB));
  }

  // Of the bits that anchors say to be shared, so many at least are needed:
  // those before are claimed by records, and not the strings' own.
  static constexpr int kLeastShared = 64;

  // The anchor of a record of stream k, which is tested and stands in its
  // buffer, or did so before it was read anew. Its position is Axis::kNowhere
  // if there is none. There must be anchors.
  Anchor of(int k, const Suffix& record) {
    Ahead& ahead = streamsAhead_[static_cast<size_t>(k)];
    const Batch& known = *ahead.known;
    const auto index = static_cast<uint64_t>(&record - known.first);
    // A buffer is read anew, and the address is another record's then.
    if (index < static_cast<uint64_t>(known.count) &&
        known.identities[index] == identityOf(record)) {
      ahead.used++;
      return {known.positions[index], known.keys[index]};
    }
    return lookUp(k, ahead, record);
  }

 private:
  static constexpr int kMost = 32;  // records of a batch

  // Records of a stream, one behind the other, on their way to their anchors:
  // what each step reads was asked for by the step before.
  struct Batch {
    const Suffix* first = nullptr;
    int count = 0;
    uint64_t identities[kMost];
    // On the axis: at first of the records, in the end of their anchors.
    uint32_t positions[kMost];
    uint32_t stretches[kMost];
    uint64_t keys[kMost];
  };

  // Of a stream: a batch whose anchors are known, and behind it one whose
  // stretches were asked for, and one whose blocks were.
  struct Ahead {
    Batch* known = nullptr;
    Batch* second = nullptr;
    Batch* third = nullptr;
    int used = 0;    // times that one of those known was wanted
    int wanted = 1;  // records of a batch, the next time
  };

  // Where an input's suffixes are on the axis, if they are before a limit.
  struct Room {
    uint32_t start;
    uint32_t limit;
  };

  // Input and position.
  static uint64_t identityOf(const Suffix& record) {
    uint64_t identity;
    std::memcpy(&identity, &record, sizeof identity);
    return identity;
  }

  // Where a record's anchor is looked up, or Axis::kNowhere if it has none.
  uint32_t placeOf(const Suffix& record) const {
    const Room room = rooms_[inputNumber(record)];
    return record.pos < room.limit ? room.start + record.pos : Axis::kNowhere;
  }
  Anchor lookUp(int k, Ahead& ahead, const Suffix& record);
  void begin(Batch& batch, const Suffix* first, const Suffix* end,
             int most) const;
  void askStretches(Batch& batch) const;
  bool finish(Batch& batch) const;

  const Stretches& stretches_;
  const SuffixStreams& streams_;
  int most_ = kMost;
  std::vector<Room> rooms_;  // of inputs
  std::vector<Batch> batches_;
  std::vector<Ahead> streamsAhead_;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_ANCHORS_AHEAD_H_
