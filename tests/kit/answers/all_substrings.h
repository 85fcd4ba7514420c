// All substrings of a small collection, and where each stands: what a slow
// model looks through.

#ifndef PALVOR_TESTS_KIT_ANSWERS_ALL_SUBSTRINGS_H_
#define PALVOR_TESTS_KIT_ANSWERS_ALL_SUBSTRINGS_H_

#include <compare>
#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "kit/answers/made_collection.h"

// Where a text stands.
struct Stand {
  size_t piece;  // number of the collection's piece
  size_t start;  // in the piece, on its forward strand
  bool reverse;

  auto operator<=>(const Stand&) const = default;
};

using Substrings = std::map<std::string, std::set<Stand>>;

// Of both strands, or of the forward one.
Substrings substringsOf(const MadeCollection& made, bool both);

#endif  // PALVOR_TESTS_KIT_ANSWERS_ALL_SUBSTRINGS_H_
