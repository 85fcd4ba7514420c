#include "support/data_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/inputs.h"

namespace {

std::string numbered(size_t number, const char* kind) {
  return "x_" + std::to_string(number) + kind;
}

}  // namespace

std::string bytesOf(const std::vector<uint32_t>& words) {
  std::string bytes;
  for (const uint32_t word : words) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(word >> shift & 0xFF);
    }
  }
  return bytes;
}

DataFolder::DataFolder(const Collection& collection) {
  std::vector<uint32_t> characters, bits;
  for (size_t i = 0; i < collection.texts.size(); i++) {
    const std::string& text = collection.texts[i];
    characters.push_back(static_cast<uint32_t>(text.size()));
    bits.push_back(static_cast<uint32_t>(2 * text.size()));
    writeWords(numbered(i, ".stbin"), packedWords(text));
  }
  writeWords("x.stlengths", characters);
  writeWords("x.stblengths", bits);
  if (!collection.parts.empty()) {
    writeWords("x.stplengths",
               {collection.parts.begin(), collection.parts.end()});
  }

  const std::vector<PlainArray> arrays = plainArrays(collection);
  for (size_t j = 0; j < arrays.size(); j++) {
    std::vector<uint32_t> file;
    for (const Record& record : arrays[j].records) {
      file.insert(file.end(), record.begin(), record.end());
    }
    writeWords(numbered(j, ".stpsa"), file);
    std::vector<uint32_t> entries = arrays[j].entries;
    if (!entries.empty()) entries[0] = 0xDEADBEEF;  // means nothing
    writeWords(numbered(j, ".stlcp"), entries);
  }
}

Outcome DataFolder::merge(const std::string& options,
                          const Setting& setting) const {
  std::vector<std::string> arguments = wordsOf(options);
  arguments.insert(arguments.begin(), {root_, "x"});
  return runPalvor(arguments, setting);
}

void DataFolder::expectMerge(const std::string& options) const {
  SCOPED_TRACE("options " + options);
  // A merge replaces the trees of the one before only as far as it has some.
  for (int tree = 0;
       std::filesystem::remove(path("x_" + std::to_string(tree) + ".stree"));) {
    tree++;
  }
  const Outcome merged = merge(options);
  ASSERT_EQ(merged.status, 0) << merged.err;
  ASSERT_EQ(merged.out, "");
  const Outcome proof = runKit({"check", root_, "x"});
  ASSERT_EQ(proof.status, 0) << proof.out;
}

std::string DataFolder::path(const std::string& name) const {
  return root_ + "x.ST/" + name;
}

void DataFolder::write(const std::string& name,
                       const std::string& bytes) const {
  folder_.write("x.ST/" + name, bytes);
}

void DataFolder::writeWords(const std::string& name,
                            const std::vector<uint32_t>& words) const {
  write(name, bytesOf(words));
}

bool DataFolder::holds(const std::string& name) const {
  return folder_.holds("x.ST/" + name);
}

std::string DataFolder::bytes(const std::string& name) const {
  return folder_.read("x.ST/" + name);
}
