#include "kit/table_printer.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

#include "kit/json.h"
#include "kit/table_fields.h"

namespace kit {
namespace {

void append(std::string& line, const Cell& cell) {
  if (const auto* number = std::get_if<uint64_t>(&cell)) {
    const fmt::format_int digits(*number);
    line.append(digits.data(), digits.size());
  } else if (const auto* fraction = std::get_if<double>(&cell)) {
    fmt::format_to(std::back_inserter(line), "{:.12g}", *fraction);
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    appendEscaped(line, *text);
  }
}

void set(Json& object, const std::string& column, const Cell& cell) {
  if (const auto* number = std::get_if<uint64_t>(&cell)) {
    object[column] = *number;
  } else if (const auto* fraction = std::get_if<double>(&cell)) {
    object[column] = *fraction;
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    object[column] = *text;
  }
}

}  // namespace

TablePrinter::TablePrinter(std::vector<std::string> columns, bool json,
                           WriteText write)
    : columns_(std::move(columns)), json_(json), write_(std::move(write)) {
  if (!json_) row(std::vector<Cell>(columns_.begin(), columns_.end()));
}

void TablePrinter::row(const std::vector<Cell>& cells) {
  if (json_) {
    Json object = Json::object();
    for (size_t i = 0; i < cells.size(); i++) {
      set(object, columns_[i], cells[i]);
    }
    write_(jsonLine(object));
    return;
  }
  line_.clear();
  for (size_t i = 0; i < cells.size(); i++) {
    if (i > 0) line_ += '\t';
    append(line_, cells[i]);
  }
  line_ += '\n';
  write_(line_);
}

}  // namespace kit
