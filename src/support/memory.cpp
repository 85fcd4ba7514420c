#include "support/memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

#include "support/report.h"

namespace {

constexpr unsigned long kHugePage = 2UL << 20;  // bytes; the usual size

// From here on the first touch of small pages costs more than what is then
// done with them; below it, rounding up to huge pages would waste memory.
constexpr unsigned long kLargeBlock = 4 * kHugePage;

long long memused = 0;  // bytes requested so far

// A zeroed block from the system itself, aligned to kHugePage; null on
// failure. Only what is touched takes up memory.
void* mapLargeBlock(unsigned long size) {
  if (size > SIZE_MAX - 2 * kHugePage) return nullptr;
  const unsigned long room = size + kHugePage;
  void* mapping = mmap(nullptr, room, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) return nullptr;
  const unsigned long excess = reinterpret_cast<uintptr_t>(mapping) % kHugePage;
  char* block = static_cast<char*>(mapping) + (kHugePage - excess) % kHugePage;
  madvise(block, size, MADV_HUGEPAGE);  // advice: a refusal changes nothing
  return block;
}

// An allocator may return null for 0 bytes, which is no failure.
unsigned long atLeastOne(unsigned long size) { return size == 0 ? 1 : size; }

}  // namespace

void* Calloc(int count, int size) {
  const long long bytes = static_cast<long long>(count) * size;
  memused += bytes;
  if (bytes < 0) return nullptr;
  const auto wanted = static_cast<unsigned long>(bytes);
  if (wanted >= kLargeBlock) return mapLargeBlock(wanted);
  return std::calloc(atLeastOne(wanted), 1);
}

void* Malloc(unsigned long size) {
  memused += static_cast<long long>(size);
  if (size >= kLargeBlock) return mapLargeBlock(size);
  return std::malloc(atLeastOne(size));
}

long long MemUsed() { return memused; }

void* orDie(void* block, long long bytes, const char* purpose) {
  if (block == nullptr) {
    die("could not allocate %lld bytes for %s\n", bytes, purpose);
  }
  return block;
}
