// Prints rows to standard output, as tab-separated text under a header line or
// as one JSON object a line.

#ifndef PALVOR_KIT_TABLE_PRINTER_H_
#define PALVOR_KIT_TABLE_PRINTER_H_

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace kit {

// Nothing, a number, or plain text without tabs and line ends.
using Cell = std::variant<std::monostate, uint64_t, std::string>;

class TablePrinter {
 public:
  TablePrinter(std::vector<std::string> columns, bool json);

  // One cell for each column. An empty one is an empty field, or no member.
  void row(const std::vector<Cell>& cells);

 private:
  std::vector<std::string> columns_;
  bool json_;
};

// A text as JSON writes it, in its quotes.
std::string jsonText(const std::string& text);

// Throws std::runtime_error if something could not be written.
void finishOutput();

}  // namespace kit

#endif  // PALVOR_KIT_TABLE_PRINTER_H_
