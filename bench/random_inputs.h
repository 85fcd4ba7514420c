// Inputs in memory for the micro-benchmarks, always the same ones.

#ifndef PALVOR_BENCH_RANDOM_INPUTS_H_
#define PALVOR_BENCH_RANDOM_INPUTS_H_

#include <cstdint>
#include <random>
#include <vector>

#include "palvor/format/packing.h"
#include "palvor/format/suffix.h"
#include "palvor/text/collection.h"

class RandomInputs {
 public:
  // `count` inputs of `words` random words each, all alike but for one bit in
  // every `differEvery` words (0: independent ones).
  RandomInputs(int count, int words, int differEvery)
      : strings_(make(count, words, differEvery)),
        text_(packed(strings_, words)) {}
  RandomInputs(const RandomInputs&) = delete;
  RandomInputs& operator=(const RandomInputs&) = delete;

  const palvor::Collection& text() const { return text_; }

  palvor::Suffix suffixAt(uint32_t input, uint32_t pos) const {
    const uint32_t* words = text_[input].words;
    return {input << 2, pos, palvor::sliceAt(words, uint64_t{2} * pos),
            palvor::sliceAt(words, uint64_t{2} * pos + 32)};
  }

 private:
  using Strings = std::vector<std::vector<uint32_t>>;

  static Strings make(int count, int words, int differEvery) {
    std::mt19937 random(1);
    Strings strings(static_cast<size_t>(count));
    for (auto& string : strings) {
      if (differEvery == 0 || &string == &strings[0]) {
        for (int w = 0; w < words; w++) {
          string.push_back(static_cast<uint32_t>(random()));
        }
      } else {
        string.assign(strings[0].begin(), strings[0].end() - 1);
        for (int w = 0; w < words; w += differEvery) {
          string[static_cast<size_t>(w)] ^= 1U << (random() % 32);
        }
      }
      string.push_back(0);
    }
    return strings;
  }

  static std::vector<palvor::PackedString> packed(const Strings& strings,
                                                  int words) {
    std::vector<palvor::PackedString> packed;
    for (const auto& string : strings) {
      packed.push_back({string.data(), static_cast<uint32_t>(32 * words)});
    }
    return packed;
  }

  Strings strings_;
  palvor::Collection text_;
};

#endif  // PALVOR_BENCH_RANDOM_INPUTS_H_
