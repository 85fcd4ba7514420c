#include "kit/answers/markers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/marker_finder.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/occurrence.h"
#include "kit/answers/pangenome_statistics.h"
#include "kit/standard_output.h"
#include "kit/table_fields.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

// Puts the genomes of a group, or the one genome of that name, on a side.
void choose(const Genomes& genomes, const std::string& name, Side side,
            std::vector<Side>& sides) {
  const auto isChosen = [&](uint32_t g, bool byGroup) {
    if (byGroup) return genomes.group(g) == name;
    return genomes.name(g) == name ||
           std::filesystem::path(genomes.name(g)).filename() == name;
  };
  bool found = false;
  for (const bool byGroup : {true, false}) {
    for (uint32_t g = 0; g < genomes.count() && !name.empty(); g++) {
      if (!isChosen(g, byGroup)) continue;
      if (sides[g] != Side::kNeither) {
        throw std::runtime_error(
            fmt::format("{} is in both groups", genomes.name(g)));
      }
      sides[g] = side;
      found = true;
    }
    if (found) return;
  }
  throw std::runtime_error(
      fmt::format("there is no group and no genome '{}' (see --groups)", name));
}

std::vector<Side> sidesOf(const MarkersOptions& options,
                          const Genomes& genomes) {
  std::vector<Side> sides(genomes.count(), Side::kNeither);
  choose(genomes, options.in, Side::kIn, sides);
  if (options.out.empty()) {
    std::replace(sides.begin(), sides.end(), Side::kNeither, Side::kOut);
  } else {
    choose(genomes, options.out, Side::kOut, sides);
  }
  return sides;
}

template <typename Rule>
std::vector<Marker> findMarkers(const MarkersOptions& options,
                                const MergedArray& array,
                                const MergedInputs& inputs,
                                const Genomes& genomes, Rule rule,
                                uint32_t needed) {
  MarkerFinder<Rule> finder(inputs, genomes, std::move(rule), options.maxLength,
                            needed);
  array.pass("looking for markers", [&](std::span<const Suffix> suffixes,
                                        std::span<const LcpEntry> entries) {
    finder.take(suffixes, entries);
  });
  return finder.finish();
}

std::vector<Marker> findMarkers(const MarkersOptions& options,
                                const MergedArray& array,
                                const MergedInputs& inputs,
                                const Genomes& genomes) {
  if (options.unique) {
    if (genomes.count() < 2) {
      throw std::runtime_error("there is one genome only");
    }
    return findMarkers(options, array, inputs, genomes, UniqueRule(), 1);
  }
  const std::vector<Side> sides = sidesOf(options, genomes);
  const auto ins =
      static_cast<uint32_t>(std::count(sides.begin(), sides.end(), Side::kIn));
  const auto outs =
      static_cast<uint32_t>(std::count(sides.begin(), sides.end(), Side::kOut));
  // A product that should be a whole number may be a little less.
  const auto allowed =
      static_cast<uint32_t>(std::floor(options.maxFraction * outs + 1e-9));
  if (allowed >= outs) {
    throw std::runtime_error(
        "all genomes of --out may have the markers, so "
        "that these would tell nothing");
  }
  return findMarkers(options, array, inputs, genomes, GroupRule(sides, allowed),
                     quorumOf(options.minFraction, ins));
}

class MarkerPrinter {
 public:
  MarkerPrinter(const MergedArray& array, const MergedInputs& inputs,
                const Genomes& genomes)
      : array_(array), inputs_(inputs), genomes_(genomes), strings_(inputs) {}

  void table(const std::vector<Marker>& markers, bool json) {
    TablePrinter printer({"marker", "sequence", "length", "in", "out", "chrom",
                          "start", "end", "strand", "genome"},
                         json);
    uint64_t number = 0;
    for (const Marker& marker : markers) {
      number++;
      const std::string sequence =
          text(marker.first.input, marker.first.start, marker.length);
      for (const Occurrence& place : placesOf(marker)) {
        const uint64_t start = startInSequence(inputs_, place);
        printer.row({number, sequence, uint64_t{marker.length},
                     uint64_t{marker.genomes.in}, uint64_t{marker.genomes.out},
                     inputs_.origin(place.input).sequence, start,
                     start + marker.length,
                     std::string(place.reverse ? "-" : "+"),
                     genomes_.name(genomes_.of(place.input))});
      }
    }
  }

  // Each at its first place, in capitals, between what is around it there.
  void fasta(const std::vector<Marker>& markers, uint32_t flank) {
    uint64_t number = 0;
    for (const Marker& marker : markers) {
      const Occurrence& place = marker.first;
      const uint32_t left = std::min(flank, place.start);
      const uint32_t end = place.start + marker.length;
      const uint32_t right = std::min(flank, inputs_.length(place.input) - end);
      const uint64_t start = startInSequence(inputs_, place);
      writeOutput(
          fmt::format(">marker_{} {}:{}-{} {}\n{}{}{}\n", ++number,
                      escaped(inputs_.origin(place.input).sequence), start,
                      start + marker.length,
                      escaped(genomes_.name(genomes_.of(place.input))),
                      lowerCase(text(place.input, place.start - left, left)),
                      text(place.input, place.start, marker.length),
                      lowerCase(text(place.input, end, right))));
    }
  }

 private:
  std::vector<Occurrence> placesOf(const Marker& marker) const {
    std::vector<Occurrence> places;
    if (marker.end - marker.begin == 1) return {marker.first};
    for (const Suffix& suffix :
         array_.records(marker.begin, marker.end - marker.begin)) {
      places.push_back(occurrenceOf(inputs_, inputNumber(suffix), suffix.pos,
                                    marker.length));
    }
    sortOccurrences(places);
    return places;
  }

  std::string text(uint32_t input, uint32_t pos, uint32_t length) {
    std::string result(length, 'A');
    for (uint32_t i = 0; i < length; i++) {
      result[i] = "ACGT"[strings_.code(input, pos + i)];
    }
    return result;
  }

  static std::string lowerCase(std::string text) {
    for (char& c : text) {
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
  }

  const MergedArray& array_;
  const MergedInputs& inputs_;
  const Genomes& genomes_;
  MergedStrings strings_;
};

}  // namespace

void markers(const MarkersOptions& options) {
  if (options.unique == !options.in.empty()) {
    throw std::runtime_error(
        "either --in, with a group or genome, or --unique");
  }
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);
  const std::vector<Marker> found =
      findMarkers(options, array, inputs, genomes);
  MarkerPrinter printer(array, inputs, genomes);
  if (options.fasta) {
    printer.fasta(found, options.flank);
  } else {
    printer.table(found, options.json);
  }
  finishOutput();
}

}  // namespace kit
