// Finds the shortest strings that keep a rule which one suffix can break: of no
// genome that must not have them, or of one genome only.
//
// Suffixes of one kind that stand side by side are a run. What a suffix shares
// with the nearest one of another kind, before the run or behind it, breaks the
// rule, and a character more keeps it. So each run is settled as soon as the
// next one begins, whatever LCP intervals it is in:
//
//    B1     A1     A2     A3     B2      A1 and A2 share 4 characters with a B
//        4      7      3      5          and 7 with each other: 5 characters
//                                        tell them, together; A3 takes 6.

#ifndef PALVOR_KIT_ANSWERS_MARKER_RUNS_H_
#define PALVOR_KIT_ANSWERS_MARKER_RUNS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/marker_table.h"
#include "kit/records.h"

namespace kit {

// Memory: 16 bytes for each suffix of a run.
class MarkerRuns {
 public:
  // All must outlive this.
  //   kinds  of each input
  MarkerRuns(const Genomes& genomes, const std::vector<uint32_t>& kinds,
             MarkerTable& table);

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // To be called once, when all suffixes were taken: adds to the table.
  void finish();

 private:
  // What a suffix shares, in characters.
  struct Shares {
    uint32_t before;  // with the suffix before it
    uint32_t others;  // with the nearest of another kind
  };

  uint32_t kindOf(size_t suffix) const { return kinds_[places_[suffix].input]; }
  void endRuns(size_t end);
  void settle(size_t end);
  void settleTogether(size_t begin, size_t end);

  const Genomes& genomes_;
  const std::vector<uint32_t>& kinds_;
  MarkerTable& table_;
  MarkerTable::Writer writer_;
  // Of the last suffixes, from the beginning of a run on.
  std::vector<MarkerPlace> places_;
  std::vector<Shares> shares_;
  size_t lastRun_ = 0;         // where the last of their runs begins
  std::vector<uint64_t> set_;  // a bit for each genome
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKER_RUNS_H_
