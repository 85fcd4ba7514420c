// Prints rows, to standard output or elsewhere, as tab-separated text under a
// header line or as one JSON object a line.

#ifndef PALVOR_KIT_TABLE_PRINTER_H_
#define PALVOR_KIT_TABLE_PRINTER_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kit/standard_output.h"

namespace kit {

// Nothing, a number (of fractions 12 digits are printed), or text, which is
// escaped (table_fields.h) between tabs.
using Cell = std::variant<std::monostate, uint64_t, double, std::string>;

using WriteText = std::function<void(std::string_view text)>;

class TablePrinter {
 public:
  // All functions throw what `write` throws if nothing can be written.
  //   write  takes each line, its end included
  TablePrinter(std::vector<std::string> columns, bool json,
               WriteText write = writeOutput);

  // One cell for each column. An empty one is an empty field, or no member.
  void row(const std::vector<Cell>& cells);

 private:
  std::vector<std::string> columns_;
  bool json_;
  WriteText write_;
  std::string line_;  // the last one, its memory to be used again
};

}  // namespace kit

#endif  // PALVOR_KIT_TABLE_PRINTER_H_
