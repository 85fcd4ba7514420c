// The clocks behind the times that a merge reports. A time is always the
// difference of two readings of one clock.

#ifndef PALVOR_IO_CLOCKS_H_
#define PALVOR_IO_CLOCKS_H_

#include <cstdint>

namespace palvor {

// Wall-clock milliseconds since the epoch, truncated.
int64_t wallMilliseconds();

// Wall-clock nanoseconds since an arbitrary point, for what is too short for
// the other clocks.
int64_t wallNanoseconds();

// Processor time of the process, user and system together, in milliseconds,
// truncated; and its major page faults so far.
struct ProcessorTime {
  int64_t milliseconds;
  int64_t majorFaults;
};
ProcessorTime processorTime();

}  // namespace palvor

#endif  // PALVOR_IO_CLOCKS_H_
