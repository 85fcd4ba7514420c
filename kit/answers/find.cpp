#include "kit/answers/find.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

#include "kit/answers/genomes.h"
#include "kit/answers/maximal_matches.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/pattern_finder.h"
#include "kit/answers/suffix_search.h"
#include "kit/answers/tree_search.h"
#include "kit/progress.h"
#include "kit/standard_output.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

std::vector<std::string> columnsOf(const FindOptions& options) {
  switch (options.table) {
    case FindTable::kCount:
      return {"pattern", "count", "genomes"};
    case FindTable::kGenomes:
      return {"pattern", "genome", "count"};
    default:  // BED, whose lines of names begin with #
      return {options.json ? "chrom" : "#chrom",
              "start",
              "end",
              "name",
              "score",
              "strand",
              "genome"};
  }
}

class FindPrinter {
 public:
  FindPrinter(const FindOptions& options, const MergedInputs& inputs,
              const Genomes& genomes)
      : table_(options.table),
        inputs_(inputs),
        genomes_(genomes),
        printer_(columnsOf(options), options.json) {}

  void print(const Pattern& pattern, const std::vector<Occurrence>& found) {
    if (table_ == FindTable::kPlaces) {
      printPlaces(pattern, found);
      return;
    }
    std::map<uint32_t, uint64_t> counts;
    for (const Occurrence& occurrence : found) {
      counts[genomes_.of(occurrence.input)]++;
    }
    if (table_ == FindTable::kCount) {
      printer_.row({pattern.name(), found.size(), counts.size()});
      return;
    }
    for (const auto& [genome, count] : counts) {
      printer_.row({pattern.name(), genomes_.name(genome), count});
    }
  }

 private:
  void printPlaces(const Pattern& pattern,
                   const std::vector<Occurrence>& found) {
    for (const Occurrence& occurrence : found) {
      const uint64_t start = startInSequence(inputs_, occurrence);
      printer_.row({inputs_.origin(occurrence.input).sequence, start,
                    start + pattern.text().size(), pattern.name(), uint64_t{0},
                    std::string(occurrence.reverse ? "-" : "+"),
                    genomes_.name(genomes_.of(occurrence.input))});
    }
  }

  FindTable table_;
  const MergedInputs& inputs_;
  const Genomes& genomes_;
  TablePrinter printer_;
};

void findPatterns(const FindOptions& options,
                  const std::vector<Pattern>& patterns,
                  const PatternFinder& finder, FindPrinter& printer) {
  Progress progress;
  uint64_t done = 0;
  const auto look = [&](const Pattern& pattern) {
    printer.print(pattern, finder.find(pattern));
    if (++done % 256 == 0) {
      progress.show(fmt::format("{} patterns looked up", done));
    }
  };
  for (const Pattern& pattern : patterns) look(pattern);
  if (options.file.empty()) return;
  readQueries(options.file, [&](const Query& query) {
    look(patternOf(query, options.file));
  });
}

// Patterns from the command line, read before anything is opened.
std::vector<Pattern> patternsOf(const FindOptions& options) {
  if (options.mem > 0 && (!options.patterns.empty() || options.file.empty())) {
    throw std::runtime_error("--mem is for the sequences of a file (-f)");
  }
  if (options.patterns.empty() && options.file.empty()) {
    std::error_code ignored;
    const bool isData = std::filesystem::exists(
        options.merged.dataBase() + ".stlengths", ignored);
    throw std::runtime_error(
        "no pattern, and no file of them (-f)" +
        (isData ? ""
                : fmt::format(": '{}' is no result of build, so that '{}' is "
                              "its prefix",
                              options.merged.inputdir, options.merged.prefix)));
  }
  std::vector<Pattern> patterns;
  for (const std::string& word : options.patterns) {
    patterns.push_back(patternOf(word));
  }
  return patterns;
}

void findBy(const FindOptions& options, const std::vector<Pattern>& patterns,
            const MergedInputs& inputs, const Genomes& genomes,
            FindSuffixes search) {
  const PatternFinder finder(inputs, std::move(search));
  FindPrinter printer(options, inputs, genomes);
  findPatterns(options, patterns, finder, printer);
}

}  // namespace

void find(const FindOptions& options) {
  const std::vector<Pattern> patterns = patternsOf(options);
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const std::string base = options.merged.mergedBase();
  MergedStrings strings(inputs);
  if (options.mem == 0 && onlyTreesAreThere(base)) {
    TreeSearch search(inputs, strings, base);
    findBy(options, patterns, inputs, genomes,
           [&](const Pattern& pattern, const TakeSuffix& take) {
             search.eachSuffix(pattern, take);
           });
  } else {
    SuffixSearch search(inputs, strings, base);
    if (options.mem > 0) {
      printMaximalMatches(options.file, options.mem, inputs, strings, search);
    } else {
      findBy(options, patterns, inputs, genomes,
             [&](const Pattern& pattern, const TakeSuffix& take) {
               search.eachSuffix(pattern, 0, pattern.text().size(), take);
             });
    }
  }
  finishOutput();
}

}  // namespace kit
