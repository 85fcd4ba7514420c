#include "support/plain_merge.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "support/inputs.h"

namespace {

Record recordOf(const std::string& text, size_t input, size_t pos) {
  const auto words = packedWords(std::string_view(text).substr(pos, 32));
  return {static_cast<uint32_t>(input << 2 | ((input + pos) & 3)),
          static_cast<uint32_t>(pos), words[0],
          words.size() > 2 ? words[1] : 0};
}

void append(PlainArray& array, const Record& record, std::string_view text) {
  const bool first = array.records.empty();
  array.entries.push_back(first ? 0 : slowEntry(array.texts.back(), text));
  array.records.push_back(record);
  array.texts.push_back(text);
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
  for (const auto& [text, input, pos] : suffixes) {
    append(array, recordOf(collection.texts[input], input, pos), text);
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

PlainArray plainMerge(const Collection& collection, Ties ties) {
  const std::vector<PlainArray> streams = plainArrays(collection);
  std::vector<size_t> next(streams.size(), 0);
  std::vector<size_t> arrival(streams.size());
  std::iota(arrival.begin(), arrival.end(), 0);
  size_t moment = streams.size();
  PlainArray merged;
  while (true) {
    size_t best = streams.size();
    std::tuple<std::string_view, size_t> bestKey;
    for (size_t j = 0; j < streams.size(); j++) {
      if (next[j] == streams[j].records.size()) continue;
      const std::tuple key(streams[j].texts[next[j]],
                           ties == Ties::kByInput
                               ? streams[j].records[next[j]][0] >> 2
                               : arrival[j]);
      if (best < streams.size() && bestKey <= key) continue;
      best = j;
      bestKey = key;
    }
    if (best == streams.size()) return merged;
    append(merged, streams[best].records[next[best]],
           streams[best].texts[next[best]]);
    next[best]++;
    arrival[best] = moment++;
  }
}

std::string described(const Collection& collection) {
  std::string text = "inputs {";
  for (const std::string& input : collection.texts)
    text += '"' + input + "\", ";
  text += "} parts {";
  for (const int inputs : collection.parts)
    text += std::to_string(inputs) + ", ";
  return text + (collection.zeroOrigin ? "} from zero" : "}");
}
