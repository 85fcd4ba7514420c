// Which inputs come of which records, and what is counted.

#include "kit/psa_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace {

// "file record@offset text", one for each input; a line for each array.
std::string arraysOf(kit::PsaSource* source, const TemporaryFolder& folder) {
  std::string arrays;
  int count = 0;
  kit::PsaText psa;
  uint32_t inputs = 0;
  while (source->next(psa)) {
    EXPECT_EQ(psa.number, count++);
    EXPECT_EQ(psa.firstInput, inputs);
    inputs += static_cast<uint32_t>(psa.inputs.size());
    arrays += psa.file.substr(folder.path("").size());
    for (const kit::InputString& input : psa.inputs) {
      arrays += " " + input.record + "@" + std::to_string(input.offset) + ":" +
                psa.text.substr(input.begin, input.length);
      EXPECT_EQ(psa.text[input.begin + input.length], kit::kSeparator);
    }
    arrays += "\n";
  }
  return arrays;
}

class PsaSource : public testing::Test {
 protected:
  TemporaryFolder folder_;
  const std::vector<std::string> paths_ = {
      folder_.write("a", ">one\nnnACG-TT\nTNNN\n>two\nGG\n"),
      folder_.write("b", ">n\nNNN\n>e\n"), folder_.write("c", ""),
      folder_.write("d", ">x\nCC\nCC\n>y\nRTR\n")};
};

TEST_F(PsaSource, SplitsAtAmbiguousCharacters) {
  kit::PsaSource source(paths_, kit::Ambiguous::kSplit, false);
  EXPECT_EQ(arraysOf(&source, folder_),
            "a one@2:ACG one@6:TTT two@0:GG\n"
            "d x@0:CCCC y@1:T\n");
  const kit::ReadingSummary& summary = source.summary();
  EXPECT_EQ(summary.records, 6u);
  EXPECT_EQ(summary.inputs, 5u);
  EXPECT_EQ(summary.characters, 13u);
  EXPECT_EQ(summary.ambiguous, 11u);
  EXPECT_EQ(summary.splits, 1u);
  EXPECT_EQ(summary.emptyRecords, 2u);
  EXPECT_EQ(summary.emptyFiles, 2u);
  EXPECT_EQ(summary.skippedRecords, 0u);
}

TEST_F(PsaSource, SkipsRecordsWithAmbiguousCharacters) {
  kit::PsaSource source(paths_, kit::Ambiguous::kSkipRecord, false);
  EXPECT_EQ(arraysOf(&source, folder_),
            "a two@0:GG\n"
            "d x@0:CCCC\n");
  EXPECT_EQ(source.summary().skippedRecords, 3u);
  EXPECT_EQ(source.summary().emptyRecords, 1u);
}

TEST_F(PsaSource, GivesEachRecordAnArray) {
  kit::PsaSource source(paths_, kit::Ambiguous::kSplit, true);
  EXPECT_EQ(arraysOf(&source, folder_),
            "a one@2:ACG one@6:TTT\n"
            "a two@0:GG\n"
            "d x@0:CCCC\n"
            "d y@1:T\n");
  EXPECT_EQ(source.summary().emptyFiles, 2u);
}

TEST_F(PsaSource, StopsAtAnAmbiguousCharacterWhenTold) {
  kit::PsaSource source({paths_[3]}, kit::Ambiguous::kError, false);
  kit::PsaText psa;
  EXPECT_THAT([&] { source.next(psa); },
              testing::ThrowsMessage<std::runtime_error>(
                  testing::HasSubstr(paths_[3] + ":5: ")));
}

}  // namespace
