// A merged order in pieces, which threads go through side by side.

#ifndef PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_
#define PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_

#include <cstddef>
#include <functional>
#include <string>

#include "kit/answers/array_cuts.h"
#include "kit/answers/merged_array.h"

namespace kit {

// Hands the suffixes of a piece on, as MergedArray::pass.
using PassPiece = std::function<void(const TakeSuffixes& take)>;

// Calls work(piece, pass) for each piece, by up to `jobs` threads, which calls
// `pass` once. Shows how far it is. Throws what one of them throws.
void passPieces(
    const MergedArray& array, const std::string& doing, const ArrayCuts& cuts,
    int jobs,
    const std::function<void(size_t piece, const PassPiece& pass)>& work);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_ARRAY_PIECES_H_
