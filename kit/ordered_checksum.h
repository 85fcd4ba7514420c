// The checksum (XXH3, 64 bits, as xxhsum -H3 prints it) of a file whose pieces
// are written side by side.

#ifndef PALVOR_KIT_ORDERED_CHECKSUM_H_
#define PALVOR_KIT_ORDERED_CHECKSUM_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

struct XXH3_state_s;

namespace kit {

class OrderedChecksum {
 public:
  OrderedChecksum();

  // Takes a piece that begins at an offset; pieces fill the file without
  // overlapping. One that comes early is copied and kept until its turn.
  // Threads may call it side by side.
  void add(uint64_t offset, const void* bytes, size_t size);

  // Forgets all pieces.
  void restart();

  // Of all pieces, which must be without gaps: 16 hexadecimal digits.
  std::string digest() const;

  // Bytes of all pieces in turn.
  uint64_t size() const { return size_; }

 private:
  struct Free {
    void operator()(XXH3_state_s* state) const;
  };

  mutable std::mutex mutex_;  // guards all below
  std::unique_ptr<XXH3_state_s, Free> state_;
  uint64_t size_ = 0;
  std::map<uint64_t, std::string> early_;  // by offset
};

// The same of a block of memory.
std::string checksumOf(const void* bytes, size_t size);

// The same of a file; nothing if it cannot be read.
std::string checksumOfFile(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_ORDERED_CHECKSUM_H_
