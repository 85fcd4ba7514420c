// What a build will need, told beforehand, and what it may take.

#ifndef PALVOR_KIT_BUILD_BUILD_MEANS_H_
#define PALVOR_KIT_BUILD_BUILD_MEANS_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "kit/build/build.h"

namespace kit {

// Characters, about, on all strands that are taken.
struct BuildLoad {
  uint64_t fresh = 0;    // to be prepared
  uint64_t longest = 0;  // of these, in one file
  uint64_t before = 0;   // prepared already
  size_t arrays = 0;     // of both

  uint64_t all() const { return fresh + before; }
};

// The files' characters count as none where they are too few to matter.
BuildLoad loadOf(const BuildOptions& options);

struct BuildMeans {
  int jobs = 1;
  uint64_t memory = 0;  // bytes
};

// Those that the options give; where they don't give the threads, as many as
// the memory is enough for. Throws std::runtime_error, with what is needed, if
// it is not enough.
BuildMeans meansFor(const BuildOptions& options, const BuildLoad& load);

// Bytes that the result takes on the disk.
uint64_t diskNeed(const BuildOptions& options, const BuildLoad& load);

// What the build takes, in words: characters, memory, disk, time.
std::string needsText(const BuildOptions& options, const BuildLoad& load,
                      const BuildMeans& means);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_BUILD_MEANS_H_
