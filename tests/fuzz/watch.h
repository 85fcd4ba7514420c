// What a case must not do, beyond what ends a process by itself: the process
// that runs it aborts, as the sanitizers make it do, so that every finding is
// a signal and no finding is a mere status 1.

#ifndef PALVOR_TESTS_FUZZ_WATCH_H_
#define PALVOR_TESTS_FUZZ_WATCH_H_

#include <cstddef>
#include <cstdint>
#include <string>

// Reports a finding and aborts unless `holds`.
void require(bool holds, const std::string& what);

// What a merge may ask for is 1 GiB, and for each byte of the case 32 KiB,
// since every stream has a buffer.
void testRequest(int64_t bytes, size_t caseBytes);

// The process may touch 1 GiB.
void testTouched();

#endif  // PALVOR_TESTS_FUZZ_WATCH_H_
