// Two suffixes compared step by step along their stretches.

#ifndef PALVOR_TEXT_STRETCH_WALK_H_
#define PALVOR_TEXT_STRETCH_WALK_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "palvor/text/packed_string.h"
#include "palvor/text/stretch.h"
#include "palvor/text/stretch_ranks.h"

namespace palvor {

// What is known of two suffixes.
struct StretchParting {
  uint32_t bits;  // bits that they share: all of them if known, else at least
  bool known;     // whether the order is; if not, `bits` is even
  int order;      // below 0: the first one sorts first; 0: they are equal
};

// A suffix on its way along its stretches.
class WalkingSuffix {
 public:
  // It begins at `position` of `string`, that is at `axisPosition`, in the
  // stretch that is given. Stretches behind that one ascend up to the end mark.
  WalkingSuffix(const PackedString& string, uint32_t position,
                uint32_t axisPosition, const Stretch* stretch,
                const Stretch* endMark)
      : string_(&string),
        position_(position),
        axisPosition_(axisPosition),
        stretch_(stretch),
        endMark_(endMark) {}

  const PackedString& string() const { return *string_; }
  uint32_t position() const { return position_; }
  uint32_t rest() const { return lengthOf(*string_) - position_; }
  const Stretch& stretch() const { return *stretch_; }
  uint32_t axisPosition() const { return axisPosition_; }
  uint32_t anchor() const {
    return stretch_->anchor + (axisPosition_ - stretch_->start);
  }

  // Characters up to where it leaves its anchor's text.
  uint32_t agreed() const { return stretch_->end - axisPosition_; }

  // Characters up to the next stretch.
  uint32_t covered() const { return stretch_[1].start - axisPosition_; }

  void advance(uint32_t characters) {
    position_ += characters;
    axisPosition_ += characters;
    // Mostly the next one, or the one behind it; but an inherited difference
    // can lie far behind many short stretches.
    ptrdiff_t step = 1;
    while (endMark_ - stretch_ > step &&
           stretch_[step].start <= axisPosition_) {
      stretch_ += step;
      step *= 2;
    }
    if (step > 2) {
      const Stretch* const behind =
          stretch_ + std::min(step, endMark_ - stretch_);
      stretch_ = std::upper_bound(stretch_, behind, axisPosition_,
                                  [](uint32_t at, const Stretch& stretch) {
                                    return at < stretch.start;
                                  }) -
                 1;
      return;
    }
    while (stretch_[1].start <= axisPosition_) stretch_++;
  }

 private:
  const PackedString* string_;
  uint32_t position_;
  uint32_t axisPosition_;
  const Stretch* stretch_;
  const Stretch* endMark_;
};

// How far two suffixes are walked: so many stretches, and so many characters
// that are read where anchors differ. What is then unknown stays so.
struct WalkLimits {
  uint32_t stretches = UINT32_MAX;
  uint32_t characters = UINT32_MAX;
};

// Compares two suffixes from where they have come to. What it takes is taken
// off the limits.
StretchParting compareWalking(WalkingSuffix a, WalkingSuffix b,
                              const StretchRanks& ranks, WalkLimits& limits);

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_WALK_H_
