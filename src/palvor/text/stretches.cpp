#include "palvor/text/stretches.h"

namespace palvor {

size_t Stretches::memory() const {
  return stretches_.size() * sizeof(Stretch) + ranks_.memory() +
         sizeof(uint32_t) * (bases_.size() + blocks_.size());
}

}  // namespace palvor
