#include "palvor/text/stretch_builder.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "palvor/text/axis.h"
#include "palvor/text/kmer_table.h"
#include "palvor/text/likeness.h"
#include "palvor/text/sampled_kmers.h"

namespace palvor {
namespace {

// Text behind a difference is looked at this far, in characters, and goes on
// along the diagonal if so many of them are alike. Unrelated text has 8.
constexpr uint32_t kBehind = 32;
constexpr uint32_t kAlike = 20;

// Where the diagonal breaks off as it did in an earlier string, text behind it
// is taken to be the same if so many characters are.
constexpr uint32_t kBehindBreak = 12;

// A string may take one stretch for so many characters, and some more; what is
// left of one that takes more is anchored at itself.
constexpr uint32_t kDensest = 32;
constexpr size_t kFewStretches = 256;

// The least distance of a text and what it copies, in characters.
constexpr uint32_t kShortestUnit = 64;

// K-mers that are looked up together.
constexpr uint32_t kBatch = 16;

}  // namespace

class StretchBuilder {
 public:
  StretchBuilder(std::span<const PackedString> strings,
                 const std::vector<bool>& takePart)
      : axis_(strings, takePart) {}

  Stretches build() {
    if (axis_.strings() == 0) return {};
    result_.bases_ = axis_.basesByInput();
    result_.blocks_.resize((axis_.end() - 1) / Stretches::kBlock + 1);
    result_.stretches_.reserve(axis_.end() / 64 + 2 * axis_.strings());
    kmers_ = KmerTable(lengthOf(axis_.string(0)) / 32);
    for (current_ = 0; current_ < axis_.strings(); current_++) walk();
    fillBlocks(axis_.end());
    result_.last_ = result_.stretches_.back().end;
    result_.stretches_.push_back({Axis::kNowhere, 0, 0, 0});
    result_.ranks_ = StretchRanks(axis_, result_.stretches_);
    return std::move(result_);
  }

 private:
  using Place = Axis::Place;

  struct Sampled {
    uint32_t position;
    uint64_t hash;
  };

  uint32_t axisPosition(Place place) const {
    return axis_.base(place.string) + place.position;
  }

  const PackedString& string() const { return axis_.string(current_); }
  uint32_t base() const { return axis_.base(current_); }

  // Writes the current string as stretches.
  void walk() {
    const uint32_t length = lengthOf(string());
    most_ = std::min<size_t>(
        result_.stretches_.size() + length / kDensest + kFewStretches,
        kRanks - axis_.strings());
    const uint32_t end = length > kKmerReach ? length - kKmerReach : 0;
    uint32_t covered = 0;
    uint32_t at = 0;
    uint32_t batch = 1;
    while (at < end && result_.stretches_.size() < most_) {
      // Behind a difference, the first k-mer is mostly known; in new text none
      // is for long.
      sampleFrom(at, end, batch);
      batch = std::min(2 * batch, kBatch);
      at = sampled_.empty() ? end : sampled_.back().position + 1;
      for (const Sampled& kmer : sampled_) {
        const uint32_t earlier =
            kmers_.findOrAdd(kmer.hash, base() + kmer.position);
        if (earlier == KmerTable::kNone) continue;
        const uint32_t to =
            follow(covered, kmer.position, axis_.placeOf(earlier));
        if (to == covered) continue;
        covered = to;
        at = to;
        batch = 1;
        break;
      }
    }
    if (covered <= length) append(selfAnchored(covered));
  }

  // Takes the next `count` k-mers from a position on, as far as they begin
  // before `end`, and asks for their places in the table.
  void sampleFrom(uint32_t from, uint32_t end, uint32_t count) {
    sampled_.clear();
    for (uint32_t at = nextSampled(string(), from, end);
         at < end && sampled_.size() < count;
         at = nextSampled(string(), at + 1, end)) {
      sampled_.push_back({at, kmerHash(string(), at)});
      kmers_.prefetch(sampled_.back().hash);
    }
  }

