// The floor under palvor-kit prepare: the sort alone, of each file's suffixes,
// by the library that the kit sorts with. The files are read, nothing is
// written.
//
// usage: bare_sort <FASTA>...

#include <divsufsort.h>

#include <fstream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  for (int i = 1; i < argc; i++) {
    std::ifstream file(argv[i]);
    if (!file) return 1;
    std::string text, line;
    while (std::getline(file, line)) {
      if (!line.starts_with('>')) text += line;
    }
    std::vector<int> order(text.size());
    if (divsufsort(reinterpret_cast<const unsigned char*>(text.data()),
                   order.data(), static_cast<int>(text.size())) != 0) {
      return 1;
    }
  }
  return 0;
}
