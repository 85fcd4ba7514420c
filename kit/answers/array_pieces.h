// A merged order cut into pieces, which threads go through side by side.
//
// What crosses a cut has fewer characters than the suffixes on either side of
// it share there. So with cuts where they share little, what has more is in one
// piece; and where these few characters are known to be of too many genomes, on
// either side, what they are of on both sides together does not matter.

#ifndef PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_
#define PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"

namespace kit {

// The pieces begin at these records, 0 among them; another one is the end.
using ArrayCuts = std::vector<uint64_t>;

// As many pieces as keep the threads busy to the end, of the same size.
ArrayCuts evenCuts(const MergedArray& array, int jobs);

// About as many, or fewer, at places where the neighbours share less than
// `most` characters, 1 or more. Throws FileError if the array cannot be read.
ArrayCuts cutsBelow(const MergedArray& array, int jobs, uint32_t most);

// Of such cuts those where, on either side, the suffixes that share as much
// with that at the cut as this does across it are of enough genomes.
//   counted  of each genome, whether it counts
//   enough   how many of these there must be
ArrayCuts cutsAmong(const MergedArray& array, ArrayCuts cuts,
                    const Genomes& genomes, const std::vector<bool>& counted,
                    uint32_t enough);

// What neighbours share across a cut at most, in characters; 0 without any.
uint32_t sharedAcross(const MergedArray& array, const ArrayCuts& cuts);

// Hands the suffixes of a piece on, as MergedArray::pass.
using PassPiece = std::function<void(const TakeSuffixes& take)>;

// Calls work(piece, pass) for each piece, by up to `jobs` threads, which calls
// `pass` once. Shows how far it is. Throws what one of them throws.
void passPieces(
    const MergedArray& array, const std::string& doing, const ArrayCuts& cuts,
    int jobs,
    const std::function<void(size_t piece, const PassPiece& pass)>& work);

// Standard output by several threads, each of which has a part of its own: one
// part after the other, as soon as those before it have ended.
class OrderedOutput {
 public:
  // Adds to a part. Both throw std::runtime_error if nothing can be written.
  void write(size_t part, std::string_view text);

  // To be called once for each part.
  void end(size_t part);

 private:
  struct Part {
    std::string text;
    bool ended = false;
  };

  std::mutex mutex_;  // guards all below
  size_t next_ = 0;   // part to be written
  std::map<size_t, Part> waiting_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_
