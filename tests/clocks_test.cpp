#include "support/clocks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <thread>

namespace {

TEST(Clocks, WallClockStartsWithinItsFirstSecondAndCountsMilliseconds) {
  const int first = rclock();
  EXPECT_GE(first, 0);
  EXPECT_LT(first, 1000);
  EXPECT_EQ(sclock(), 0);
  const long long nanoseconds = nanoclock();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  const long long slept = (nanoclock() - nanoseconds) / 1'000'000;
  const int second = rclock();
  EXPECT_GE(slept, 30);
  EXPECT_NEAR(elapsed(first, second), static_cast<double>(slept), 20);
  EXPECT_LE(sclock(), 1 + static_cast<int>(slept / 1000));
}

TEST(Clocks, ProcessorTimeGrowsWithWorkAndCapturesTheUsage) {
  EXPECT_EQ(getRSS(), 0) << "nothing is captured before the first reading";
  const int start = mclock();
  EXPECT_GT(getRSS(), 0);
  volatile unsigned sum = 0;
  while (elapsed(start, mclock()) < 10) sum = sum + 1;
  EXPECT_GE(getPFs(), 0);
  EXPECT_EQ(elapsed(INT_MAX, INT_MIN), 1) << "across the wrap";
}

}  // namespace
