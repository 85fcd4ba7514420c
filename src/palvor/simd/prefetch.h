// Asking early for memory that will soon be read.

#ifndef PALVOR_SIMD_PREFETCH_H_
#define PALVOR_SIMD_PREFETCH_H_

namespace palvor {

// Brings the cache line of an address nearer. The address may be anything.
// Callers that do nothing else must be always_inline too: seen on its own, a
// function without a result looks as if it could be left out, and is.
[[gnu::always_inline]] inline void prefetch(const void* address) {
  __builtin_prefetch(address);
}

}  // namespace palvor

#endif  // PALVOR_SIMD_PREFETCH_H_
