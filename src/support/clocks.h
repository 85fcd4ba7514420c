// The clocks behind every time that the program prints. All but `nanoclock`
// read whole milliseconds or seconds, truncated, as signed 32-bit values:
// a time is always the difference of two readings of one clock (`elapsed`).

#ifndef PALVOR_SUPPORT_CLOCKS_H_
#define PALVOR_SUPPORT_CLOCKS_H_

// Wall-clock milliseconds since the start of the second in which the process
// took its first reading: the first reading is a value from 0 to 999.
int rclock();

// Processor time of the process, user and system together, in milliseconds.
// Also captures the figures that getPFs and getRSS return.
int mclock();

// Wall-clock seconds since the first call, which returns 0.
int sclock();

// Wall-clock nanoseconds since an arbitrary point, for what is too short for
// the other clocks.
long long nanoclock();

// Major page faults, and the largest resident size in KiB, as captured by the
// last `mclock`; neither asks the system itself.
int getPFs();
int getRSS();

// Milliseconds from one reading to a later one of the same clock. The clocks
// wrap after 24.8 days; a difference up to that long comes out right.
int elapsed(int earlier, int later);

#endif  // PALVOR_SUPPORT_CLOCKS_H_
