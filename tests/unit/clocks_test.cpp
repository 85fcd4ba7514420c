#include "palvor/io/clocks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(Clocks, AgreeOnWhatPasses) {
  const int64_t nanoseconds = palvor::wallNanoseconds();
  const int64_t milliseconds = palvor::wallMilliseconds();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  const int64_t slept = palvor::wallMilliseconds() - milliseconds;
  const int64_t around = palvor::wallNanoseconds() - nanoseconds;
  EXPECT_GE(around, 30'000'000);
  EXPECT_NEAR(static_cast<double>(slept), static_cast<double>(around) / 1e6,
              20);
}

TEST(Clocks, ProcessorTimeGrowsWithWork) {
  const palvor::ProcessorTime start = palvor::processorTime();
  volatile unsigned sum = 0;
  while (palvor::processorTime().milliseconds < start.milliseconds + 10) {
    sum = sum + 1;
  }
  EXPECT_GE(palvor::processorTime().majorFaults, start.majorFaults);
}

}  // namespace
