// Which strings are taken for alike.

#include "palvor/text/likeness.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/strains.h"

namespace palvor {
namespace {

TEST(Likeness, FindsWhatIsAlike) {
  Genomes genomes(7);
  const std::string text = genomes.unrelated(100'000);
  std::string turned = text.substr(33'000) + text.substr(0, 33'000);
  const PackedTexts collection({genomes.unrelated(100'000), text,
                                genomes.unrelated(90'000),
                                genomes.descendant(turned, 300), "", "A"});
  EXPECT_EQ(stringsWithLikes(collection.strings()),
            (std::vector<bool>{false, true, false, true, false, false}));
  EXPECT_EQ(buildStretches(collection.strings()).holds(0), false);
  EXPECT_EQ(buildStretches(collection.strings()).holds(3), true);
}

TEST(Likeness, JudgesShortStringsTogether) {
  Genomes genomes(8);
  const std::string text = genomes.unrelated(20'000);
  std::vector<std::string> reads;
  std::vector<std::string> others;
  for (size_t i = 0; i < 2000; i++) {
    reads.push_back(text.substr(genomes.below(19'800), 200));
    others.push_back(genomes.unrelated(200));
  }
  EXPECT_EQ(stringsWithLikes(PackedTexts(reads).strings()),
            std::vector<bool>(2000, true));
  EXPECT_EQ(stringsWithLikes(PackedTexts(others).strings()),
            std::vector<bool>(2000, false));
}

}  // namespace
}  // namespace palvor
