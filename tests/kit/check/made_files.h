// The files of a small data folder, whole or changed, that palvor-kit check is
// to look at.

#ifndef PALVOR_TESTS_KIT_CHECK_MADE_FILES_H_
#define PALVOR_TESTS_KIT_CHECK_MADE_FILES_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/program.h"

using Files = std::map<std::string, std::string>;  // of d.ST/, by their names

// A data folder of sequence files, with all that palvor makes of it: the merged
// array, and trees of at most so many records.
Files allMadeOf(const std::string& a, const std::string& b, int nodes);

// What palvor-kit check says of them.
Outcome check(const Files& files, std::vector<std::string> options = {});

using Change = std::function<void(Files&)>;

constexpr size_t kSuffix = 16;  // bytes

// Changes of the file "d" and `file`, such as "_0.stpsa". Words, of 32 bits,
// are counted from 0, as records are.
Change set(const std::string& file, size_t word, uint32_t value);
Change cut(const std::string& file, size_t less);  // bytes, at its end
Change lose(const std::string& file);

// Of a suffix array: a record's word; a suffix exchanged with the next one, or
// put over that one.
Change suffix(const std::string& file, size_t record, size_t word,
              uint32_t value);
Change exchange(const std::string& file, size_t record);
Change repeat(const std::string& file, size_t record);

#endif  // PALVOR_TESTS_KIT_CHECK_MADE_FILES_H_
