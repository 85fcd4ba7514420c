// Memory for a large table that is used again and again: never zeroed, never
// copied, in huge pages where the system has them, since a page touched for the
// first time costs dearly.

#ifndef PALVOR_KIT_HUGE_BUFFER_H_
#define PALVOR_KIT_HUGE_BUFFER_H_

#include <cstddef>
#include <utility>

namespace kit {

class HugeBytes {
 public:
  HugeBytes() = default;
  ~HugeBytes() { release(); }
  HugeBytes(HugeBytes&& other) noexcept
      : memory_(std::exchange(other.memory_, nullptr)),
        size_(std::exchange(other.size_, 0)) {}
  HugeBytes& operator=(HugeBytes&& other) noexcept {
    std::swap(memory_, other.memory_);
    std::swap(size_, other.size_);
    return *this;
  }

  // Makes room for `size` bytes; what is held is lost if there was less room.
  // Throws std::bad_alloc.
  void reserve(size_t size);

  void release();

  void* data() const { return memory_; }

 private:
  void* memory_ = nullptr;
  size_t size_ = 0;
};

// The same, for elements without constructors.
template <typename Element>
class HugeBuffer {
 public:
  void reserve(size_t count) { bytes_.reserve(count * sizeof(Element)); }
  void release() { bytes_.release(); }
  Element* data() const { return static_cast<Element*>(bytes_.data()); }

 private:
  HugeBytes bytes_;
};

}  // namespace kit

#endif  // PALVOR_KIT_HUGE_BUFFER_H_
