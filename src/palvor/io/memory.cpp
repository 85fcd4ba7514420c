#include "palvor/io/memory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

#include "palvor/error.h"
#include "palvor/io/huge_pages.h"

namespace palvor {
namespace {

constexpr uint64_t kCacheLine = 64;  // bytes

// From here on the first touch of small pages costs more than what is then
// done with them; below it, rounding up to huge pages would waste memory.
constexpr uint64_t kLargeBlock = 4 * kHugePage;

// From here on a block comes from the system, which zeroes what is touched.
constexpr uint64_t kMappedBlock = 128 << 10;

uint64_t roundedUp(uint64_t size, uint64_t to) {
  return (size + to - 1) / to * to;
}

}  // namespace

RawBlock::RawBlock(int64_t bytes) {
  if (bytes < 0 || bytes > INT64_MAX / 2) return;
  const uint64_t size = static_cast<uint64_t>(bytes);
  if (size < kMappedBlock) {
    const uint64_t room = roundedUp(size + 1, kCacheLine);
    data_ = std::aligned_alloc(kCacheLine, room);
    if (data_ != nullptr) std::memset(data_, 0, room);
    return;
  }
  const bool large = size >= kLargeBlock;
  mapped_ = large ? size + kHugePage : size;
  // Not reserved: buffers may be larger than the files that fill them.
  void* mapping = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapping == MAP_FAILED) return;
  mapping_ = data_ = mapping;
  if (!large) return;
  const uint64_t excess = reinterpret_cast<uintptr_t>(mapping) % kHugePage;
  data_ = static_cast<char*>(mapping) + (kHugePage - excess) % kHugePage;
  askForHugePages(data_, size);
}

RawBlock::~RawBlock() {
  if (mapping_ != nullptr) {
    munmap(mapping_, mapped_);
  } else {
    std::free(data_);
  }
}

void failForMemory(int64_t bytes, const char* purpose) {
  fail("could not allocate %lld bytes for %s", static_cast<long long>(bytes),
       purpose);
}

}  // namespace palvor
