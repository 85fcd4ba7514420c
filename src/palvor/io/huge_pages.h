// Memory for tables that are looked up all over: a look-up in small pages has
// to find its page first, and each page that is touched for the first time
// costs.

#ifndef PALVOR_TEXT_HUGE_PAGES_H_
#define PALVOR_TEXT_HUGE_PAGES_H_

#include <sys/mman.h>

#include <cstddef>
#include <new>
#include <vector>

namespace palvor {

// An allocator that asks for huge pages for what fills some.
template <typename Element>
class HugePages {
 public:
  using value_type = Element;

  HugePages() = default;
  template <typename Other>
  explicit HugePages(const HugePages<Other>&) {}

  Element* allocate(size_t count) {
    if (!fillsSome(count)) {
      return static_cast<Element*>(operator new(count * sizeof(Element)));
    }
    const size_t bytes = (count * sizeof(Element) + kPage - 1) / kPage * kPage;
    void* block = operator new (bytes, std::align_val_t{kPage});
    madvise(block, bytes, MADV_HUGEPAGE);  // a refusal changes nothing
    return static_cast<Element*>(block);
  }

  void deallocate(Element* block, size_t count) {
    if (!fillsSome(count)) {
      operator delete(block);
    } else {
      operator delete (block, std::align_val_t{kPage});
    }
  }

  friend bool operator==(const HugePages&, const HugePages&) { return true; }

 private:
  // Half of one, at least.
  static bool fillsSome(size_t count) {
    return count * sizeof(Element) >= kPage / 2;
  }

  static constexpr size_t kPage = size_t{2} << 20;  // bytes; the usual size
};

template <typename Element>
using HugeTable = std::vector<Element, HugePages<Element>>;

}  // namespace palvor

#endif  // PALVOR_TEXT_HUGE_PAGES_H_
