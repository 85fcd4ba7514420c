// palvor-kit export through the real programs, against suffixes that are sorted
// as texts, terminators included.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "kit/answers/made_collection.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Row {
  size_t input;
  size_t pos;
  std::string text;  // without the terminator
};

// The inputs in their order.
std::vector<std::string> inputsOf(const MadeCollection& made, bool both) {
  std::vector<std::string> inputs;
  for (const Piece& piece : made.pieces()) {
    inputs.push_back(piece.text);
    if (both) inputs.push_back(reverseComplementOf(piece.text));
  }
  return inputs;
}

std::vector<Row> rowsOf(const std::vector<std::string>& inputs) {
  std::vector<Row> rows;
  for (size_t i = 0; i < inputs.size(); i++) {
    for (size_t pos = 0; pos <= inputs[i].size(); pos++) {
      rows.push_back({i, pos, inputs[i].substr(pos)});
    }
  }
  std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
    return a.text != b.text ? a.text < b.text : a.input < b.input;
  });
  return rows;
}

std::vector<uint64_t> numbersOf(const std::string& bytes, size_t width) {
  std::vector<uint64_t> numbers(bytes.size() / width);
  for (size_t i = 0; i < numbers.size(); i++) {
    std::memcpy(&numbers[i], bytes.data() + i * width, width);
  }
  return numbers;
}

// Goes through the transform backwards from the terminator of each input, as
// indexes do that are made of it.
std::vector<std::string> inverted(const std::string& bwt, size_t inputs) {
  std::vector<size_t> sorted(bwt.size());
  std::iota(sorted.begin(), sorted.end(), size_t{0});
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](size_t a, size_t b) { return bwt[a] < bwt[b]; });
  std::vector<size_t> rowBefore(bwt.size());
  for (size_t i = 0; i < sorted.size(); i++) rowBefore[sorted[i]] = i;
  std::vector<std::string> texts;
  for (size_t i = 0; i < inputs; i++) {
    std::string text;
    for (size_t row = i; bwt[row] != '$' && text.size() < bwt.size();
         row = rowBefore[row]) {
      text += bwt[row];
    }
    texts.emplace_back(text.rbegin(), text.rend());
  }
  return texts;
}

TEST(Export, WritesWhatSortingGives) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 2 == 0;
    const MadeCollection made(randomFiles(random, 60),
                              both ? "--strands both" : "");
    const auto inputs = inputsOf(made, both);
    const auto rows = rowsOf(inputs);
    std::vector<uint64_t> begins = {0};
    for (const std::string& input : inputs) {
      begins.push_back(begins.back() + input.size() + 1);
    }
    std::string bwt;
    std::vector<uint64_t> sa, lcp, da;
    for (const Row& row : rows) {
      bwt += row.pos == 0 ? '$' : inputs[row.input][row.pos - 1];
      sa.push_back(begins[row.input] + row.pos);
      da.push_back(row.input);
      const std::string before = lcp.empty() ? "" : rows[lcp.size() - 1].text;
      const auto differ = std::mismatch(before.begin(), before.end(),
                                        row.text.begin(), row.text.end());
      lcp.push_back(static_cast<uint64_t>(differ.first - before.begin()));
    }
    EXPECT_EQ(made.expect("export", "bwt"), bwt);
    EXPECT_EQ(inverted(bwt, inputs.size()), inputs);
    EXPECT_EQ(numbersOf(made.expect("export", "sa"), 8), sa);
    EXPECT_EQ(numbersOf(made.expect("export", "lcp --width 4"), 4), lcp);
    EXPECT_EQ(numbersOf(made.expect("export", "da --width 5"), 5), da);
    if (HasFailure()) break;
  }
}

TEST(Export, TakesShortInputsAmongLongOnes) {
  std::mt19937 random(7);
  std::string text;
  for (int i = 0; i < 40'000; i++) text += "ACGT"[below(random, 4)];
  SequenceFile file = {"a.fa", {{"long", text}}};
  // On both sides of a page of 1,024 words, the last of which may be begun.
  for (const size_t length : {1, 16, 16367, 16368, 16369, 16384, 16385}) {
    file.records.push_back({std::to_string(length), text.substr(0, length)});
  }
  const MadeCollection made({file}, "");
  EXPECT_EQ(inverted(made.expect("export", "bwt"), file.records.size()),
            inputsOf(made, false));
}

TEST(Export, WritesHeadersForNumpy) {
  const MadeCollection made({{"a.fa", {{"x", "GAT"}}}}, "");
  const std::string npy = made.expect("export", "sa --npy --width 4");
  EXPECT_THAT(npy, StartsWith(std::string("\x93NUMPY\x01\x00\x76\x00", 10) +
                              "{'descr': '<u4', 'fortran_order': False, "
                              "'shape': (4,), } "));
  ASSERT_EQ(npy.size(), 128 + 4 * 4);
  EXPECT_EQ(npy[127], '\n');
  EXPECT_EQ(numbersOf(npy.substr(128), 4), (std::vector<uint64_t>{3, 1, 0, 2}));
  EXPECT_EQ(made.expect("export", "bwt --newline"), "TG\nA");
  const std::pair<const char*, const char*> wrong[] = {
      {"bwt --npy", "--npy is for numbers, and the bwt has none"},
      {"sa --newline", "--newline is for the bwt"},
      {"sa --npy --width 5", "numpy has no numbers of 5 bytes"},
      {"sa --width 6", "--width"},
      {"isa", "isa"},
      {"", "array is required"},
  };
  for (const auto& [options, reason] : wrong) {
    SCOPED_TRACE(options);
    const Outcome run = made.run("export", options);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(reason));
  }
}

}  // namespace
