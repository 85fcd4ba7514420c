#include "kit/answers/shared.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/answers/array_cuts.h"
#include "kit/answers/array_pieces.h"
#include "kit/answers/genome_intervals.h"
#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/occurrence.h"
#include "kit/answers/ordered_output.h"
#include "kit/answers/unique_matches.h"
#include "kit/json.h"
#include "kit/standard_output.h"
#include "kit/table_fields.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

// The longest substrings that at least so many genomes have, as the intervals
// of the suffixes that begin with them.
class LongestShared {
 public:
  LongestShared(const Genomes& genomes, uint32_t fewest)
      : genomes_(genomes),
        fewest_(fewest),
        intervals_(*this, genomes.count(), 0, UINT32_MAX) {}
  LongestShared(const LongestShared&) = delete;
  LongestShared& operator=(const LongestShared&) = delete;

  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries) {
    for (size_t i = 0; i < suffixes.size(); i++) {
      const bool first = intervals_.taken() == 0;
      intervals_.take(first ? 0 : lcpCharacters(entries[i]),
                      genomes_.of(inputNumber(suffixes[i])));
    }
  }

  std::vector<GenomeInterval> finish() {
    intervals_.finish();
    return longest_;
  }

 private:
  friend class GenomeIntervals<LongestShared>;

  void close(const GenomeInterval& interval) {
    if (interval.genomes < fewest_) return;
    if (!longest_.empty() && interval.depth < longest_[0].depth) return;
    if (!longest_.empty() && interval.depth > longest_[0].depth) {
      longest_.clear();
    }
    longest_.push_back(interval);
  }

  const Genomes& genomes_;
  uint32_t fewest_;
  GenomeIntervals<LongestShared> intervals_;
  std::vector<GenomeInterval> longest_;
};

// Of all pieces of the order, in order.
std::vector<GenomeInterval> longestOf(const MergedArray& array,
                                      const ArrayCuts& cuts, int jobs,
                                      const Genomes& genomes, uint32_t fewest) {
  std::vector<std::vector<GenomeInterval>> ofPieces(cuts.size() - 1);
  passPieces(array, "looking for what is shared", cuts, jobs,
             [&](size_t piece, const PassPiece& pass) {
               LongestShared own(genomes, fewest);
               pass(takenBy(own));
               ofPieces[piece] = own.finish();
             });
  uint32_t longest = 0;
  for (const auto& found : ofPieces) {
    if (!found.empty()) longest = std::max(longest, found[0].depth);
  }
  std::vector<GenomeInterval> all;
  for (size_t piece = 0; piece < ofPieces.size(); piece++) {
    for (GenomeInterval interval : ofPieces[piece]) {
      if (interval.depth < longest) continue;
      interval.begin += cuts[piece];
      interval.end += cuts[piece];
      all.push_back(interval);
    }
  }
  return all;
}

std::vector<GenomeInterval> longestOf(const MergedArray& array, int jobs,
                                      const Genomes& genomes, uint32_t fewest) {
  const ArrayCuts cuts = cutsBelow(array, jobs, UINT32_MAX);
  std::vector<GenomeInterval> found =
      longestOf(array, cuts, jobs, genomes, fewest);
  // What is as short as that may be longer across a cut, or of more genomes.
  const uint32_t across = sharedAcross(array, cuts);
  if (cuts.size() > 2 && (found.empty() || found[0].depth <= across)) {
    return longestOf(array, evenCuts(array, 1), 1, genomes, fewest);
  }
  return found;
}

