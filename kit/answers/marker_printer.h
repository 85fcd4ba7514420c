// Writes markers down as lines of a table, JSON objects or FASTA records.

#ifndef PALVOR_KIT_ANSWERS_MARKER_PRINTER_H_
#define PALVOR_KIT_ANSWERS_MARKER_PRINTER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/marker_table.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/table_printer.h"

namespace kit {

enum class MarkerFormat { kTable, kJson, kFasta };

// There may be millions of lines, so that those of tables are put together by
// hand, of what is known of each input beforehand. For one thread.
class MarkerPrinter {
 public:
  // The inputs and genomes must outlive this.
  //   flank  characters around a marker in FASTA
  MarkerPrinter(const MergedInputs& inputs, const Genomes& genomes,
                MarkerFormat format, uint32_t flank);
  MarkerPrinter(const MarkerPrinter&) = delete;
  MarkerPrinter& operator=(const MarkerPrinter&) = delete;

  // Comes before all markers.
  static std::string header(MarkerFormat format);

  // Adds a marker, which has this number. Throws FileError if a string cannot
  // be read.
  void add(const Marker& marker, uint64_t number);

  // What was added since the last clear().
  std::string_view text() const { return {room_.data(), used_}; }
  void clear() { used_ = 0; }

 private:
  // The parts of a line that are the same for all places in an input.
  struct Ends {
    std::string sequence;  // between tabs, with room behind it
    std::string genome;    // behind a tab, and the end of the line; the same
    size_t sequenceSize;
    size_t genomeSize;
  };

  void addLines(const Marker& marker, uint64_t number);
  char* putBegin(char* to, const Marker& marker, uint64_t number);
  char* putEnd(char* to, const Occurrence& place, uint32_t length) const;
  size_t roomOfEnd(uint32_t input) const;
  void addObjects(const Marker& marker, uint64_t number);
  void addRecord(const Marker& marker, uint64_t number);
  void add(std::string_view text);

  const std::vector<Occurrence>& placesOf(const Marker& marker);
  std::string sequenceOf(uint32_t input, uint32_t pos, uint32_t length);
  char* roomFor(size_t bytes);

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  MarkerFormat format_;
  uint32_t flank_;
  MergedStrings strings_;
  std::vector<Ends> ends_;  // by input
  std::string begin_;       // of the lines of a marker
  std::vector<Occurrence> places_;
  TablePrinter objects_;
  std::string room_;
  size_t used_ = 0;  // of the room
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_PRINTER_H_
