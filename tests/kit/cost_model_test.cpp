// What a merge costs on a cluster, by the model and on the command line.

#include "kit/merge/cost_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/relatives.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

constexpr kit::Collection kBacteria = {1000, 5'000'000'000};

// No disk or network is in the way.
kit::Cluster quickCluster(uint64_t nodes, uint64_t cores) {
  const uint64_t quick = uint64_t{1} << 60;
  return {.nodes = nodes, .cores = cores, .disk = quick, .network = quick};
}

TEST(CostModel, TellsTimeByCores) {
  const auto steps =
      kit::estimateCosts(kBacteria, quickCluster(2, 4), {.likes = 0}, 16);
  ASSERT_EQ(steps.size(), 4U);
  EXPECT_EQ(steps[0].step, "prepare");
  EXPECT_EQ(steps[0].atOnce, 8U);
  EXPECT_NEAR(steps[0].allSeconds, 1000 / 8 * 5e6 * 50e-9, 0.01);
  EXPECT_NEAR(steps[1].seconds, 5e9 / 16 * 110e-9, 0.01);
  EXPECT_NEAR(steps[1].allSeconds, 5e9 / 8 * 110e-9, 0.01);
  EXPECT_NEAR(steps[2].allSeconds, 5e9 / 8 * 350e-9, 0.01);
  EXPECT_EQ(steps[3].atOnce, 1U);
  EXPECT_NEAR(steps[3].seconds, 5e9 * 45e-9, 0.01);
}

// Each merge of a range goes through all strings, so that more are dearer.
TEST(CostModel, ChargesEachRangeForTheStrings) {
  const auto few = kit::estimateCosts(kBacteria, quickCluster(1, 4), {}, 8);
  const auto many = kit::estimateCosts(kBacteria, quickCluster(1, 4), {}, 80);
  EXPECT_NEAR(many[1].allSeconds - few[1].allSeconds, 18 * 5e9 * 4e-9, 0.1);
  EXPECT_GT(many[1].read, kBacteria.characters / 4);
}

TEST(CostModel, WaitsForTheSlowestOfDiskAndNetwork) {
  kit::Cluster cluster = quickCluster(2, 2);
  const kit::StepTimes none = {0, 0, 0, 0, 0};
  cluster.disk = 1'000'000'000;
  const auto disk = kit::estimateCosts(kBacteria, cluster, none, 4);
  EXPECT_NEAR(disk[3].seconds, 40 * 5.0, 0.01);
  const double bytes =
      4.0 * static_cast<double>(disk[1].read + disk[1].written);
  EXPECT_NEAR(disk[1].allSeconds, bytes / 1e9, 0.01);
  cluster.network = 100'000'000;  // of each node, which has two jobs
  const auto network = kit::estimateCosts(kBacteria, cluster, none, 4);
  EXPECT_NEAR(network[1].allSeconds, bytes / 2e8, 0.01);
}

TEST(CostModel, KeepsToTheMemoryOfNodes) {
  kit::Cluster cluster = quickCluster(3, 8);
  const uint64_t need = kit::estimateCosts(kBacteria, cluster, {}, 8)[1].memory;
  EXPECT_GT(need, kBacteria.characters / 4);
  cluster.nodeMemory = 2 * need;
  const auto steps = kit::estimateCosts(kBacteria, cluster, {}, 0);
  EXPECT_EQ(steps[1].atOnce, 6U);
  EXPECT_EQ(steps[1].jobs, 12U);
  cluster.nodeMemory = need - 1;  // enough without knowledge of likes
  const auto least = kit::estimateCosts(kBacteria, cluster, {}, 8)[1];
  EXPECT_LT(least.memory, need / 2);
  EXPECT_LT(least.seconds, steps[1].seconds * 12 / 8);
  cluster.nodeMemory = least.memory - 1;
  EXPECT_THAT([&] { kit::estimateCosts(kBacteria, cluster, {}, 8); },
              ThrowsMessage<std::runtime_error>(
                  AllOf(HasSubstr("a job of merge takes "),
                        HasSubstr(" of memory, a node has "))));
}

TEST(Estimate, IsATableOfTheSteps) {
  const DataFolder folder(relatives(6, 4, "ACGT"));
  const Outcome run =
      runKit({"plan", folder.root(), "x", "--estimate", "--ranges", "3"});
  EXPECT_EQ(run.status, 0) << run.err;
  const auto lines = linesOf(run.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_THAT(lines[0],
              StartsWith("step\tjobs\tat_once\tmemory\tread\twritte"));
  EXPECT_THAT(lines[1], StartsWith("prepare\t4\t1\t"));
  EXPECT_THAT(lines[2], StartsWith("merge\t3\t1\t"));
  EXPECT_THAT(run.err, HasSubstr(" suffixes of 4 genomes: about "));
  EXPECT_FALSE(folder.holds("x.ranges.tsv"));

  const Outcome described =
      runKit({"plan", "--estimate", "--genomes", "10000", "--characters", "5e6",
              "--nodes", "16", "--cores", "32", "--node-memory", "512G"});
  EXPECT_EQ(described.status, 0) << described.err;
  EXPECT_THAT(described.err, HasSubstr("50 billion suffixes of 10000 genomes"));
}

TEST(Estimate, RefusesWhatItCannotTell) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
      {{"--estimate"}, "inputdir is required"},
      {{"x/"}, "prefix is required"},
      {{"x/", "x"}, "--ranges is required"},
      {{"--genomes", "3", "--characters", "9"}, "requires --estimate"},
      {{"--estimate", "--genomes", "3"}, "requires --characters"},
      {{"--estimate", "--genomes", "3", "--characters", "0"}, "not in range"},
      {{"x/", "x", "--estimate", "--genomes", "3", "--characters", "9"},
       "inputdir excludes --genomes"},
      {{"x/", "x", "--ranges", "3", "--cores", "2"}, "requires --estimate"},
      {{"--estimate", "--genomes", "9", "--characters", "1e9", "--node-memory",
        "1M"},
       "a job of "},
      {{"--estimate", "x/", "x"}, "x/x.ST/x.stlengths"},
  };
  for (auto [arguments, message] : wrong) {
    arguments.insert(arguments.begin(), "plan");
    const Outcome run = runKit(arguments);
    EXPECT_EQ(run.status, 1) << message;
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_EQ(run.out, "");
  }
}

}  // namespace
