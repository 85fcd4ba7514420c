// Inputs in memory, for tests that call the merge's routines directly, and the
// slow, obvious ways of packing and comparing that the tests rely on instead
// of the routines under test.

#ifndef PALVOR_TESTS_SUPPORT_INPUTS_H_
#define PALVOR_TESTS_SUPPORT_INPUTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sources/suffix.h"

// Makes `texts` (over ACGT) the inputs: sets `ninputs`, `blengths` and
// `binaryString`. What an earlier call set stays allocated until the next one.
void useInputs(const std::vector<std::string>& texts);

// The suffix of the inputs in use that starts at character `pos`; `flags` are
// its two low bits.
Suffix suffixAt(int input, size_t pos, unsigned flags = 0);

// A text as bits, two characters '0' or '1' for each of its own.
std::string bitsOf(std::string_view text);

// The words of a text's packed string, the trailer included.
std::vector<uint32_t> packedWords(std::string_view text);

// Every text over `alphabet` of at most `longest` characters, "" included.
std::vector<std::string> textsUpTo(size_t longest,
                                   const std::string& alphabet = "ACGT");

// LCP entry of two suffixes, given as texts.
uint32_t slowEntry(std::string_view a, std::string_view b);

#endif  // PALVOR_TESTS_SUPPORT_INPUTS_H_
