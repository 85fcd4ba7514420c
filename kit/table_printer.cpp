#include "kit/table_printer.h"

#include <fmt/format.h>

#include <utility>

#include "kit/json.h"

namespace kit {
namespace {

void appendTo(std::string& line, const Cell& cell) {
  if (const auto* number = std::get_if<uint64_t>(&cell)) {
    line += fmt::format_int(*number).c_str();
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    line += escaped(*text);
  }
}

void set(Json& object, const std::string& column, const Cell& cell) {
  if (const auto* number = std::get_if<uint64_t>(&cell)) {
    object[column] = *number;
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    object[column] = *text;
  }
}

}  // namespace

std::string escaped(const std::string& text) {
  if (text.find_first_of("\t\n\\") == std::string::npos) return text;
  std::string result;
  for (const char c : text) {
    if (c == '\t') {
      result += "\\t";
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\\') {
      result += "\\\\";
    } else {
      result += c;
    }
  }
  return result;
}

TablePrinter::TablePrinter(std::vector<std::string> columns, bool json)
    : columns_(std::move(columns)), json_(json) {
  if (!json_) row(std::vector<Cell>(columns_.begin(), columns_.end()));
}

void TablePrinter::row(const std::vector<Cell>& cells) const {
  if (json_) {
    Json object = Json::object();
    for (size_t i = 0; i < cells.size(); i++)
      set(object, columns_[i], cells[i]);
    writeOutput(jsonLine(object));
    return;
  }
  std::string line;
  for (size_t i = 0; i < cells.size(); i++) {
    if (i > 0) line += '\t';
    appendTo(line, cells[i]);
  }
  line += '\n';
  writeOutput(line);
}

}  // namespace kit
