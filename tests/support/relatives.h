// Random collections whose strings come of one another.

#ifndef PALVOR_TESTS_SUPPORT_RELATIVES_H_
#define PALVOR_TESTS_SUPPORT_RELATIVES_H_

#include <cstdint>
#include <string>

#include "support/plain_arrays.h"

// Strings of at most 300 characters over `letters`, cut out of one another and
// joined anew, so that many suffixes are equal, and suffixes before them, too.
// The same for the same arguments.
Collection relatives(uint32_t seed, int strings, const std::string& letters);

#endif  // PALVOR_TESTS_SUPPORT_RELATIVES_H_
