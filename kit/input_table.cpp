#include "kit/input_table.h"

#include <fmt/format.h>

#include <string_view>

#include "kit/record_file.h"
#include "kit/table_reader.h"

namespace kit {

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
