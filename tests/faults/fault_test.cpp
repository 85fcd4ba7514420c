// Every system call on a file that a command reads or writes is made to fail,
// the first, a middle one and the last, and the process is killed there: it
// must say which file failed, and what it leaves must not pass for whole.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "faults/scenario.h"

namespace {

using testing::HasSubstr;

const Command kPrepare = {"palvor-kit", "prepare",    "-o",    "ROOT",
                          "-p",         "x",          "--lcp", "--zero-origin",
                          "ROOTa.fa",   "ROOTb.fa.gz"};
const Command kMergeTrees = {"palvor", "ROOT", "x", "-q", "-z", "-n", "30"};
const Command kMergeArray = {"palvor", "ROOT", "x", "-q", "-z", "-a", "-l"};
const Command kCheck = {"palvor-kit", "check", "ROOT", "x", "-z"};

const Command kMergeRanges = {"palvor-kit", "merge",    "ROOT", "x",
                              "-z",         "--ranges", "2"};

Command with(Command command, const Command& more) {
  command.insert(command.end(), more.begin(), more.end());
  return command;
}

const std::vector<Scenario> kScenarios = {
    {"Prepare", {}, kPrepare, kMergeArray},
    {"PrepareAnew",
     {kPrepare, kMergeArray},
     with(kPrepare, {"--force", "-j", "2"}),
     kMergeArray},
    {"Simulate",
     {},
     {"palvor-kit", "simulate", "-o", "ROOTsimulated", "--genomes", "2",
      "--length", "5000", "--divergence", "0.1", "--seed", "1"}},
    {"MergeArray",
     {kPrepare},
     with(kMergeArray, {"-n", "9", "-M", "80"}),
     kCheck},
    {"MergeArrayMapped",
     {kPrepare},
     with(kMergeArray, {"-U", "-Z", "-f"}),
     kCheck},
    {"MergeTrees", {kPrepare}, kMergeTrees, kCheck},
    {"MergeTreesBesideAnArray", {kPrepare, kMergeArray}, kMergeTrees, kCheck},
    {"MergeTreesInOrder",
     {kPrepare},
     with(kMergeTrees, {"-R", "-C", "-Z", "-M", "80", "-f"}),
     kCheck},
    {"MergeRanges", {kPrepare}, kMergeRanges, kCheck},
    {"MergeRangesToTrees",
     {kPrepare},
     with(kMergeRanges, {"--trees", "-n", "60"}),
     kCheck},
    {"CheckArray", {kPrepare, kMergeArray}, kCheck},
    {"CheckTrees", {kPrepare, kMergeTrees}, kCheck},
    {"View", {kPrepare}, {"palvor-kit", "view", "ROOTx.ST/x_0.stpsa"}},
};

// Calls whose failure changes nothing that is read or written: closing what was
// read, making a folder that is there, asking how best to read, or for room.
const std::set<std::string> kHarmless = {
    "close", "mkdir", "fadvise64", "ioctl", "lseek", "newfstatat", "statfs"};

const std::vector<std::string> kKill = {"signal=SIGKILL"};

// What can go wrong at a call of a program. A call that is made to stop short
// is not made at all, so only the merge, which takes none further, can be
// tested so.
std::vector<std::string> faultsOf(const std::string& call,
                                  const std::string& program) {
  const bool merge = program == "palvor";
  if (call == "openat") return {"error=EMFILE"};
  if (call == "write" && merge) return {"error=ENOSPC", "retval=1"};
  if (call == "write") return {"error=ENOSPC"};
  if (call == "pread64" && merge) return {"error=EIO", "retval=4"};
  return {"error=EIO"};
}

// The name under which a file is reported: a file being written gets it later.
std::string reportedName(const std::string& file) {
  const size_t part = file.rfind(".part");
  return part == std::string::npos ? file : file.substr(0, part);
}

// A file system of its own over a ground, with what is there and room for some
// more blocks.
class TinyDisk {
 public:
  TinyDisk(const Ground& ground, int blocks) : root_(ground.root()) {
    const TemporaryFolder copy;
    const auto everything = std::filesystem::copy_options::recursive;
    std::filesystem::copy(root_, copy.path(""), everything);
    mounted_ = mount("tiny", root_.c_str(), "tmpfs", 0, "size=1m") == 0;
    if (!mounted_) return;
    std::filesystem::copy(copy.path(""), root_, everything);
    struct statvfs usage = {};
    statvfs(root_.c_str(), &usage);
    const auto used = static_cast<int>(usage.f_blocks - usage.f_bfree);
    const std::string size =
        "size=" +
        std::to_string((used + blocks) * static_cast<int>(usage.f_frsize));
    mount("tiny", root_.c_str(), "tmpfs", MS_REMOUNT, size.c_str());
  }
  ~TinyDisk() {
    if (mounted_) umount(root_.c_str());
  }
  TinyDisk(const TinyDisk&) = delete;
  TinyDisk& operator=(const TinyDisk&) = delete;

