#include "kit/huge_buffer.h"

#include <sys/mman.h>

#include <new>

#include "palvor/io/huge_pages.h"

namespace kit {

void HugeBytes::reserve(size_t size) {
  if (size <= size_) return;
  release();
  // The system aligns blocks of whole huge pages to them where it can.
  const bool large = size >= palvor::kHugePage;
  const size_t rounded = large ? palvor::wholeHugePages(size) : size;
  void* memory = ::mmap(nullptr, rounded, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  if (large) palvor::askForHugePages(memory, rounded);
  memory_ = memory;
  size_ = rounded;
}

void HugeBytes::release() {
  if (memory_ != nullptr) ::munmap(memory_, size_);
  memory_ = nullptr;
  size_ = 0;
}

}  // namespace kit
