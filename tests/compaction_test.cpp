// The compaction hash sets: home slots, probe steps and the limit.

#include "output/compaction.h"

#include <gtest/gtest.h>

namespace {

TEST(Compaction, CountsRegistrationsKeysAndProbeSteps) {
  addHT(0, 7);
  addHT(0, 320'000);  // the same home slot, 7: one step, to slot 120
  addHT(0, 120);      // pushed on from there
  addHT(0, 7);
  EXPECT_EQ(hset[0], 4);
  EXPECT_EQ(hacc[0], 3);
  EXPECT_EQ(hcol[0], 2);

  addHT(1, -5);
  addHT(1, 160'001);  // the home slot of -5
  EXPECT_EQ(hcol[1], 1);
  addHT(1, -319'993);  // home slot 0, since its remainder is 0
  addHT(1, 319'993);
  EXPECT_EQ(hcol[1], 2);

  clearHashSets();
  addHT(0, 320'000);
  EXPECT_EQ(hset[0], 1);
  EXPECT_EQ(hacc[0], 1);
  EXPECT_EQ(hcol[0], 0);
}

TEST(Compaction, EndsTheRunWhenASetIsFull) {
  for (int key = 1; key <= 319'993; key++) addHT(2, key);
  EXPECT_EQ(hacc[2], 319'993);
  EXPECT_EXIT(addHT(2, 1), testing::ExitedWithCode(1),
              "## ERROR: hash full, table 2");
}

}  // namespace
