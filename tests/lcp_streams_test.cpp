#include "sources/lcp_streams.h"

#include <gtest/gtest.h>

#include <string>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

// A file that is too short is noticed at the very record, wherever the blocks
// of both files end.
TEST(LcpStreams, EndTheRunWhereTheyAreShorterThanTheirSuffixes) {
  std::string text;
  for (unsigned i = 1; text.size() < 40000; i = i * 1664525 + 1013904223) {
    text += "ACGT"[i >> 30];
  }
  const DataFolder folder{Collection{{text, "ACGT"}}};
  const std::string whole = folder.bytes("x_0.stlcp");
  ASSERT_NO_FATAL_FAILURE(folder.expectMerge("-a -l -Z"));
  for (const size_t bytes : {0u, 7u, 65532u, 65536u, 65540u, 79996u}) {
    folder.write("x_0.stlcp", whole.substr(0, bytes));
    for (const std::string buffer : {"16", "4800", "1000000"}) {
      SCOPED_TRACE(testing::Message() << bytes << " bytes, -M " << buffer);
      const Outcome outcome = folder.merge("-a -q -l -Z -M " + buffer);
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(linesOf(outcome.err).back(),
                "## ERROR: LCP file " + folder.path("x_0.stlcp") +
                    " is shorter than its Suffix file: no entry for record " +
                    std::to_string(bytes / 4));
    }
  }
}

}  // namespace
