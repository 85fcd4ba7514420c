#include "kit/input_table.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "kit/file_error.h"
#include "kit/record_file.h"
#include "kit/table_fields.h"

namespace kit {
namespace {

// A table's text, line by line and field by field.
class TableReader {
 public:
  TableReader(const std::string& path, std::string_view text)
      : path_(path), rest_(text) {}

  bool nextLine() {
    if (rest_.empty()) return false;
    line_++;
    const size_t end = rest_.find('\n');
    if (end == std::string_view::npos) fail("ends within a line");
    fields_ = rest_.substr(0, end);
    more_ = true;
    rest_.remove_prefix(end + 1);
    return true;
  }

  bool more() const { return more_; }

  std::string_view field() {
    if (!more_) fail("too few fields");
    const size_t end = fields_.find('\t');
    const std::string_view result = fields_.substr(0, end);
    more_ = end != std::string_view::npos;
    if (more_) fields_.remove_prefix(end + 1);
    return result;
  }

  uint64_t number() {
    const std::string_view digits = field();
    uint64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.begin(), digits.end(), value);
    if (error != std::errc() || end != digits.end()) {
      fail(fmt::format("'{}' is no number", digits));
    }
    return value;
  }

  std::string text() {
    std::optional<std::string> result = unescaped(field());
    if (!result) fail("ends within an escaped character");
    return *std::move(result);
  }

  [[noreturn]] void fail(const std::string& reason) const {
    throw FileError(path_, fmt::format("line {}: {}", line_, reason));
  }

 private:
  const std::string& path_;
  std::string_view rest_;
  std::string_view fields_;  // of the line, those not yet read
  bool more_ = false;        // there are such
  uint64_t line_ = 0;        // from 1
};

}  // namespace

std::vector<InputOrigin> readInputTable(const std::string& path) {
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  TableReader table(path, {bytes.data(), bytes.size()});
  std::vector<InputOrigin> inputs;
  while (table.nextLine()) {
    if (const uint64_t number = table.number(); number != inputs.size()) {
      table.fail(fmt::format("input {}, expected {}", number, inputs.size()));
    }
    InputOrigin& input = inputs.emplace_back();
    input.array = table.number();
    input.file = table.text();
    input.sequence = table.text();
    input.offset = table.number();
    input.length = table.number();
    if (!table.more()) continue;
    const std::string_view strand = table.field();
    if (strand != "+" && strand != "-") {
      table.fail(fmt::format("'{}' is no strand, + or -", strand));
    }
    input.reverse = strand == "-";
    if (table.more()) table.fail("too many fields");
  }
  return inputs;
}

}  // namespace kit
