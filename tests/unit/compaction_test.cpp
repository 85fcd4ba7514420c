// The compaction hash sets: home slots, probe steps and the limit.

#include "palvor/sink/compaction.h"

#include <gtest/gtest.h>

#include "support/engine.h"

namespace {

using palvor::Compaction;

void expectCounts(const Compaction::Counts& counts, int registrations,
                  int distinct, int probes) {
  EXPECT_EQ(counts.registrations, registrations);
  EXPECT_EQ(counts.distinct, distinct);
  EXPECT_EQ(counts.probes, probes);
}

TEST(Compaction, CountsRegistrationsKeysAndProbeSteps) {
  Compaction sets;
  sets.add(Compaction::kLeft, 7);
  sets.add(Compaction::kLeft, 320'000);  // the same home slot, 7: one step,
  sets.add(Compaction::kLeft, 120);      // to slot 120, from where this one
  sets.add(Compaction::kLeft, 7);        // is pushed on
  expectCounts(sets.countsOf(Compaction::kLeft), 4, 3, 2);
  expectCounts(sets.countsOf(Compaction::kRight), 0, 0, 0);

  sets.add(Compaction::kRight, -5);
  sets.add(Compaction::kRight, 160'001);   // the home slot of -5
  sets.add(Compaction::kRight, -319'993);  // home slot 0: its remainder is 0
  sets.add(Compaction::kRight, 319'993);
  expectCounts(sets.countsOf(Compaction::kRight), 4, 4, 2);

  sets.clear();
  sets.add(Compaction::kLeft, 320'000);
  expectCounts(sets.countsOf(Compaction::kLeft), 1, 1, 0);
}

TEST(Compaction, FailsWhenASetIsFull) {
  Compaction sets;
  for (int key = 1; key <= 319'993; key++) sets.add(Compaction::kEdge, key);
  EXPECT_EQ(sets.countsOf(Compaction::kEdge).distinct, 319'993);
  EXPECT_STREQ(errorOf([&] { sets.add(Compaction::kEdge, 1); }).what(),
               "hash full, table 2");
}

}  // namespace
