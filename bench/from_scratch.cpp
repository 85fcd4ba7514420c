// The alternative to a merge: sorts all suffixes of all inputs at once, with
// their common prefixes, and writes the same kind of files.
//
// usage: from_scratch <output> <FASTA>...

#include <cstdio>
#include <exception>
#include <string>

#include "kit/output_file.h"
#include "kit/psa_source.h"
#include "kit/suffix_sorter.h"
#include "palvor/format/suffix.h"

namespace {

// Every file's text, one after the other.
kit::PsaText readAll(int argc, char** argv) {
  std::vector<std::string> files(argv + 2, argv + argc);
  kit::PsaSource source(files, kit::Ambiguous::kSplit, false);
  kit::PsaText all, psa;
  while (source.next(psa)) {
    for (kit::InputString& input : psa.inputs) {
      input.begin += all.text.size();
      all.inputs.push_back(input);
    }
    all.text += psa.text;
  }
  return all;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    const kit::PsaText all = readAll(argc, argv);
    kit::SuffixSorter sorter(all, true);
    const std::string output = argv[1];
    kit::OutputFile records(output + ".stpsa"), entries(output + ".stlcp");
    for (size_t count = sorter.size(); count > 0; count--) {
      const auto position = static_cast<uint64_t>(sorter.next());
      const palvor::LcpEntry entry = sorter.entry();
      // As many bytes as a record; the prefix words are not looked up.
      const palvor::Suffix record = {static_cast<uint32_t>(position >> 32),
                                     static_cast<uint32_t>(position), 0, 0};
      records.write(&record, sizeof record);
      entries.write(&entry, sizeof entry);
    }
    records.commit();
    entries.commit();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "from_scratch: %s\n", error.what());
    return 1;
  }
  return 0;
}
