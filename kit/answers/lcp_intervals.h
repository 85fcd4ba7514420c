// The LCP intervals of a merged order, from the inside out: for each string
// that several suffixes begin with and that cannot be longer, the suffixes that
// have it stand side by side (Abouelhoda, Kurtz and Ohlebusch, Journal of
// Discrete Algorithms 2004).

#ifndef PALVOR_KIT_ANSWERS_LCP_INTERVALS_H_
#define PALVOR_KIT_ANSWERS_LCP_INTERVALS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kit {

// Keeps the depths of the intervals that are open, and tells a visitor, who
// keeps what it wants to know of each in a slot of its own, what happens:
//
//   open(slot)                  an interval without suffixes
//   addSuffix(slot, depth)      the last suffix is in it, and in none inside it
//   close(slot, outer, depth)   it is complete; `outer` is the depth of the one
//                               that it is in
//   merge(slot, depth)          the interval of slot + 1, which was closed, is
//                               one of those in this one, whose depth is given
//
// A slot is a number from 0, that of the whole order, on; an inner interval's
// is one more than that of the open interval that it is in. One that is closed
// may live on in the same slot as the first part of the one around it. Depths
// are in characters; that of the whole order is 0.
template <typename Visitor>
class LcpIntervals {
 public:
  explicit LcpIntervals(Visitor& visitor) : visitor_(visitor) {
    visitor_.open(0);
  }

  // Goes on to a suffix that shares so many characters with the last one. To be
  // called before each suffix but the first.
  void step(uint32_t common) {
    if (common > depths_.back()) {
      depths_.push_back(common);
      visitor_.open(top());
      visitor_.addSuffix(top(), common);
      return;
    }
    visitor_.addSuffix(top(), depths_.back());
    while (depths_.back() > common) {
      const uint32_t around = depths_[top() - 1];
      if (around < common) {
        visitor_.close(top(), common, depths_.back());
        depths_.back() = common;
        return;
      }
      visitor_.close(top(), around, depths_.back());
      depths_.pop_back();
      visitor_.merge(top(), around);
    }
  }

  // To be called once after the last suffix, if there was any: closes all.
  void finish() {
    step(0);
    visitor_.close(0, 0, 0);
  }

 private:
  size_t top() const { return depths_.size() - 1; }

  Visitor& visitor_;
  std::vector<uint32_t> depths_ = {0};
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_LCP_INTERVALS_H_
