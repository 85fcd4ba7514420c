#include "kit/answers/markers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <utility>
#include <vector>

#include "kit/answers/array_cuts.h"
#include "kit/answers/array_pieces.h"
#include "kit/answers/genomes.h"
#include "kit/answers/marker_finder.h"
#include "kit/answers/marker_printer.h"
#include "kit/answers/marker_rules.h"
#include "kit/answers/marker_runs.h"
#include "kit/answers/marker_table.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/ordered_output.h"
#include "kit/answers/pangenome_statistics.h"
#include "kit/range_work.h"
#include "kit/standard_output.h"

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

// What is asked for, of each genome and input.
struct Question {
  std::vector<bool> wanted;     // by input
  std::vector<uint32_t> kinds;  // by input: what tells two genomes apart
  std::vector<Side> sides;      // of genomes, if some of --out may have it
  uint32_t allowed = 0;         // of those
  uint32_t needed = 1;
};

Question uniqueQuestion(const Genomes& genomes) {
  if (genomes.count() < 2) throw std::runtime_error("there is one genome only");
  const std::vector<uint32_t>& kinds = genomes.ofInputs();
  return {std::vector<bool>(kinds.size(), true), kinds, {}};
}

Question groupQuestion(const MarkersOptions& options, const Genomes& genomes) {
  Question question;
  question.sides = sidesOf(options, genomes);
  const std::vector<Side>& sides = question.sides;
  const auto ins =
      static_cast<uint32_t>(std::count(sides.begin(), sides.end(), Side::kIn));
  const auto outs =
      static_cast<uint32_t>(std::count(sides.begin(), sides.end(), Side::kOut));
  // A product that should be a whole number may be a little less.
  question.allowed =
      static_cast<uint32_t>(std::floor(options.maxFraction * outs + 1e-9));
  if (question.allowed >= outs) {
    throw std::runtime_error(
        "all genomes of --out may have the markers, so "
        "that these would tell nothing");
  }
  question.needed = quorumOf(options.minFraction, ins);
  for (const uint32_t genome : genomes.ofInputs()) {
    question.wanted.push_back(sides[genome] == Side::kIn);
    question.kinds.push_back(sides[genome] == Side::kOut ? 1 : 0);
  }
  return question;
}

// Where what crosses the cut breaks the rule on either side.
ArrayCuts cutsFor(const MergedArray& array, int jobs, const Genomes& genomes,
                  const Question& question) {
  ArrayCuts cuts = cutsBelow(array, jobs, UINT32_MAX);
  std::vector<bool> counted(genomes.count(), true);
  uint32_t enough = 2;  // one genome only shall have it
  if (!question.sides.empty()) {
    for (uint32_t g = 0; g < genomes.count(); g++) {
      counted[g] = question.sides[g] == Side::kOut;
    }
    enough = question.allowed + 1;
  }
  return cutsAmong(array, std::move(cuts), genomes, counted, enough);
}

void look(const MergedArray& array, int jobs, const Genomes& genomes,
          const Question& question, MarkerTable& table) {
  const ArrayCuts cuts = cutsFor(array, jobs, genomes, question);
  const auto passTo = [](const PassPiece& pass, auto&& finder) {
    pass(takenBy(finder));
    finder.finish();
  };
  passPieces(array, "looking for markers", cuts, jobs,
             [&](size_t, const PassPiece& pass) {
               if (question.allowed == 0) {
                 passTo(pass, MarkerRuns(genomes, question.kinds, table));
               } else {
                 const GroupRule rule(question.sides, question.allowed);
                 passTo(pass, MarkerFinder(genomes, rule, table));
               }
             });
  table.finish();
}

constexpr uint32_t kStretch = 8192;  // characters: lines for a near cache

// All that there are where markers may begin.
std::vector<MarkerStretch> stretchesOf(const MergedInputs& inputs,
                                       const MarkerTable& table) {
  std::vector<MarkerStretch> stretches;
  for (uint32_t i = 0; i < inputs.count(); i++) {
    if (!table.isWanted(i) || inputs.forwardOf(i) != i) continue;
    for (uint32_t from = 0; from < inputs.length(i); from += kStretch) {
      const uint32_t rest = inputs.length(i) - from;
      stretches.push_back({i, from, from + std::min(rest, kStretch)});
    }
  }
  return stretches;
}

MarkerFormat formatOf(const MarkersOptions& options) {
  if (options.fasta) return MarkerFormat::kFasta;
  return options.json ? MarkerFormat::kJson : MarkerFormat::kTable;
}

void print(const MarkersOptions& options, const MergedInputs& inputs,
           const Genomes& genomes, const MarkerTable& table) {
  const MarkerFormat format = formatOf(options);
  const std::vector<MarkerStretch> stretches = stretchesOf(inputs, table);
  const auto eachStretch = [&](const std::function<RangeWork::Worker()>& make) {
    RangeWork("printing", stretches.size(), 0).run(options.jobs, make);
  };
  // Markers before each stretch. One thread counts as it prints.
  std::vector<uint64_t> before(stretches.size() + 1);
  if (options.jobs > 1) {
    eachStretch([&] {
      return [&](size_t stretch) {
        uint64_t& count = before[stretch + 1];
        table.eachMarker(stretches[stretch], [&](const Marker&) { count++; });
      };
    });
    std::partial_sum(before.begin(), before.end(), before.begin());
  }
  writeOutput(MarkerPrinter::header(format));
  OrderedOutput output;
  eachStretch([&] {
    const auto printer =
        std::make_shared<MarkerPrinter>(inputs, genomes, format, options.flank);
    return [&, printer](size_t stretch) {
      uint64_t number = before[stretch];
      table.eachMarker(stretches[stretch], [&](const Marker& marker) {
        printer->add(marker, ++number);
      });
      output.write(stretch, printer->text());
      output.end(stretch);
      if (options.jobs == 1) before[stretch + 1] = number;
      printer->clear();
    };
  });
}

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
  const Question question = options.unique ? uniqueQuestion(genomes)
                                           : groupQuestion(options, genomes);
  MarkerTable table(inputs, question.wanted, options.maxLength,
                    question.needed);
  look(array, options.jobs, genomes, question, table);
  print(options, inputs, genomes, table);
  finishOutput();
}

}  // namespace kit
