#include "kit/huge_buffer.h"

#include <sys/mman.h>

#include <new>

namespace kit {
namespace {

constexpr size_t kHugePage = size_t{1} << 21;

}  // namespace

void HugeBytes::reserve(size_t size) {
  if (size <= size_) return;
  release();
  // The system aligns blocks of whole huge pages to them where it can.
  const size_t rounded =
      size < kHugePage ? size : (size + kHugePage - 1) / kHugePage * kHugePage;
  void* memory = ::mmap(nullptr, rounded, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  if (size >= kHugePage) ::madvise(memory, rounded, MADV_HUGEPAGE);
  memory_ = memory;
  size_ = rounded;
}

void HugeBytes::release() {
  if (memory_ != nullptr) ::munmap(memory_, size_);
  memory_ = nullptr;
  size_ = 0;
}

}  // namespace kit
