// The alternative to a merge: sorts all suffixes of all inputs at once, with
// their common prefixes, and writes the same kind of files, to <folder>/x.ST/.
//
// usage: from_scratch <folder> <FASTA>...

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "kit/prepare/array_maker.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/psa_source.h"

namespace {

// Every file's text, one after the other.
kit::PsaText readAll(int argc, char** argv) {
  std::vector<std::string> files(argv + 2, argv + argc);
  kit::PsaSource source(files, {});
  kit::PsaText all, psa;
  while (source.next(psa)) {
    for (kit::InputString& input : psa.inputs) {
      input.begin += kit::kCharactersPerWord * all.words.size();
      all.inputs.push_back(input);
    }
    all.words.insert(all.words.end(), psa.words.begin(), psa.words.end());
    all.characters += psa.characters;
  }
  return all;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    const kit::DataFolder folder(argv[1], "x");
    folder.create(true);
    kit::ArrayMaker maker(folder, readAll(argc, argv), {.withLcp = true}, {},
                          {}, 1);
    kit::SortBuffers buffers;
    for (size_t tasks; (tasks = maker.beginStage()) > 0;) {
      for (size_t task = 0; task < tasks; task++) maker.run(task, buffers);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "from_scratch: %s\n", error.what());
    return 1;
  }
  return 0;
}
