// What palvor's files hold, printed.

#ifndef PALVOR_KIT_VIEW_VIEW_H_
#define PALVOR_KIT_VIEW_VIEW_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kit {

struct ViewOptions {
  std::vector<std::string> files;  // the ends of their names tell their kinds
  bool json = false;               // objects instead of a table
  bool dot = false;                // trees as pictures
  uint64_t from = 0;               // first record, from 0
  std::optional<uint64_t> count;   // most records of each file; none: all
  std::string dataFolder;   // that they were made of, DIR/PREFIX.ST; empty:
                            // the folder that they are in, for names
  bool zeroOrigin = false;  // as palvor's -z
};

// Prints the files' records, one after the other. Throws std::exception, which
// names the file, if one is not of palvor's, is damaged, or has no record
// `from`.
void view(const ViewOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_VIEW_VIEW_H_
