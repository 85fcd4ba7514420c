#include "palvor/text/stretches.h"

namespace palvor {

size_t Stretches::memory() const {
  return stretches_.size() * sizeof(Stretch) +
         sizeof(uint32_t) * (bases_.size() + blocks_.size() + alike_.size());
}

}  // namespace palvor
