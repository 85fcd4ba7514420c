// The blocks of memory of a merge: had once, before it begins, counted, and
// given back when their owner goes.

#ifndef PALVOR_IO_MEMORY_H_
#define PALVOR_IO_MEMORY_H_

#include <cstdint>
#include <utility>

namespace palvor {

// The bytes that a merge has asked for, as it reports them: its buffers,
// strings and lengths, and four or eight bytes for each stream and each of a
// stream's variables. Never decreases. What only makes a merge faster is not
// counted.
class MemoryCount {
 public:
  void add(int64_t bytes) { bytes_ += bytes; }
  int64_t bytes() const { return bytes_; }

 private:
  int64_t bytes_ = 0;
};

// A zeroed piece of memory, aligned to cache lines. Large ones are aligned to
// huge pages, and huge pages are asked for; only what is touched takes up
// memory.
class RawBlock {
 public:
  RawBlock() = default;
  // Null (`data`) if it can't be had.
  explicit RawBlock(int64_t bytes);
  RawBlock(RawBlock&& other) noexcept { swap(other); }
  RawBlock& operator=(RawBlock&& other) noexcept {
    swap(other);
    return *this;
  }
  RawBlock(const RawBlock&) = delete;
  RawBlock& operator=(const RawBlock&) = delete;
  ~RawBlock();

  void* data() const { return data_; }

 private:
  void swap(RawBlock& other) {
    std::swap(data_, other.data_);
    std::swap(mapping_, other.mapping_);
    std::swap(mapped_, other.mapped_);
  }

  void* data_ = nullptr;
  void* mapping_ = nullptr;  // what the system mapped, null if nothing
  uint64_t mapped_ = 0;      // bytes
};

// Throws the error that so many bytes can't be had for a purpose.
[[noreturn]] void failForMemory(int64_t bytes, const char* purpose);

// A zeroed array of plain elements.
template <typename Element>
class Block {
 public:
  Block() = default;
  // Fails, with the bytes asked for and the purpose, if they can't be had.
  Block(int64_t count, const char* purpose) : Block(count) {
    if (data() == nullptr) failForMemory(bytesOf(count), purpose);
  }
  // Null if it can't be had.
  static Block orNull(int64_t count) { return Block(count); }

  Element* data() const { return static_cast<Element*>(raw_.data()); }
  Element& operator[](int64_t i) const { return data()[i]; }

  static int64_t bytesOf(int64_t count) {
    return count * static_cast<int64_t>(sizeof(Element));
  }

 private:
  explicit Block(int64_t count) : raw_(bytesOf(count)) {}

  RawBlock raw_;
};

}  // namespace palvor

#endif  // PALVOR_IO_MEMORY_H_
