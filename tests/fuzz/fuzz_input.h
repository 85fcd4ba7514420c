// The bytes of one case, taken from front to back.
//
// What the bytes mean stands at the targets (targets.h) and the data folder
// (case_folder.h). Every sequence of bytes means something: bytes that are
// missing are zeros, and a section that is cut short is a short section.

#ifndef PALVOR_TESTS_FUZZ_FUZZ_INPUT_H_
#define PALVOR_TESTS_FUZZ_FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class FuzzInput {
 public:
  // The bytes must outlive this.
  explicit FuzzInput(std::string_view bytes) : bytes_(bytes) {}

  // Of all bytes, those that were taken included.
  size_t size() const { return bytes_.size(); }

  bool empty() const { return next_ == bytes_.size(); }

  // The next byte; 0 at the end.
  uint8_t takeByte() {
    return empty() ? uint8_t{0} : static_cast<uint8_t>(bytes_[next_++]);
  }

  // The next `size` bytes, or what is left of them.
  std::string_view take(size_t size) {
    const std::string_view taken = bytes_.substr(next_, size);
    next_ += taken.size();
    return taken;
  }

  std::string_view takeRest() { return take(std::string_view::npos); }

 private:
  std::string_view bytes_;
  size_t next_ = 0;
};

// True with the chance of a set bit of the option byte.
inline bool bitOf(uint8_t byte, int bit) { return (byte >> bit & 1) != 0; }

#endif  // PALVOR_TESTS_FUZZ_FUZZ_INPUT_H_
