// Sorts keys of 64 bits.

#ifndef PALVOR_KIT_PREPARE_KEY_SORTER_H_
#define PALVOR_KIT_PREPARE_KEY_SORTER_H_

#include <hwy/contrib/sort/vqsort.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kit {

// By vectors, where that is worth while. One thread's.
class KeySorter {
 public:
  // Sorts keys[0] to keys[count - 1], the least first.
  void operator()(uint64_t* keys, size_t count) const {
    if (count <= kFew) {
      std::sort(keys, keys + count);
    } else {
      vectors_(keys, count, hwy::SortAscending());
    }
  }

 private:
  // The vectorised sort asks the system for random bits each time, which takes
  // as long as to sort so many.
  static constexpr size_t kFew = 64;

  hwy::Sorter vectors_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_KEY_SORTER_H_
