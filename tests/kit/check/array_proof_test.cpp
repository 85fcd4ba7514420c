// Pieces of arrays that are right pass wherever they are parted, and what is
// wrong is found by one of them.

#include "kit/check/array_proof.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/fault_log.h"
#include "support/data_folder.h"
#include "support/relatives.h"

namespace {

constexpr size_t kRecordBytes = 16;

// A merged array in a folder, and its strings.
struct MergedFolder {
  explicit MergedFolder(const Collection& collection) : folder(collection) {
    folder.expectMerge("-a -l");
    records = folder.bytes("x.stpsa").size() / kRecordBytes;
  }

  kit::CheckedStrings strings() const {
    kit::FaultLog faults({});
    return {folder.path("x"), UINT64_MAX, faults};
  }

  DataFolder folder;
  uint64_t records = 0;
};

// The faults of two pieces that the array is parted into.
std::vector<kit::PieceFault> faultsOf(const MergedFolder& merged,
                                      const kit::CheckedStrings& strings,
                                      uint64_t at) {
  std::vector<kit::PieceFault> faults;
  kit::PieceProver prover(strings);
  const kit::ArrayToCheck array = {merged.folder.path("x"), 0, strings.count(),
                                   0};
  uint64_t done = 0;
  const auto advance = [&](uint64_t records) { done += records; };
  for (const auto& [from, to] :
       {std::pair(uint64_t{0}, at), std::pair(at, merged.records)}) {
    const kit::ArrayPiece piece = {array, from, to};
    if (const auto fault = prover.prove(piece, advance)) {
      faults.push_back(*fault);
    }
  }
  if (faults.empty()) {
    EXPECT_EQ(done, merged.records);
  }
  return faults;
}

TEST(ArrayProof, PassesRightPiecesWhereverTheyAreParted) {
  for (uint32_t seed = 1; seed < 5; seed++) {
    const MergedFolder merged(relatives(seed, 6, seed % 2 ? "AC" : "ACGT"));
    const kit::CheckedStrings strings = merged.strings();
    for (uint64_t at = 0; at <= merged.records; at++) {
      const auto faults = faultsOf(merged, strings, at);
      ASSERT_TRUE(faults.empty()) << at << ": " << faults[0].reason;
    }
  }
}

// With pieces that begin and end among equal suffixes: the first of these takes
// the place of the third, so that it is there twice and that one not at all.
TEST(ArrayProof, FindsASuffixThatIsThereTwiceAmongEqualOnes) {
  const std::string text = "GATTACA";
  const MergedFolder merged({{text, text, text, text}});
  const kit::CheckedStrings strings = merged.strings();
  const std::string right = merged.folder.bytes("x.stpsa");
  for (size_t group = 0; group < merged.records; group += 4) {
    std::string wrong = right;
    wrong.replace((group + 2) * kRecordBytes, kRecordBytes,
                  right.substr(group * kRecordBytes, kRecordBytes));
    merged.folder.write("x.stpsa", wrong);
    for (uint64_t at = 0; at <= merged.records; at++) {
      const auto faults = faultsOf(merged, strings, at);
      ASSERT_EQ(faults.size(), 1U) << group << ", " << at;
      ASSERT_EQ(faults[0].record, group + 2) << at;
      ASSERT_NE(faults[0].reason.find("is there a second time"),
                std::string::npos);
    }
  }
}

// A file that is too short, a folder without one, entries that are missing.
TEST(ArrayProof, IsOfWholeArrays) {
  const MergedFolder merged({{"GATTACA", "TACA", "CAT"}});
  const kit::CheckedStrings strings = merged.strings();
  const std::vector<kit::ArrayToCheck> arrays = {
      {merged.folder.path("x_0"), 0, 1, 0},
      {merged.folder.path("x_1"), 1, 2, 0},
      {merged.folder.path("x_2"), 2, 3, 0},
      {merged.folder.path("x_3"), 2, 3, 0}};
  // Of each array: right, wrong, or not to be read.
  const auto verdicts = [&] {
    std::string letters;
    for (const kit::ArrayVerdict& verdict :
         kit::proveArrays(arrays, strings, 2, [](uint64_t) {})) {
      letters += verdict.unread ? '-' : verdict.isRight ? 'r' : 'w';
      EXPECT_FALSE(verdict.isRight && verdict.unread);
    }
    return letters;
  };
  EXPECT_EQ(verdicts(), "rrr-");
  const std::string array = merged.folder.bytes("x_1.stpsa");
  merged.folder.write("x_1.stpsa", array.substr(kRecordBytes));
  merged.folder.write("x_2.stlcp", "");
  EXPECT_EQ(verdicts(), "rww-");
  merged.folder.write("x_0.stlcp", "odd");
  EXPECT_EQ(verdicts(), "-ww-");
}

}  // namespace
