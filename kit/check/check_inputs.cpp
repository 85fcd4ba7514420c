#include "kit/check/check_inputs.h"

#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

#include "kit/input_table.h"
#include "kit/record_file.h"

namespace kit {

std::vector<ArrayToCheck> listArrays(const std::string& partsPath,
                                     const std::string& arraysBase,
                                     bool zeroOrigin,
                                     const CheckedStrings& strings,
                                     FaultLog& faults) {
  std::vector<uint32_t> inputs(strings.count(), 1);  // per array
  std::vector<uint32_t> parts;
  if (isThere(partsPath)) {
    parts = RecordFile<uint32_t>(partsPath).read(0, UINT64_MAX);
  }
  if (!parts.empty()) {
    inputs = std::move(parts);
    if (strings.count() < strings.countInFolder()) {
      throw std::runtime_error(
          fmt::format("palvor merges all inputs, whatever -N says, if there is "
                      "{}",
                      partsPath));
    }
  }
  std::vector<ArrayToCheck> arrays;
  uint64_t first = 0;
  for (size_t j = 0; j < inputs.size(); j++) {
    const uint64_t end = first + inputs[j];
    if (end > strings.count()) break;
    arrays.push_back({fmt::format("{}_{}", arraysBase, j),
                      static_cast<uint32_t>(first), static_cast<uint32_t>(end),
                      zeroOrigin ? static_cast<uint32_t>(first) : 0});
    first = end;
  }
  if (arrays.size() != inputs.size() || first != strings.count()) {
    faults.add(partsPath,
               fmt::format("the partitions do not cover the {} inputs just "
                           "once",
                           strings.count()));
  }
  return arrays;
}

void checkInputTable(const std::string& path,
                     const std::vector<ArrayToCheck>& arrays,
                     const CheckedStrings& strings, FaultLog& faults) {
  const std::vector<InputOrigin> table = readInputTable(path);
  if (table.size() != strings.countInFolder()) {
    faults.add(path, fmt::format("{} lines, expected {}, one for each input",
                                 table.size(), strings.countInFolder()));
  }
  for (size_t j = 0; j < arrays.size(); j++) {
    for (uint32_t i = arrays[j].firstInput; i < arrays[j].endInput; i++) {
      if (i >= table.size()) return;
      if (table[i].array != j) {
        faults.add(path, fmt::format("line {}: suffix array {}, expected {}",
                                     i + 1, table[i].array, j));
      }
      if (table[i].length != strings.length(i)) {
        faults.add(path,
                   fmt::format("line {}: {} characters, expected {}", i + 1,
                               table[i].length, strings.length(i)));
      }
    }
  }
}

}  // namespace kit
