// Merges beside each other, and merges that fail.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/engine.h"

namespace {

namespace fs = std::filesystem;

Collection repetitive(int strings) {
  Collection collection;
  std::string text = "GATTACA";
  while (text.size() < 1200) text += text.substr(text.size() / 3) + "CG";
  for (int i = 0; i < strings; i++) {
    collection.texts.push_back(text.substr(static_cast<size_t>(7 * i)) + "T");
  }
  return collection;
}

void expectSame(const Merged& merged, const Merged& other) {
  EXPECT_EQ(merged.records, other.records);
  EXPECT_EQ(merged.entries, other.entries);
  EXPECT_EQ(countsOf(merged.report.cost), countsOf(other.report.cost));
  EXPECT_EQ(merged.report.suffixes, other.report.suffixes);
  EXPECT_EQ(merged.report.memory, other.report.memory);
}

// The strings are shared, and the ways of the engine mixed.
TEST(Threads, MergeAsOneAfterTheOther) {
  for (const int strings : {3, 20, 70}) {
    const DataFolder folder(repetitive(strings));
    palvor::MergeOptions options = optionsFor(folder, 100);
    options.strings = palvor::loadStrings(options);
    for (const Engine& engine : kStandIns) {
      SCOPED_TRACE(std::string(engine.name) + ", " + std::to_string(strings));
      const palvor::MergeOptions first = withEngine(options, engine);
      palvor::MergeOptions second = withEngine(options, kWalk);
      second.readLcps = true;
      Merged merged[2];
      std::thread thread([&] { merged[0] = mergeToMemory(first); });
      merged[1] = mergeToMemory(second);
      thread.join();
      expectSame(merged[0], mergeToMemory(first));
      expectSame(merged[1], mergeToMemory(second));
    }
  }
}

TEST(Threads, ShareStringsThatOutliveTheirFiles) {
  const DataFolder folder(repetitive(3));
  palvor::MergeOptions options = optionsFor(folder);
  const Merged loaded = mergeToMemory(options);
  options.mapStrings = true;
  options.strings = palvor::loadStrings(options);
  for (const char* name : {"x_0.stbin", "x_1.stbin", "x_2.stbin"}) {
    fs::remove(folder.path(name));
  }
  const Merged shared = mergeToMemory(options);
  EXPECT_EQ(shared.records, loaded.records);
  EXPECT_EQ(shared.entries, loaded.entries);
}

size_t openDescriptors() {
  const fs::directory_iterator all("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(all), end(all)));
}

struct Failure {
  std::string file;  // that is cut, to so many bytes
  uint64_t bytes;
  std::string text;  // "@" stands for the file's path
  bool blamesFile;   // with a reason
};

TEST(FailedMerges, SayWhatFailedAndLeaveNoFileOpen) {
  const std::vector<Failure> failures = {
      {"x_2.stbin", 5,
       "binary string 2 reading error: read 5 bytes, wanted 3 "
       "words",
       true},
      {"x_1.stlcp", 8,
       "LCP file @ is shorter than its Suffix file: no entry "
       "for record 2",
       false},
      {"x.stblengths", 7, "Reading binary lengths of partitions - error ",
       true},
  };
  for (const bool toFiles : {false, true}) {
    for (const Failure& failure : failures) {
      SCOPED_TRACE(failure.file + (toFiles ? " to files" : ""));
      const DataFolder folder{
          Collection{{"GATTACA", "TACA", std::string(20, 'C')}}};
      const std::string path = folder.path(failure.file);
      fs::resize_file(path, failure.bytes);
      palvor::MergeOptions options = optionsFor(folder, 1);
      options.keepFilesOpen = options.readLcps = true;
      options.array = options.lcps = true;
      options.outputBuffer = 1;
      const size_t before = openDescriptors();
      const palvor::Error error = errorOf([&] {
        palvor::MergeObserver observer;
        toFiles ? static_cast<void>(palvor::merge(options, observer))
                : static_cast<void>(mergeToMemory(options, 1));
      });
      std::string text = failure.text;
      if (const size_t at = text.find('@'); at != std::string::npos) {
        text.replace(at, 1, path);
      }
      EXPECT_EQ(error.what(), text);
      EXPECT_EQ(error.file(), failure.blamesFile ? path : "");
      EXPECT_EQ(error.reason().empty(), !failure.blamesFile);
      EXPECT_EQ(openDescriptors(), before);
    }
  }
}

// What a sink throws passes through.
TEST(FailedMerges, MayFailInTheirSink) {
  class Full final : public palvor::Sink {
   public:
    void begin(const palvor::MergeState&) override {}
    palvor::SinkRoom room() override { return {&suffix_, &entry_, 1}; }
    void put(int) override { palvor::fail("the sink is full"); }
    void finish() override {}

   private:
    palvor::Suffix suffix_ = {};
    palvor::LcpEntry entry_ = 0;
  };
  const DataFolder folder(repetitive(3));
  palvor::MergeOptions options = optionsFor(folder);
  options.keepFilesOpen = true;
  const size_t before = openDescriptors();
  for (const Engine& engine : kStandIns) {
    Full sink;
    palvor::MergeObserver observer;
    EXPECT_STREQ(errorOf([&] {
                   palvor::merge(withEngine(options, engine), sink, observer);
                 }).what(),
                 "the sink is full");
  }
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
