// What the machine has got, and what the program took of it.

#ifndef PALVOR_KIT_BUILD_MACHINE_H_
#define PALVOR_KIT_BUILD_MACHINE_H_

#include <cstdint>

namespace kit {

// Threads that run at once: the cores that this process may use; at least 1.
int usableThreads();

// Bytes of memory: the machine's, or what its control group is limited to.
uint64_t usableMemory();

// The most that the process has had in memory at once, in bytes.
uint64_t peakMemory();

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_MACHINE_H_
