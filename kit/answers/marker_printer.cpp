#include "kit/answers/marker_printer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstring>
#include <utility>

#include "kit/answers/occurrence.h"
#include "kit/table_fields.h"

namespace kit {
namespace {

std::vector<std::string> markerColumns() {
  return {"marker", "sequence", "length", "in",     "out",
          "chrom",  "start",    "end",    "strand", "genome"};
}

// The four characters of each byte of a string.
constexpr std::array<std::array<char, 4>, 256> kLetters = [] {
  std::array<std::array<char, 4>, 256> letters{};
  for (unsigned byte = 0; byte < 256; byte++) {
    for (unsigned i = 0; i < 4; i++) {
      letters[byte][i] = "ACGT"[byte >> (6 - 2 * i) & 3];
    }
  }
  return letters;
}();

// Characters that are copied at once, since many short copies take longer, and
// that a slice of a string has. As many are written behind what is asked for.
constexpr size_t kBlock = 32;
constexpr size_t kMostDigits = 20;  // of a number

char* put(char* to, std::string_view text) {
  std::memcpy(to, text.data(), text.size());
  return to + text.size();
}

char* put(char* to, uint64_t number) {
  return std::to_chars(to, to + kMostDigits, number).ptr;
}

char* putBlocks(char* to, const char* from, size_t size) {
  for (size_t done = 0; done < size; done += kBlock) {
    std::memcpy(to + done, from + done, kBlock);
  }
  return to + size;
}

char* putSequence(char* to, MergedStrings& strings, uint32_t input,
                  uint32_t pos, uint32_t length) {
  for (uint32_t done = 0; done < length; done += kBlock) {
    uint64_t slice = strings.slice(input, 2 * (uint64_t{pos} + done));
    for (size_t i = 0; i < kBlock; i += 4) {
      std::memcpy(to + done + i, kLetters[slice >> 56].data(), 4);
      slice <<= 8;
    }
  }
  return to + length;
}

std::string lowerCase(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return text;
}

}  // namespace

MarkerPrinter::MarkerPrinter(const MergedInputs& inputs, const Genomes& genomes,
                             MarkerFormat format, uint32_t flank)
    : inputs_(inputs),
      genomes_(genomes),
      format_(format),
      flank_(flank),
      strings_(inputs),
      objects_(markerColumns(), true,
               [this](std::string_view text) { add(text); }) {
  for (uint32_t i = 0; i < inputs.count(); i++) {
    Ends ends = {"\t" + escaped(inputs.origin(i).sequence) + "\t",
                 "\t" + escaped(genomes.name(genomes.of(i))) + "\n", 0, 0};
    ends.sequenceSize = ends.sequence.size();
    ends.genomeSize = ends.genome.size();
    ends.sequence.resize(ends.sequenceSize + kBlock);
    ends.genome.resize(ends.genomeSize + kBlock);
    ends_.push_back(std::move(ends));
  }
}

std::string MarkerPrinter::header(MarkerFormat format) {
  if (format != MarkerFormat::kTable) return "";
  return fmt::format("{}\n", fmt::join(markerColumns(), "\t"));
}

void MarkerPrinter::add(const Marker& marker, uint64_t number) {
  switch (format_) {
    case MarkerFormat::kTable:
      addLines(marker, number);
      break;
    case MarkerFormat::kJson:
      addObjects(marker, number);
      break;
    case MarkerFormat::kFasta:
      addRecord(marker, number);
      break;
  }
}

void MarkerPrinter::addLines(const Marker& marker, uint64_t number) {
  const size_t size = marker.length + 4 * (kMostDigits + 1) + kBlock;
  if (marker.places.empty()) {
    char* const line = roomFor(size + roomOfEnd(marker.first.input));
    char* const end = putBegin(line, marker, number);
    used_ +=
        static_cast<size_t>(putEnd(end, marker.first, marker.length) - line);
    return;
  }
  begin_.resize(size);
  const auto begin = static_cast<size_t>(
      putBegin(begin_.data(), marker, number) - begin_.data());
  for (const Occurrence& place : placesOf(marker)) {
    char* const line = roomFor(size + roomOfEnd(place.input));
    char* const end = putBlocks(line, begin_.data(), begin);
    used_ += static_cast<size_t>(putEnd(end, place, marker.length) - line);
  }
}

// The fields that are of all its places.
char* MarkerPrinter::putBegin(char* to, const Marker& marker, uint64_t number) {
  to = put(to, number);
  *to++ = '\t';
  to = putSequence(to, strings_, marker.first.input, marker.first.start,
                   marker.length);
  for (const uint64_t field :
       {marker.length, marker.genomes.in, marker.genomes.out}) {
    *to++ = '\t';
    to = put(to, field);
  }
  return to;
}

char* MarkerPrinter::putEnd(char* to, const Occurrence& place,
                            uint32_t length) const {
  const Ends& ends = ends_[place.input];
  const uint64_t start = startInSequence(inputs_, place);
  to = put(putBlocks(to, ends.sequence.data(), ends.sequenceSize), start);
  *to++ = '\t';
  to = put(to, start + length);
  *to++ = '\t';
  *to++ = place.reverse ? '-' : '+';
  return putBlocks(to, ends.genome.data(), ends.genomeSize);
}

size_t MarkerPrinter::roomOfEnd(uint32_t input) const {
  const Ends& ends = ends_[input];
  return ends.sequence.size() + 2 * (kMostDigits + 1) + ends.genome.size();
}

void MarkerPrinter::addObjects(const Marker& marker, uint64_t number) {
  const std::string sequence =
      sequenceOf(marker.first.input, marker.first.start, marker.length);
  for (const Occurrence& place : placesOf(marker)) {
    const uint64_t start = startInSequence(inputs_, place);
    objects_.row({number, sequence, uint64_t{marker.length},
                  uint64_t{marker.genomes.in}, uint64_t{marker.genomes.out},
                  inputs_.origin(place.input).sequence, start,
                  start + marker.length, std::string(place.reverse ? "-" : "+"),
                  genomes_.name(genomes_.of(place.input))});
  }
}

// At its first place, in capitals, between what is around it there.
void MarkerPrinter::addRecord(const Marker& marker, uint64_t number) {
  const Occurrence& place = marker.first;
  const uint32_t left = std::min(flank_, place.start);
  const uint32_t end = place.start + marker.length;
  const uint32_t right = std::min(flank_, inputs_.length(place.input) - end);
  const uint64_t start = startInSequence(inputs_, place);
  add(fmt::format(">marker_{} {}:{}-{} {}\n{}{}{}\n", number,
                  escaped(inputs_.origin(place.input).sequence), start,
                  start + marker.length,
                  escaped(genomes_.name(genomes_.of(place.input))),
                  lowerCase(sequenceOf(place.input, place.start - left, left)),
                  sequenceOf(place.input, place.start, marker.length),
                  lowerCase(sequenceOf(place.input, end, right))));
}

const std::vector<Occurrence>& MarkerPrinter::placesOf(const Marker& marker) {
  places_.clear();
  if (marker.places.empty()) places_.push_back(marker.first);
  for (const MarkerPlace& place : marker.places) {
    places_.push_back(
        occurrenceOf(inputs_, place.input, place.pos, marker.length));
  }
  sortOccurrences(places_);
  return places_;
}

std::string MarkerPrinter::sequenceOf(uint32_t input, uint32_t pos,
                                      uint32_t length) {
  std::string text(length + kBlock, 'A');
  putSequence(text.data(), strings_, input, pos, length);
  text.resize(length);
  return text;
}

void MarkerPrinter::add(std::string_view text) {
  put(roomFor(text.size()), text);
  used_ += text.size();
}

char* MarkerPrinter::roomFor(size_t bytes) {
  if (room_.size() - used_ < bytes) {
    room_.resize(2 * room_.size() + bytes);
  }
  return room_.data() + used_;
}

}  // namespace kit
