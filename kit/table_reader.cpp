#include "kit/table_reader.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "kit/file_error.h"
#include "kit/table_fields.h"

namespace kit {

bool TableReader::nextLine() {
  if (rest_.empty()) return false;
  line_++;
  const size_t end = rest_.find('\n');
  if (end == std::string_view::npos) fail("ends within a line");
  fields_ = rest_.substr(0, end);
  more_ = true;
  rest_.remove_prefix(end + 1);
  return true;
}

std::string_view TableReader::field() {
  if (!more_) fail("too few fields");
  const size_t end = fields_.find('\t');
  const std::string_view result = fields_.substr(0, end);
  more_ = end != std::string_view::npos;
  if (more_) fields_.remove_prefix(end + 1);
  return result;
}

uint64_t TableReader::number() {
  const std::string_view digits = field();
  uint64_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.begin(), digits.end(), value);
  if (error != std::errc() || end != digits.end()) {
    fail(fmt::format("'{}' is no number", digits));
  }
  return value;
}

std::string TableReader::text() {
  std::optional<std::string> result = unescaped(field());
  if (!result) fail("ends within an escaped character");
  return *std::move(result);
}

void TableReader::fail(const std::string& reason) const {
  throw FileError(path_, fmt::format("line {}: {}", line_, reason));
}

}  // namespace kit
