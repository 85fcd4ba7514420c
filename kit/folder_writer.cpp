#include "kit/folder_writer.h"

#include <algorithm>
#include <optional>
#include <string>

#include "kit/suffix_sorter.h"
#include "sources/packing.h"
#include "sources/suffix.h"

namespace kit {
namespace {

// An input's data words, its trailer, and one more zero word, so that both
// prefix words of any suffix can be read.
std::vector<uint32_t> packInput(const char* characters, size_t length) {
  const auto bits = static_cast<int64_t>(2 * length);
  std::vector<uint32_t> words(static_cast<size_t>(storedWords(bits)) + 1);
  const auto whole = static_cast<size_t>(getBinEncoding(
      words.data(), const_cast<char*>(characters), static_cast<int>(length)));
  for (size_t i = 16 * whole; i < length; i++) {
    words[whole] |= codeOf(characters[i]) << (30 - 2 * (i % 16));
  }
  return words;
}

// Finds the input that a text position is in.
class InputFinder {
 public:
  explicit InputFinder(const PsaText& psa) : inputs_(psa.inputs) {
    size_t input = 0;
    for (size_t begin = 0; begin < psa.text.size(); begin += kBlock) {
      while (input + 1 < inputs_.size() && inputs_[input + 1].begin <= begin) {
        input++;
      }
      firstOfBlock_.push_back(static_cast<uint32_t>(input));
    }
    firstOfBlock_.push_back(static_cast<uint32_t>(inputs_.size() - 1));
  }

  size_t find(size_t position) const {
    const size_t block = position / kBlock;
    const auto from = inputs_.begin() + firstOfBlock_[block];
    const auto to = inputs_.begin() + firstOfBlock_[block + 1] + 1;
    const auto after = std::upper_bound(
        from, to, position,
        [](size_t p, const InputString& input) { return p < input.begin; });
    return static_cast<size_t>(after - inputs_.begin()) - 1;
  }

 private:
  static constexpr size_t kBlock = 1024;  // characters

  const std::vector<InputString>& inputs_;
  std::vector<uint32_t> firstOfBlock_;  // input of each block's first character
};

void writeWords(const std::string& path, const std::vector<uint32_t>& words,
                size_t count) {
  OutputFile file(path);
  file.write(words.data(), 4 * count);
  file.commit();
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\t':
        result += "\\t";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\\':
        result += "\\\\";
        break;
      default:
        result += c;
    }
  }
  return result;
}

}  // namespace

void writePsa(const DataFolder& folder, const PsaText& psa, bool withLcp,
              bool zeroOrigin) {
  std::vector<std::vector<uint32_t>> packed;
  for (size_t i = 0; i < psa.inputs.size(); i++) {
    const InputString& input = psa.inputs[i];
    packed.push_back(packInput(psa.text.data() + input.begin, input.length));
    writeWords(folder.path(psa.firstInput + i, ".stbin"), packed.back(),
               packed.back().size() - 1);
  }

  SuffixSorter sorter(psa, withLcp);
  const InputFinder finder(psa);
  const uint32_t origin = zeroOrigin ? 0 : psa.firstInput;
  const auto number = static_cast<uint64_t>(psa.number);
  OutputFile records(folder.path(number, ".stpsa"));
  std::optional<OutputFile> entries;
  if (withLcp) entries.emplace(folder.path(number, ".stlcp"));
  for (size_t count = sorter.size(); count > 0; count--) {
    const size_t position = sorter.next();
    const size_t input = finder.find(position);
    const size_t within = position - psa.inputs[input].begin;
    const uint32_t* words = packed[input].data();
    const Suffix suffix = {(origin + static_cast<uint32_t>(input)) << 2,
                           static_cast<uint32_t>(within),
                           sliceAt(words, 2 * within),
                           sliceAt(words, 2 * within + 32)};
    records.write(&suffix, sizeof suffix);
    if (entries) {
      const LcpEntry entry = sorter.entry();
      entries->write(&entry, sizeof entry);
    }
  }
  records.commit();
  if (entries) entries->commit();
}

FolderIndex::FolderIndex(const DataFolder& folder)
    : folder_(folder), table_(folder.path(".inputs.tsv")) {}

void FolderIndex::add(const PsaText& psa) {
  for (const InputString& input : psa.inputs) {
    const std::string line = std::to_string(inputs_++) + '\t' +
                             std::to_string(psa.number) + '\t' +
                             escaped(psa.file) + '\t' + escaped(input.record) +
                             '\t' + std::to_string(input.offset) + '\t' +
                             std::to_string(input.length) + '\n';
    table_.write(line.data(), line.size());
    lengths_.push_back(static_cast<uint32_t>(input.length));
  }
  inputsPerPsa_.push_back(static_cast<uint32_t>(psa.inputs.size()));
}

void FolderIndex::commit() {
  std::vector<uint32_t> bits(lengths_);
  for (uint32_t& length : bits) length *= 2;
  writeWords(folder_.path(".stblengths"), bits, bits.size());
  const bool partitioned =
      std::any_of(inputsPerPsa_.begin(), inputsPerPsa_.end(),
                  [](uint32_t inputs) { return inputs != 1; });
  if (partitioned) {
    writeWords(folder_.path(".stplengths"), inputsPerPsa_,
               inputsPerPsa_.size());
  }
  table_.commit();
  writeWords(folder_.path(".stlengths"), lengths_, lengths_.size());
}

}  // namespace kit
