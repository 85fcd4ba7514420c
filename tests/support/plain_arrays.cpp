#include "support/plain_arrays.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "support/inputs.h"

namespace {

Record recordOf(std::string_view text, size_t input, size_t pos) {
  const auto words = packedWords(text.substr(0, 32));
  return {static_cast<uint32_t>(input << 2 | ((input + pos) & 3)),
          static_cast<uint32_t>(pos), words[0],
          words.size() > 2 ? words[1] : 0};
}

// The array of inputs `first` to `last` - 1.
PlainArray sortedArray(const Collection& collection, size_t first,
                       size_t last) {
  std::vector<std::tuple<std::string_view, size_t, size_t>> suffixes;
  for (size_t input = first; input < last; input++) {
    const std::string_view text = collection.texts[input];
    for (size_t pos = 0; pos < text.size(); pos++) {
      suffixes.emplace_back(text.substr(pos), input, pos);
    }
  }
  std::sort(suffixes.begin(), suffixes.end());
  PlainArray array;
  std::string_view before;
  for (const auto& [text, input, pos] : suffixes) {
    array.entries.push_back(before.empty() ? 0 : slowEntry(before, text));
    array.records.push_back(recordOf(text, input, pos));
    before = text;
  }
  return array;
}

}  // namespace

std::vector<PlainArray> plainArrays(const Collection& collection) {
  std::vector<int> parts = collection.parts;
  if (parts.empty()) parts.assign(collection.texts.size(), 1);
  std::vector<PlainArray> arrays;
  size_t first = 0;
  for (const int inputs : parts) {
    const size_t last = first + static_cast<size_t>(inputs);
    arrays.push_back(sortedArray(collection, first, last));
    first = last;
  }
  return arrays;
}
