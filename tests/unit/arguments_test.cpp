#include "cli/arguments.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "support/engine.h"

namespace {

// A command line and what it says; the arguments point into its texts.
class Scanned {
 public:
  explicit Scanned(std::vector<std::string> texts) : texts_(std::move(texts)) {
    std::vector<char*> argv = {program_.data()};
    for (std::string& text : texts_) argv.push_back(text.data());
    argv.push_back(nullptr);
    arguments_ =
        cli::scanArguments(static_cast<int>(argv.size()) - 1, argv.data());
  }
  Scanned(const Scanned&) = delete;
  Scanned& operator=(const Scanned&) = delete;

  const cli::Arguments* operator->() const { return &arguments_; }
  palvor::MergeOptions options() const {
    return cli::mergeOptionsOf(arguments_);
  }

 private:
  std::string program_ = "palvor";
  std::vector<std::string> texts_;
  cli::Arguments arguments_;
};

void expectNumber(int number, const std::vector<const char*>& texts,
                  const std::vector<const char*>& oddTexts = {}) {
  for (const char* text : texts) {
    EXPECT_EQ(cli::numberOf(text).value, number) << text;
    EXPECT_FALSE(cli::numberOf(text).odd) << text;
  }
  for (const char* text : oddTexts) {
    EXPECT_EQ(cli::numberOf(text).value, number) << text;
    EXPECT_TRUE(cli::numberOf(text).odd) << text;
  }
}

TEST(Numbers, AreReadAsPowersOrDecimals) {
  expectNumber(1, {"2^0", "1.99"}, {"2^32", "2^"});
  expectNumber(2, {"2"}, {"2^33"});
  expectNumber(7, {"+7", " 7"});
  expectNumber(22, {}, {"22^3"});
  expectNumber(64, {"2^6"}, {"64K", "2^6K"});
  expectNumber(1048576, {"2^20"});
  expectNumber(2500000, {"2.5e6"});
  expectNumber(100000000, {"1e8"});
  expectNumber(0, {"0"}, {"abc", "", "nan"});
  expectNumber(-1, {"-1.99"});
  expectNumber(1 << 30, {"2^30"});
  expectNumber(INT_MAX, {"2147483647", "2147483647.5"},
               {"2147483648", "1e300", "inf"});
  expectNumber(INT_MIN, {"-2147483648"},
               {"2^-1", "2^31", "2^99999999999999999999", "-1e300"});
}

TEST(ArgumentScan, MixesOptionsAndPositionalValues) {
  const Scanned said({"-quiet", "-m", "1e3", "data/", "-o", "out/", "-m",
                      "2^20", "chr", "-S", "", "-abc", "-x", "99", "-n", "0",
                      "-J", "1-4,6"});
  EXPECT_STREQ(said->inputFolder, "data/");
  EXPECT_STREQ(said->inputPrefix, "chr");
  EXPECT_STREQ(said->arrayFolder, "") << "an empty text is a given one";
  EXPECT_EQ(said->outputPrefix, nullptr);
  EXPECT_STREQ(said->indexes, "1-4,6");
  EXPECT_TRUE(said->array) << "only the first letter counts";
  EXPECT_FALSE(said->bigSuffixes);
  EXPECT_EQ(said->memory, 1048576) << "the later of two counts";
}

TEST(ArgumentScan, LeavesPlacesAndSizesAtTheirDefaults) {
  const palvor::MergeOptions plain = Scanned({"data/", "chr"}).options();
  for (const palvor::DataPlace& place :
       {plain.input, plain.arrays, plain.output}) {
    EXPECT_EQ(place.folder + "|" + place.prefix, "data/|chr");
  }
  EXPECT_EQ(plain.memory, 300'000'000);
  EXPECT_TRUE(plain.usePrefixKeys);
  EXPECT_FALSE(plain.array);

  const palvor::MergeOptions given =
      Scanned({"data/", "chr", "-S", "", "-s", "arrays", "-o", "out/", "-X",
               "-M", "64"})
          .options();
  EXPECT_EQ(given.arrays.folder + "|" + given.arrays.prefix, "|arrays");
  EXPECT_EQ(given.output.folder + "|" + given.output.prefix, "out/|chr");
  EXPECT_FALSE(given.usePrefixKeys);
  EXPECT_EQ(given.streamBuffer, 64);
}

TEST(ArgumentScan, RefusesWhatItCannotTake) {
  using Words = std::vector<std::string>;
  const auto refusal = [](const Words& words) {
    return std::string(errorOf([&] { const Scanned said(words); }).what());
  };
  EXPECT_EQ(refusal({"data/", "chr", "-m", "-v"}),
            "Error: option value pending when reached '-v'");
  EXPECT_EQ(refusal({"data/", "chr", "-o"}),
            "Error: option value pending when reached end of args");
  EXPECT_EQ(refusal({"data/", "chr", "-D"}), "Error: unrecognized option '-D'");
  EXPECT_EQ(refusal({"data/", "chr", "y"}),
            "main parameters already defined, at option 'y'");
  EXPECT_EQ(refusal({"data/"}),
            "Error: the input file prefix is missing (second main parameter)");
}

}  // namespace
