// Memory for tables that are looked up all over: a look-up in small pages has
// to find its page first, and each page that is touched for the first time
// costs.

#ifndef PALVOR_IO_HUGE_PAGES_H_
#define PALVOR_IO_HUGE_PAGES_H_

#include <cstddef>
#include <new>
#include <vector>

namespace palvor {

constexpr size_t kHugePage = size_t{2} << 20;  // bytes; the usual size

// These bytes, in as many whole huge pages as hold them.
constexpr size_t wholeHugePages(size_t bytes) {
  return (bytes + kHugePage - 1) / kHugePage * kHugePage;
}

// Asks for huge pages where so many bytes of mapped memory hold whole ones. It
// is advice: a refusal changes nothing.
void askForHugePages(void* memory, size_t bytes);

// An allocator that asks for huge pages for what fills half of one, at least.
// Throws std::bad_alloc.
template <typename Element>
class HugePages {
 public:
  using value_type = Element;

  HugePages() = default;
  template <typename Other>
  explicit HugePages(const HugePages<Other>&) {}

  Element* allocate(size_t count) {
    if (!isLarge(count)) {
      return static_cast<Element*>(operator new(count * sizeof(Element)));
    }
    const size_t bytes = wholeHugePages(count * sizeof(Element));
    void* block = operator new (bytes, std::align_val_t{kHugePage});
    askForHugePages(block, bytes);
    return static_cast<Element*>(block);
  }

  void deallocate(Element* block, size_t count) {
    if (!isLarge(count)) {
      operator delete(block);
    } else {
      operator delete (block, std::align_val_t{kHugePage});
    }
  }

  friend bool operator==(const HugePages&, const HugePages&) { return true; }

 private:
  static bool isLarge(size_t count) {
    return count * sizeof(Element) >= kHugePage / 2;
  }
};

template <typename Element>
using HugeTable = std::vector<Element, HugePages<Element>>;

}  // namespace palvor

#endif  // PALVOR_IO_HUGE_PAGES_H_
