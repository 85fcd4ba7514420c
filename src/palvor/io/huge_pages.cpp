#include "palvor/io/huge_pages.h"

#include <sys/mman.h>

namespace palvor {

void askForHugePages(void* memory, size_t bytes) {
  madvise(memory, bytes, MADV_HUGEPAGE);
}

}  // namespace palvor
