// The suffixes of one suffix array's inputs, in order.
//
// A suffix ends where its input ends. Suffixes are in the order of their
// characters; one that is a prefix of another comes first, and equal ones,
// which stand in different inputs, come in the order of their inputs.
//
// Takes 4 bytes of memory a character, 8 if there are several inputs or common
// prefixes are wanted, beside the text itself, and time proportional to the
// text, whatever it repeats.

#ifndef PALVOR_KIT_SUFFIX_SORTER_H_
#define PALVOR_KIT_SUFFIX_SORTER_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "kit/psa_text.h"
#include "sources/lcp_entry.h"

namespace kit {

class SuffixSorter {
 public:
  // Sorts. The text, of at least one input, must outlive the sorter.
  // Throws std::runtime_error if the text cannot be sorted, and if an LCP that
  // is wanted does not fit an entry.
  SuffixSorter(const PsaText& psa, bool wantLcp);

  // Number of suffixes: the characters of the inputs.
  size_t size() const { return order_.size() - first_; }

  // Where the next suffix, in order, begins in the text. To be called size()
  // times.
  size_t next();

  // The LCP entry of the suffix that `next` gave last with the one before it;
  // 0 for the first. Only if LCPs are wanted.
  LcpEntry entry() const { return index_ == first_ + 1 ? 0 : entry_; }

 private:
  void computePrefixes();
  bool equalsTheOneBefore(size_t index) const;

  std::string_view text_;
  bool wantLcp_;
  std::vector<int32_t> order_;      // all suffixes, the separators' first
  std::vector<uint32_t> prefixes_;  // by text position: the LCP entry with the
                                    // suffix before, and a mark if they are
                                    // equal; or empty
  size_t first_ = 0;                // index of the first suffix of an input
  size_t index_ = 0;                // of the suffix given last, plus 1
  size_t runEnd_ = 0;               // end of its run of equal suffixes
  LcpEntry entry_ = 0;              // of the suffix given last
  LcpEntry runEntry_ = 0;           // of all of its run but the first
};

}  // namespace kit

#endif  // PALVOR_KIT_SUFFIX_SORTER_H_
