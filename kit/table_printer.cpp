#include "kit/table_printer.h"

#include <cstdio>
#include <stdexcept>

namespace kit {
namespace {

std::string textOf(const Cell& cell) {
  if (const auto* number = std::get_if<uint64_t>(&cell)) {
    return std::to_string(*number);
  }
  const auto* text = std::get_if<std::string>(&cell);
  return text != nullptr ? *text : "";
}

std::string jsonOf(const Cell& cell) {
  const bool text = std::holds_alternative<std::string>(cell);
  return text ? jsonText(textOf(cell)) : textOf(cell);
}

}  // namespace

TablePrinter::TablePrinter(std::vector<std::string> columns, bool json)
    : columns_(std::move(columns)), json_(json) {
  if (!json_) row(std::vector<Cell>(columns_.begin(), columns_.end()));
}

void TablePrinter::row(const std::vector<Cell>& cells) {
  std::string line;
  for (size_t i = 0; i < cells.size(); i++) {
    if (!json_) {
      if (i > 0) line += '\t';
      line += textOf(cells[i]);
    } else if (!std::holds_alternative<std::monostate>(cells[i])) {
      line += line.empty() ? '{' : ',';
      line += '"' + columns_[i] + "\":" + jsonOf(cells[i]);
    }
  }
  if (json_) line += '}';
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stdout);
}

std::string jsonText(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (static_cast<unsigned char>(c) < ' ') {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      result += escape;
    } else {
      result += c;
    }
  }
  return result + '"';
}

void finishOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    throw std::runtime_error("can't write to standard output");
  }
}

}  // namespace kit
