// What a case must not do, beyond what ends a process by itself: the process
// that runs it aborts, as the sanitizers make it do, so that every finding is
// a signal and no finding is a mere status 1.

#ifndef PALVOR_TESTS_FUZZ_WATCH_H_
#define PALVOR_TESTS_FUZZ_WATCH_H_

#include <cstddef>
#include <string>

#include "case_folder.h"

// From now on the process, when it exits, removes the folder, and aborts if
// it asked for too much memory, exits with a status other than 0 and 1, or
// exits while it must not fail. Palvor's errors exit wherever they are met, so
// there is no other place for this.
//   bytes  of the case. The merge may request 1 GiB, and 32 KiB for each of
//          them, since every stream has a buffer. The process may touch 1 GiB.
void watchExit(const CaseFolder& folder, size_t bytes);

// Whether an exit with a status other than 0 is a finding. At first it is not.
void mustNotFail(bool must);

// Reports a finding and aborts unless `holds`.
void require(bool holds, const std::string& what);

#endif  // PALVOR_TESTS_FUZZ_WATCH_H_
