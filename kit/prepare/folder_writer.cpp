#include "kit/prepare/folder_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "kit/table_fields.h"
#include "palvor/format/packing.h"

namespace kit {
namespace {

void writeWords(const std::string& path, const uint32_t* words, size_t count) {
  OutputFile file(path);
  file.write(words, sizeof *words * count);
  file.commit();
}

}  // namespace

void writeStrings(const DataFolder& folder, const PsaText& psa) {
  for (size_t i = 0; i < psa.inputs.size(); i++) {
    const InputString& input = psa.inputs[i];
    const auto bits = static_cast<int64_t>(2 * input.length);
    writeWords(folder.path(psa.firstInput + i, ".stbin"),
               psa.words.data() + input.begin / kCharactersPerWord,
               static_cast<size_t>(palvor::storedWords(bits)));
  }
}

FolderIndex::FolderIndex(const DataFolder& folder, const FolderBase& base)
    : folder_(folder),
      table_(folder.path(".inputs.tsv")),
      lengths_(base.lengths),
      inputsPerPsa_(base.inputsPerPsa) {
  table_.write(base.table.data(), base.table.size());
}

void FolderIndex::add(const PsaText& psa) {
  for (const InputString& input : psa.inputs) {
    const std::string line =
        fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\n", lengths_.size(), psa.number,
                    escaped(psa.file), escaped(input.record), input.offset,
                    input.length, input.reverse ? '-' : '+');
    table_.write(line.data(), line.size());
    lengths_.push_back(static_cast<uint32_t>(input.length));
  }
  inputsPerPsa_.push_back(static_cast<uint32_t>(psa.inputs.size()));
}

void FolderIndex::commit() {
  std::vector<uint32_t> bits(lengths_);
  for (uint32_t& length : bits) length *= 2;
  writeWords(folder_.path(".stblengths"), bits.data(), bits.size());
  const bool partitioned =
      std::any_of(inputsPerPsa_.begin(), inputsPerPsa_.end(),
                  [](uint32_t inputs) { return inputs != 1; });
  if (partitioned) {
    writeWords(folder_.path(".stplengths"), inputsPerPsa_.data(),
               inputsPerPsa_.size());
  }
  table_.commit();
  writeWords(folder_.path(".stlengths"), lengths_.data(), lengths_.size());
}

}  // namespace kit
