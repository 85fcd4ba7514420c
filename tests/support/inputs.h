// Inputs in memory, for tests that call the engine's routines directly, and the
// slow, obvious ways of packing and comparing that the tests rely on instead
// of the routines under test.

#ifndef PALVOR_TESTS_SUPPORT_INPUTS_H_
#define PALVOR_TESTS_SUPPORT_INPUTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "palvor/format/suffix.h"
#include "palvor/text/collection.h"

// Texts (over ACGT) as the strings of a merge.
class InMemory {
 public:
  explicit InMemory(std::vector<std::string> texts);
  InMemory(const InMemory&) = delete;
  InMemory& operator=(const InMemory&) = delete;

  const palvor::Collection& text() const { return text_; }

  // The suffix that starts at character `pos` of an input; `flags` are its two
  // low bits.
  palvor::Suffix suffixAt(size_t input, size_t pos, unsigned flags = 0) const;

 private:
  std::vector<palvor::PackedString> strings() const;

  std::vector<std::string> texts_;
  std::vector<std::vector<uint32_t>> packed_;
  palvor::Collection text_;
};

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