  bool mounted() const { return mounted_; }

 private:
  std::string root_;
  bool mounted_ = false;
};

class Faults : public testing::TestWithParam<Scenario> {
 protected:
  void SetUp() override {
    const Ground ground(scenario());
    before_ = ground.files();
    const Outcome outcome = ground.run(scenario().command);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    output_ = ground.withoutRoot(outcome.out);
    files_ = ground.files();
    calls_ = traceCalls(scenario());
    if (calls_.empty()) GTEST_SKIP() << "system calls cannot be traced here";
  }

  const Scenario& scenario() const { return GetParam(); }

  // Runs the command once for each fault at each kind of call, the first, a
  // middle one and the last, and hands over what came of it.
  template <typename Test>
  void failEachCall(bool kill, Test test) const {
    for (const FileCalls& calls : calls_) {
      for (const std::string& fault :
           kill ? kKill : faultsOf(calls.call, scenario().command[0])) {
        for (const int n : std::set{1, (calls.count + 1) / 2, calls.count}) {
          SCOPED_TRACE(calls.call + " " + std::to_string(n) + " of " +
                       calls.file + ": " + fault);
          const Ground ground(scenario());
          test(calls, ground,
               ground.run(scenario().command,
                          withFault(ground, calls, fault, n)));
        }
      }
    }
  }

  // Calls are counted for each thread, so that where several share them out the
  // one that is to fail may never come.
  bool mayBeMissed() const {
    const Command& command = scenario().command;
    return std::find(command.begin(), command.end(), "-j") != command.end();
  }

  // Whether a command left all that it leaves when nothing fails.
  bool isWhole(const Ground& ground) const { return ground.files() == files_; }

  void expectNoProof(const Ground& ground) const {
    const bool untouched = ground.files() == before_;
    if (scenario().proof.empty() || isWhole(ground) || untouched) return;
    const Outcome proof = ground.run(scenario().proof);
    EXPECT_EQ(proof.status, 1) << proof.out << proof.err;
  }

  void expectWholeOrReported(const Ground& ground, const Outcome& outcome,
                             const std::string& words) const {
    if (outcome.status == 0) {
      EXPECT_TRUE(isWhole(ground));
      return;
    }
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(std::regex_search(outcome.err, std::regex(words)))
        << outcome.err;
    expectNoProof(ground);
  }

  // When nothing fails:
  std::string output_;
  std::map<std::string, std::string> files_;

  std::map<std::string, std::string> before_;  // the command
  std::vector<FileCalls> calls_;
};

TEST_P(Faults, AreReportedWithTheFile) {
  int faults = 0;
  failEachCall(false, [&](const FileCalls& calls, const Ground& ground,
                          const Outcome& outcome) {
    faults++;
    if (outcome.status == 0 &&
        (kHarmless.contains(calls.call) || mayBeMissed())) {
      EXPECT_EQ(ground.withoutRoot(outcome.out), output_);
      EXPECT_TRUE(isWhole(ground));
      return;
    }
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_THAT(outcome.out + outcome.err,
                HasSubstr(ground.path(reportedName(calls.file))));
    expectNoProof(ground);
  });
  RecordProperty("faults", faults);
}

TEST_P(Faults, KilledRunsLeaveNothingThatPasses) {
  if (scenario().proof.empty()) return;
  failEachCall(true, [&](const FileCalls&, const Ground& ground,
                         const Outcome& outcome) {
    if (outcome.status == 0 && mayBeMissed()) {
      EXPECT_TRUE(isWhole(ground));
      return;
    }
    EXPECT_EQ(outcome.status, 128 + SIGKILL);
    expectNoProof(ground);
  });
}

TEST_P(Faults, TooLittleMemoryIsReported) {
  bool succeeded = false;
  for (unsigned long limit = 20UL << 20; !succeeded; limit += 3UL << 20) {
    ASSERT_LT(limit, 2UL << 30);
    const Ground ground(scenario());
    const Outcome outcome = ground.run(scenario().command, {.memory = limit});
    if (outcome.status == 127) continue;  // it could not be loaded
    // Nor could the language's runtime, which keeps room for what is thrown.
    if (outcome.err == "terminate called without an active exception\n") {
      continue;
    }
    SCOPED_TRACE(limit);
    expectWholeOrReported(ground, outcome,
                          "memory|allocate|start a thread|mmap");
    succeeded = outcome.status == 0;
  }
}

TEST_P(Faults, FullDiskIsReported) {
  for (const int blocks : {0, 1, 2, 4, 8}) {
    const Ground ground(scenario());
    // A disk that has room for what is there, and some blocks more.
    const TinyDisk disk(ground, blocks);
    if (!disk.mounted()) GTEST_SKIP() << "disks cannot be mounted here";
    expectWholeOrReported(ground, ground.run(scenario().command),
                          ground.path("") + ".*No space left");
  }
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(kScenarios),
                         [](const auto& test) { return test.param.name; });

}  // namespace
