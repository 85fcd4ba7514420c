#include "palvor/stream/lcp_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "support/engine.h"

namespace {

// A file that is too short is noticed at the very record, wherever the blocks
// of both files end.
TEST(LcpStream, RefusesAFileThatIsShorterThanItsSuffixes) {
  std::string text;
  for (unsigned i = 1; text.size() < 40000; i = i * 1664525 + 1013904223) {
    text += "ACGT"[i >> 30];
  }
  const DataFolder folder{Collection{{text, "ACGT"}}};
  const std::string whole = folder.bytes("x_0.stlcp");
  for (const size_t bytes : {0U, 7U, 65532U, 65536U, 65540U, 79996U}) {
    folder.write("x_0.stlcp", whole.substr(0, bytes));
    for (const int records : {1, 300, 62500}) {
      SCOPED_TRACE(testing::Message() << bytes << " bytes, " << records);
      palvor::MergeOptions options = optionsFor(folder, records);
      options.readLcps = true;
      EXPECT_EQ(errorOf([&] { mergeToMemory(options); }).what(),
                "LCP file " + folder.path("x_0.stlcp") +
                    " is shorter than its Suffix file: no entry for record " +
                    std::to_string(bytes / 4));
    }
  }
  folder.write("x_0.stlcp", whole);
  palvor::MergeOptions options = optionsFor(folder, 300);
  options.readLcps = true;
  EXPECT_EQ(mergeToMemory(options).records.size(), text.size() + 4);
}

}  // namespace
