// One page about a collection and its merged order, for a browser.

#ifndef PALVOR_KIT_ANSWERS_REPORT_H_
#define PALVOR_KIT_ANSWERS_REPORT_H_

#include <cstdint>
#include <string>

#include "kit/answers/kmer_spectrum.h"
#include "kit/answers/merged_options.h"

namespace kit {

struct ReportOptions {
  MergedOptions merged;
  KmerLengths k = {1, 100};
  uint32_t distanceK = 21;  // of the distances
  std::string page;         // file to write; empty: beside the merged array
  std::string log;          // of the run, see kit/answers/run_log.h; or empty
};

// Writes the page (kit/answers/report_page.h) and, beside it, a file for
// MultiQC, and prints both names. All that they tell is exact, and one pass
// over the merged order tells it. Distances and their tree are left out, and
// that is said, of more than kMostCompared genomes. Throws std::exception,
// which names the file, if the order is not there, unfinished or wrong.
void report(const ReportOptions& options);

constexpr uint32_t kMostCompared = 250;

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_REPORT_H_