void printLongest(const SharedOptions& options, uint32_t fewest,
                  const MergedArray& array, const MergedInputs& inputs,
                  const Genomes& genomes) {
  TablePrinter printer({"substring", "length", "genomes", "chrom", "start",
                        "end", "strand", "genome"},
                       options.json);
  uint64_t number = 0;
  for (const GenomeInterval& interval :
       longestOf(array, options.jobs, genomes, fewest)) {
    std::vector<Occurrence> places;
    for (const Suffix& suffix :
         array.records(interval.begin, interval.end - interval.begin)) {
      places.push_back(occurrenceOf(inputs, inputNumber(suffix), suffix.pos,
                                    interval.depth));
    }
    sortOccurrences(places);
    // It is found as its reverse complement too.
    if (places[0].reverse) continue;
    number++;
    for (const Occurrence& place : places) {
      const uint64_t start = startInSequence(inputs, place);
      printer.row({number, uint64_t{interval.depth}, interval.genomes,
                   inputs.origin(place.input).sequence, start,
                   start + interval.depth,
                   std::string(place.reverse ? "-" : "+"),
                   genomes.name(genomes.of(place.input))});
    }
  }
}

// The layout of multi-MUMs: length, and, by genomes, places from 0 and strands,
// parted by commas; and since places are those in records, these too.
class MatchPrinter {
 public:
  MatchPrinter(const MergedInputs& inputs, const Genomes& genomes, bool json,
               WriteText write)
      : inputs_(inputs),
        genomes_(genomes),
        json_(json),
        write_(std::move(write)) {}

  void print(const UniqueMatch& match) const {
    if (json_) {
      printJson(match);
      return;
    }
    std::string starts, strands, sequences;
    auto next = match.occurrences.begin();
    for (uint32_t g = 0; g < genomes_.count(); g++) {
      const char* comma = g == 0 ? "" : ",";
      starts += comma;
      strands += comma;
      sequences += comma;
      if (next == match.occurrences.end() || genomes_.of(next->input) != g) {
        continue;
      }
      starts += fmt::format("{}", startInSequence(inputs_, *next));
      strands += next->reverse ? '-' : '+';
      sequences += escaped(inputs_.origin(next->input).sequence);
      ++next;
    }
    write_(fmt::format("{}\t{}\t{}\t{}\n", match.length, starts, strands,
                       sequences));
  }

 private:
  void printJson(const UniqueMatch& match) const {
    Json places = Json::array();
    for (const Occurrence& place : match.occurrences) {
      places.push_back({{"genome", genomes_.name(genomes_.of(place.input))},
                        {"chrom", inputs_.origin(place.input).sequence},
                        {"start", startInSequence(inputs_, place)},
                        {"strand", place.reverse ? "-" : "+"}});
    }
    write_(jsonLine({{"length", match.length}, {"places", places}}));
  }

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  bool json_;
  WriteText write_;
};

void printMatches(const SharedOptions& options, uint32_t fewest,
                  const MergedArray& array, const MergedInputs& inputs,
                  const Genomes& genomes) {
  // No match is across a cut.
  const ArrayCuts cuts = cutsBelow(array, options.jobs, options.minLength);
  OrderedOutput output;
  passPieces(array, "looking for unique matches", cuts, options.jobs,
             [&](size_t piece, const PassPiece& pass) {
               const MatchPrinter printer(
                   inputs, genomes, options.json,
                   [&](std::string_view text) { output.write(piece, text); });
               MergedStrings strings(inputs);
               UniqueMatches matches(
                   inputs, genomes, strings, options.minLength, fewest,
                   [&](const UniqueMatch& match) { printer.print(match); });
               pass(takenBy(matches));
               matches.finish();
               output.end(piece);
             });
}

}  // namespace

void shared(const SharedOptions& options) {
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  if (genomes.count() < 2) throw std::runtime_error("there is one genome only");
  const uint32_t fewest = options.inAtLeast.value_or(genomes.count());
  if (fewest > genomes.count()) {
    throw std::runtime_error(
        fmt::format("--in-at-least {}: there are only {} "
                    "genomes",
                    fewest, genomes.count()));
  }
  warnOfOneStrand(inputs);
  if (options.mums) {
    printMatches(options, fewest, array, inputs, genomes);
  } else {
    printLongest(options, fewest, array, inputs, genomes);
  }
  finishOutput();
}

}  // namespace kit