  // Follows an earlier place's text, whose k-mer is likely to be that at `at`,
  // to both sides, over differences. Nothing is known from `covered` on.
  // Returns from where on that is so now: behind the last difference, `covered`
  // if the texts are not alike, or behind the string's end.
  uint32_t follow(uint32_t covered, uint32_t at, Place earlier) {
    const PackedString& other = axis_.string(earlier.string);
    uint32_t run =
        commonCharacters(string(), at, other, earlier.position, UINT32_MAX);
    if (run < kKmer) return covered;
    const uint32_t before =
        commonCharactersBefore(string(), at, other, earlier.position,
                               std::min(at - covered, earlier.position));
    at -= before;
    earlier.position -= before;
    run += before;
    // A tandem repeat of a short unit is taken to be one of several units, or
    // each would be a stretch.
    const uint32_t shift = base() + at - axisPosition(earlier);
    if (shift < kShortestUnit) {
      const uint32_t more = (kShortestUnit - 1) / shift * shift;
      if (more >= run) return covered;
      at += more;
      run -= more;
    }
    if (covered < at) append(selfAnchored(covered));
    do {
      const uint32_t behind = at + run + 1;
      at = copy(at, earlier, run);
      if (at < behind) return at;
      earlier.position += run + 1;
    } while (goOnBehind(at, earlier, run));
    return at;
  }

  // Finds what the text from `at` on, just behind a difference, runs along:
  // `earlier`, which comes in as the place on the same diagonal as before, and
  // for how many characters, `run`. False if nothing is found, or nothing left.
  bool goOnBehind(uint32_t at, Place& earlier, uint32_t& run) {
    if (at > lengthOf(string())) return false;
    const Stretch& last = result_.stretches_.back();
    if (last.end >= base() + at) {
      // It differs from the earlier text, but not from what that differs from.
      earlier = axis_.placeOf(last.anchor + (base() + at - last.start));
      run = last.end - (base() + at);
      return true;
    }
    const PackedString& other = axis_.string(earlier.string);
    if (earlier.position <= lengthOf(other) && goesOn(at, earlier)) {
      run = commonCharacters(string(), at, other, earlier.position, UINT32_MAX);
      return true;
    }
    // Others may have left the anchor's text here in the same way.
    const uint64_t place = leftAt(last);
    const uint32_t next = breaks_.findOrAdd(
        mixed(place << 3 | symbolOf(last.parting)), base() + at);
    if (next == KmerTable::kNone) return false;
    if (base() + at - next < kShortestUnit) return false;
    earlier = axis_.placeOf(next);
    run = commonCharacters(string(), at, axis_.string(earlier.string),
                           earlier.position, UINT32_MAX);
    return run >= kBehindBreak;
  }

  // Whether two places behind a difference are alike enough to go on.
  bool goesOn(uint32_t at, Place earlier) const {
    const PackedString& other = axis_.string(earlier.string);
    const uint32_t left =
        std::min(lengthOf(string()) - at, lengthOf(other) - earlier.position);
    if (left < kBehind) {
      return left > 0 && commonCharacters(string(), at, other, earlier.position,
                                          left) == left;
    }
    const uint64_t differing =
        manyCharacters(string(), at) ^ manyCharacters(other, earlier.position);
    const uint64_t characters =
        (differing | differing >> 1) & 0x5555555555555555;
    return kBehind - static_cast<uint32_t>(std::popcount(characters)) >= kAlike;
  }

