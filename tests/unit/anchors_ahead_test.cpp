// Anchors looked up ahead, against those looked up one by one.

#include "palvor/order/anchors_ahead.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "palvor/text/stretch_builder.h"
#include "support/engine.h"
#include "support/inputs.h"
#include "support/strains.h"

namespace {

// Whichever records are asked for, and wherever buffers end: what was looked up
// of records that are gone is no other's.
TEST(AnchorsAhead, AreThoseOfTheRecord) {
  palvor::Genomes genomes(1);
  std::vector<std::string> texts = {genomes.unrelated(3000)};
  while (texts.size() < 4) {
    texts.push_back(genomes.descendant(texts.back(), 20));
  }
  const DataFolder folder({texts});
  const InMemory inputs(texts);
  const std::vector<bool> all(texts.size(), true);
  const palvor::Stretches stretches = palvor::buildStretches(
      std::span(inputs.text().data(), texts.size()), all);
  for (const int records : {1, 7, 40, 67, 100, 600}) {
    SCOPED_TRACE(records);
    palvor::MemoryCount memory;
    palvor::IoTime time;
    palvor::SuffixStreams streams(inputs.text(), streamFilesIn(folder, 4),
                                  records, {}, memory, time);
    palvor::AnchorsAhead anchors(inputs.text(), stretches, streams);
    for (int k = 0; k < 4; k++) {
      bool asks = false;
      for (size_t left = 0; streams[k].advance(); left--) {
        if (left == 0) {
          asks = !asks;
          left = 1 + genomes.below(150);
        }
        if (!asks) continue;
        const palvor::Suffix& record = *streams[k].current();
        const palvor::Anchor found = anchors.of(k, record);
        if (inputs.text().remainingBits(record) <= 64) {
          ASSERT_EQ(found.position, palvor::Axis::kNowhere);
          continue;
        }
        const palvor::Anchor anchor = stretches.anchorAt(stretches.axisPosition(
            palvor::inputNumber(record),
            record.pos + palvor::AnchorsAhead::kSkipped));
        ASSERT_EQ(found.position, anchor.position);
        ASSERT_EQ(found.key, anchor.key);
      }
    }
  }
}

}  // namespace
