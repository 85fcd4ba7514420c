#include "sources/lcp_streams.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "run/values.h"
#include "support/data_folder.h"
#include "support/program.h"

namespace {

TEST(LcpStreams, HandOutEntriesAcrossBlocks) {
  const DataFolder folder{Collection{}};
  for (const uint32_t stream : {0U, 1U}) {
    std::vector<uint32_t> entries;
    for (uint32_t m = 0; m < 40000; m++) entries.push_back(2 * m + stream);
    folder.writeWords("x_" + std::to_string(stream) + ".stlcp", entries);
  }
  std::snprintf(sarrayPrefix, kPathSize, "%s", folder.path("x").c_str());
  initLcpStreams(2);
  for (uint32_t m = 0; m < 40000; m++) {
    for (const int stream : {0, 1}) {
      ASSERT_EQ(getNextLCP(stream), 2 * m + static_cast<uint32_t>(stream));
    }
  }
}

// A file that is too short is noticed at the very record, wherever the blocks
// of both files end.
TEST(LcpStreams, EndTheRunWhereTheyAreShorterThanTheirSuffixes) {
  std::string text;
  for (unsigned i = 1; text.size() < 20000; i = i * 1664525 + 1013904223) {
    text += "ACGT"[i >> 30];
  }
  const DataFolder folder{Collection{{text, "ACGT"}}};
  const std::string whole = folder.bytes("x_0.stlcp");
  for (const size_t bytes : {0u, 7u, 65532u, 65536u, 65540u, 79996u}) {
    folder.write("x_0.stlcp", whole.substr(0, bytes));
    for (const char* buffer : {"16", "4800", "1000000"}) {
      SCOPED_TRACE(testing::Message() << bytes << " bytes, -M " << buffer);
      const Outcome outcome =
          runPalvor({folder.root(), "x", "-a", "-q", "-l", "-Z", "-M", buffer});
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(linesOf(outcome.err).back(),
                "## ERROR: LCP file " + folder.path("x_0.stlcp") +
                    " is shorter than its Suffix file: no entry for record " +
                    std::to_string(bytes / 4));
    }
  }
}

}  // namespace