  // Writes the `run` characters from `at` on, and the one behind them, as what
  // an earlier place runs along. That has the same characters, but another one
  // behind them. Returns how far it came: behind that one, unless the string
  // has its most stretches.
  uint32_t copy(uint32_t at, Place earlier, uint32_t run) {
    const uint32_t end = base() + at + run;  // where the two differ
    const uint32_t symbol = symbolAt(string(), at + run);
    const uint32_t otherSymbol =
        symbolAt(axis_.string(earlier.string), earlier.position + run);
    uint32_t own = base() + at;
    uint32_t from = axis_.base(earlier.string) + earlier.position;
    uint32_t number = stretchAt(from);
    while (own <= end && result_.stretches_.size() < most_) {
      const Stretch stretch = result_.stretches_[number];
      const uint32_t passed = from - stretch.start;
      Stretch piece = {own, stretch.anchor + passed, 0, 0};
      const uint32_t agreed = stretch.end - from;
      if (agreed < end - own) {
        // The earlier text parts from it first.
        piece.end = own + agreed;
        piece.parting = stretch.parting;
      } else if (agreed > end - own) {
        piece.end = end;
        piece.parting = makeParting(symbol, otherSymbol);
      } else if (symbol != anchorSymbolOf(stretch.parting) ||
                 symbol == kEndOfString) {
        piece.end = end;
        piece.parting = makeParting(symbol, anchorSymbolOf(stretch.parting));
      } else {
        goOn(piece, end + 1);
      }
      append(piece);
      // There is one: what was just written begins behind what it copies.
      const uint32_t next = result_.stretches_[number + 1].start;
      const uint32_t step = std::min(next - from, end + 1 - own);
      own += step;
      from += step;
      number++;
    }
    return own - base();
  }

  // Ends a piece that is known to agree with its anchor up to `from`: where it
  // really does.
  void goOn(Stretch& piece, uint32_t from) const {
    const uint32_t at = from - base();
    const Place place = axis_.placeOf(piece.anchor + (from - piece.start));
    const PackedString& other = axis_.string(place.string);
    const uint32_t run =
        commonCharacters(string(), at, other, place.position, UINT32_MAX);
    piece.end = from + run;
    piece.parting = makeParting(symbolAt(string(), at + run),
                                symbolAt(other, place.position + run));
  }

  // New text, from a position of the current string on.
  Stretch selfAnchored(uint32_t position) const {
    const uint32_t start = base() + position;
    return {start, start, base() + lengthOf(string()),
            makeParting(kEndOfString, kEndOfString)};
  }

  // The stretch that a position before what is being written belongs to.
  uint32_t stretchAt(uint32_t axisPosition) const {
    const uint32_t block = axisPosition / Stretches::kBlock;
    const auto last = static_cast<uint32_t>(result_.stretches_.size()) - 1;
    if (block >= filled_) return last;
    uint32_t number = result_.blocks_[block];
    while (number < last &&
           result_.stretches_[number + 1].start <= axisPosition) {
      number++;
    }
    return number;
  }

  // Writes a stretch, unless the last one goes on.
  void append(const Stretch& stretch) {
    if (!result_.stretches_.empty()) {
      const Stretch& last = result_.stretches_.back();
      if (last.start >= base() && last.end == stretch.end &&
          last.anchor - last.start == stretch.anchor - stretch.start) {
        return;
      }
      fillBlocks(stretch.start);
    }
    result_.stretches_.push_back(stretch);
  }

  // The blocks that begin before a position begin in the last stretch.
  void fillBlocks(uint32_t before) {
    const auto last = static_cast<uint32_t>(result_.stretches_.size()) - 1;
    while (filled_ < result_.blocks_.size() &&
           filled_ * Stretches::kBlock < before) {
      result_.blocks_[filled_++] = last;
    }
  }

  Axis axis_;
  Stretches result_;
  KmerTable breaks_{1 << 12};  // positions on the axis behind broken diagonals
  KmerTable kmers_{0};         // of new text, by positions on the axis
  std::vector<Sampled> sampled_;
  size_t most_ = 0;      // stretches, when the current string is written
  size_t current_ = 0;   // string that is being written
  uint32_t filled_ = 0;  // blocks
};

Stretches buildStretches(std::span<const PackedString> strings,
                         const std::vector<bool>& takePart) {
  return StretchBuilder(strings, takePart).build();
}

Stretches buildStretches(std::span<const PackedString> strings) {
  return buildStretches(strings, stringsWithLikes(strings));
}

}  // namespace palvor
