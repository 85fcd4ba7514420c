// How much work equal beginnings of suffixes may cost before a text counts as
// too repetitive for a sorter that compares.

#ifndef PALVOR_KIT_PREPARE_REPEAT_BUDGET_H_
#define PALVOR_KIT_PREPARE_REPEAT_BUDGET_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>

namespace kit {

// Thrown where the budget is spent; not an error, a reason to sort otherwise.
class TooRepetitive : public std::exception {
 public:
  const char* what() const noexcept override {
    return "the text repeats itself too much";
  }
};

// Of one text; all threads that sort it share it.
class RepeatBudget {
 public:
  explicit RepeatBudget(size_t characters)
      : reserve_(kLeast + characters / 2) {}

  // Suffixes that are in order now: each earns the right to some more steps.
  void earn(size_t suffixes) {
    earned_.fetch_add(kStepsPerSuffix * suffixes, std::memory_order_relaxed);
  }

  // A step is the look at one word of two suffixes. Throws TooRepetitive.
  void spend(size_t steps) {
    const uint64_t spent =
        spent_.fetch_add(steps, std::memory_order_relaxed) + steps;
    if (spent > reserve_ + earned_.load(std::memory_order_relaxed)) {
      throw TooRepetitive();
    }
  }

 private:
  static constexpr uint64_t kStepsPerSuffix = 8;
  static constexpr uint64_t kLeast = 1 << 16;

  uint64_t reserve_;
  std::atomic<uint64_t> earned_ = 0;
  std::atomic<uint64_t> spent_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_REPEAT_BUDGET_H_
