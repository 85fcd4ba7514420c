// Stretches, second keys and comparisons, against the strings themselves.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "palvor/text/second_key.h"
#include "palvor/text/stretch_builder.h"
#include "palvor/text/stretch_comparison.h"
#include "support/strains.h"

namespace palvor {
namespace {

struct Expected {
  uint32_t bits;
  int order;
};

// By one character after the other.
Expected comparePlainly(const std::string& a, size_t i, const std::string& b,
                        size_t j) {
  uint32_t common = 0;
  while (i < a.size() && j < b.size() && a[i] == b[j]) i++, j++, common++;
  if (i == a.size() || j == b.size()) {
    return {2 * common,
            static_cast<int>(i < a.size()) - static_cast<int>(j < b.size())};
  }
  const uint32_t x = PackedTexts::codeOf(a[i]);
  const uint32_t y = PackedTexts::codeOf(b[j]);
  return {2 * common + (x / 2 == y / 2 ? 1 : 0), x < y ? -1 : 1};
}

int sign(int number) { return (number > 0) - (number < 0); }

// Where a position on the axis lies.
SuffixPlace placeOf(const PackedTexts& collection, const Stretches& stretches,
                    uint32_t axisPosition) {
  for (uint32_t s = 0; s < collection.texts().size(); s++) {
    const uint32_t base = stretches.axisPosition(s, 0);
    if (base <= axisPosition &&
        axisPosition - base <= collection.texts()[s].size()) {
      return {s, axisPosition - base};
    }
  }
  ADD_FAILURE() << "no string at " << axisPosition;
  return {0, 0};
}

// Every stretch says the truth, and every position has one.
void expectTrue(const PackedTexts& collection, const Stretches& stretches) {
  size_t seen = 0;
  for (uint32_t s = 0; s < collection.texts().size(); s++) {
    const std::string& text = collection.texts()[s];
    const uint32_t base = stretches.axisPosition(s, 0);
    uint32_t number = stretches.stretchAt(base);
    ASSERT_EQ(stretches[number].start, base);
    const uint32_t behind = base + static_cast<uint32_t>(text.size()) + 1;
    for (; stretches[number].start < behind; number++, seen++) {
      const Stretch& stretch = stretches[number];
      const uint32_t next = std::min(stretches[number + 1].start, behind);
      ASSERT_LT(stretch.start, next);
      ASSERT_LE(next, stretch.end + 1);
      ASSERT_LE(stretch.anchor, stretch.start);
      const SuffixPlace anchor = placeOf(collection, stretches, stretch.anchor);
      const std::string& other = collection.texts()[anchor.input];
      const uint32_t length = stretch.end - stretch.start;
      ASSERT_EQ(text.compare(stretch.start - base, length, other,
                             anchor.position, length),
                0);
      const PackedString& packed = collection.strings()[s];
      ASSERT_EQ(symbolOf(stretch.parting),
                symbolAt(packed, stretch.end - base));
      ASSERT_EQ(anchorSymbolOf(stretch.parting),
                symbolAt(collection.strings()[anchor.input],
                         anchor.position + length));
      if (symbolOf(stretch.parting) == anchorSymbolOf(stretch.parting)) {
        ASSERT_EQ(symbolOf(stretch.parting), kEndOfString);
      }
      for (uint32_t at = stretch.start; at < next; at++) {
        ASSERT_EQ(stretches.stretchAt(at), number);
      }
    }
  }
  EXPECT_EQ(seen, stretches.size());
}

struct Settled {
  size_t pairs = 0;
  size_t byKeys = 0;
  size_t byFollowing = 0;
};

// All that is said of two suffixes is true.
void expectTrue(const PackedTexts& collection, const Stretches& stretches,
                SuffixPlace a, SuffixPlace b, Settled& settled) {
  const std::string& textA = collection.texts()[a.input];
  const std::string& textB = collection.texts()[b.input];
  const Expected expected =
      comparePlainly(textA, a.position, textB, b.position);
  SCOPED_TRACE(testing::Message() << a.input << ":" << a.position << " and "
                                  << b.input << ":" << b.position);
  settled.pairs++;
  const Anchor anchorA =
      stretches.anchorAt(stretches.axisPosition(a.input, a.position));
  const Anchor anchorB =
      stretches.anchorAt(stretches.axisPosition(b.input, b.position));
  if (anchorA.position == anchorB.position) {
    if (anchorA.key != anchorB.key) {
      settled.byKeys++;
      ASSERT_EQ(stretches.commonBits(anchorA.key, anchorB.key), expected.bits);
      ASSERT_EQ(anchorA.key < anchorB.key ? -1 : 1, expected.order);
    } else if (stretches.equalIfAlike(anchorA.key)) {
      settled.byKeys++;
      ASSERT_EQ(expected.order, 0);
    } else {
      ASSERT_GE(expected.bits, bitsBeforeRanks(anchorA.key));
    }
  }
  const uint32_t common = expected.bits / 2;
  for (const uint32_t known : {0U, common / 2, common}) {
    const StretchParting followed =
        followStretches(stretches, collection.strings(), a, b, known);
    if (followed.known) {
      settled.byFollowing += known == 0 ? 1 : 0;
      ASSERT_EQ(followed.bits, expected.bits);
      ASSERT_EQ(sign(followed.order), expected.order);
    } else {
      ASSERT_LE(followed.bits, expected.bits);
      ASSERT_GE(followed.bits, 2 * known);
      ASSERT_EQ(followed.bits % 2, 0);
    }
    const StretchParting found =
        compareByStretches(stretches, collection.strings(), a, b, known);
    ASSERT_TRUE(found.known);
    ASSERT_EQ(found.bits, expected.bits);
    ASSERT_EQ(sign(found.order), expected.order);
  }
}

std::vector<SuffixPlace> placesOf(const PackedTexts& collection) {
  std::vector<SuffixPlace> places;
  for (uint32_t s = 0; s < collection.texts().size(); s++) {
    for (uint32_t i = 0; i < collection.texts()[s].size(); i++) {
      places.push_back({s, i});
    }
  }
  return places;
}

// Stretches, and all pairs of suffixes, or some of those that stand near each
// other in order.
Settled expectTrue(const PackedTexts& collection, size_t most = 20'000) {
  Settled settled;
  const Stretches stretches = collection.stretches();
  expectTrue(collection, stretches);
  if (testing::Test::HasFatalFailure()) return settled;
  std::vector<SuffixPlace> places = placesOf(collection);
  const bool all = places.size() * places.size() / 2 <= most;
  if (!all) {
    std::ranges::sort(places, [&](const SuffixPlace& a, const SuffixPlace& b) {
      const int order = collection.texts()[a.input].compare(
          a.position, std::string::npos, collection.texts()[b.input],
          b.position, std::string::npos);
      return order != 0 ? order < 0 : a.input < b.input;
    });
  }
  const size_t reach =
      all ? places.size() : std::max<size_t>(1, most / (places.size() + 1));
  for (size_t i = 0; i < places.size(); i++) {
    for (size_t j = i; j < std::min(places.size(), i + reach + 1); j++) {
      // Either of them may be the first.
      const bool swapped = (i + j) % 2 == 1;
      expectTrue(collection, stretches, places[swapped ? j : i],
                 places[swapped ? i : j], settled);
      if (testing::Test::HasFatalFailure()) return settled;
    }
  }
  return settled;
}

TEST(Stretches, NoStringTakesPart) {
  EXPECT_TRUE(buildStretches({}).empty());
  const PackedTexts collection({"", "GATTACA"});
  const Stretches none = buildStretches(collection.strings(), {false, false});
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(none.size(), 0);
  const StretchParting followed =
      followStretches(none, collection.strings(), {1, 1}, {1, 6}, 1);
  EXPECT_FALSE(followed.known);
  EXPECT_EQ(followed.bits, 2);
  const StretchParting found =
      compareByStretches(none, collection.strings(), {1, 1}, {1, 6}, 0);
  EXPECT_TRUE(found.known);
  EXPECT_EQ(found.bits, 2);
  EXPECT_GT(found.order, 0);
}

TEST(Stretches, StringsThatTakeNoPartHaveNoAnchors) {
  Genomes genomes(1);
  const std::string text = genomes.unrelated(200);
  const PackedTexts collection({text, genomes.unrelated(300), text});
  const Stretches stretches =
      buildStretches(collection.strings(), {true, false, true});
  EXPECT_TRUE(stretches.holds(0));
  EXPECT_FALSE(stretches.holds(1));
  EXPECT_FALSE(
      followStretches(stretches, collection.strings(), {0, 0}, {1, 0}, 0)
          .known);
  const StretchParting same =
      followStretches(stretches, collection.strings(), {0, 3}, {2, 3}, 0);
  EXPECT_TRUE(same.known);
  EXPECT_EQ(same.bits, 2 * 197);
  EXPECT_EQ(same.order, 0);
}

TEST(Stretches, AnchorsInStepsAreThoseHadAtOnce) {
  Genomes genomes(11);
  std::vector<std::string> texts = {genomes.unrelated(3'000)};
  for (size_t i = 0; i < 3; i++) {
    texts.push_back(genomes.descendant(texts.back(), 80));
  }
  const PackedTexts collection(texts);
  const Stretches stretches = collection.stretches();
  for (const SuffixPlace place : placesOf(collection)) {
    const uint32_t at = stretches.axisPosition(place.input, place.position);
    const Anchor anchor =
        stretches.anchorFrom(stretches.prefetchStretch(at), at);
    const Anchor expected = stretches.anchorAt(at);
    ASSERT_EQ(anchor.position, expected.position);
    ASSERT_EQ(anchor.key, expected.key);
  }
  const uint32_t nowhere = Axis::kNowhere;
  stretches.prefetchBlock(nowhere);
  const uint32_t last = stretches.prefetchStretch(nowhere);
  EXPECT_EQ(stretches.anchorFrom(last, nowhere).position, nowhere);
}

TEST(Stretches, VeryShortStrings) {
  std::vector<std::string> texts = {"", "A", "C", "G", "T", "", "A"};
  for (char a : std::string(kCharacters)) {
    for (char b : std::string(kCharacters)) texts.push_back({a, b});
  }
  for (size_t n : {15U, 16U, 17U, 31U, 32U, 33U, 48U, 63U, 64U, 65U}) {
    texts.push_back(std::string(n, 'A'));
    texts.push_back(std::string(n, 'T'));
  }
  expectTrue(PackedTexts(texts), 100'000);
}

// All edits of one or two characters of a string, at places where stretches
// begin, end and lie close together.
TEST(Stretches, EverySmallEdit) {
  const std::string text = Genomes(2).unrelated(120);
  for (size_t at = 0; at <= text.size(); at += at < 8 || at > 110 ? 1 : 7) {
    std::vector<std::string> texts = {text};
    for (size_t erased = 0; erased <= 2; erased++) {
      for (const char* inserted : {"", "A", "C", "G", "T", "AC", "TT"}) {
        std::string edited = text;
        texts.push_back(edited.replace(at, erased, inserted));
      }
    }
    // Shared by some, each with a difference of its own behind it.
    for (size_t i = 1; i < 6; i++) {
      std::string edited = texts[i];
      edited[(at + 10 * i) % 100] = 'A';
      texts.push_back(edited);
    }
    expectTrue(PackedTexts(texts), 20'000);
    if (HasFatalFailure()) return;
  }
}

TEST(Stretches, OrderOfAllSymbolsBehindTheSameText) {
  // What differs from the longest string at one place, in every way.
  const std::string text = Genomes(3).unrelated(150);
  for (const char anchors : std::string(kCharacters)) {
    std::vector<std::string> texts = {text + anchors + "ACGTACGT", text};
    for (const char own : std::string(kCharacters)) {
      texts.push_back(text + own);
      texts.push_back(text + own + "CC");
      texts.push_back(text + own + "CG");
    }
    // Another string that ends with the longest one's text, and goes on.
    texts.push_back(text.substr(20) + anchors + "ACGTACGT" + "A");
    texts.push_back(text.substr(20) + anchors + "ACGTACGT" + "T");
    expectTrue(PackedTexts(texts), 60'000);
    if (HasFatalFailure()) return;
  }
}

TEST(Stretches, RunsAndTandemRepeats) {
  Genomes genomes(4);
  for (const size_t period : {1U, 2U, 3U, 5U, 16U, 30U, 64U, 100U}) {
    SCOPED_TRACE(testing::Message() << "period " << period);
    const std::string unit = genomes.unrelated(period);
    std::string tandem;
    while (tandem.size() < 700) tandem += unit;
    std::string broken = tandem;
    broken[350] = broken[350] == 'A' ? 'C' : 'A';
    expectTrue(PackedTexts({tandem, broken, tandem.substr(0, 333),
                            tandem.substr(17, 200) + genomes.unrelated(50)}));
    if (HasFatalFailure()) return;
  }
}

TEST(Stretches, RandomCollections) {
  Settled sum;
  for (unsigned seed = 0; seed < 200; seed++) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Genomes genomes(seed);
    std::vector<std::string> texts = {
        genomes.unrelated(genomes.below(900), 1 + genomes.below(4))};
    const size_t count = 1 + genomes.below(9);
    while (texts.size() < count) {
      // Descendants of any that is there, so that edits are inherited.
      const std::string& parent = texts[genomes.below(texts.size())];
      texts.push_back(genomes.below(9) == 0
                          ? genomes.unrelated(genomes.below(300))
                          : genomes.descendant(parent, genomes.below(12)));
      if (genomes.below(12) == 0) texts.push_back(texts.back());
    }
    const Settled settled = expectTrue(PackedTexts(texts), 8'000);
    if (HasFatalFailure()) return;
    sum.pairs += settled.pairs;
    sum.byKeys += settled.byKeys;
    sum.byFollowing += settled.byFollowing;
  }
  // They are of use, even here, where suffixes next to each other often begin
  // with the same few characters by chance.
  EXPECT_GT(sum.byKeys, sum.pairs / 20);
  EXPECT_GT(sum.byFollowing, sum.pairs / 3);
}

// More than the common prefixes of ranks are looked at one by one.
TEST(Stretches, HundredsOfStrainsShareADifference) {
  Genomes genomes(9);
  const std::string text = genomes.unrelated(260);
  std::string mutated = text;
  mutated[60] = text[60] == 'A' ? 'C' : 'A';
  mutated[110] = text[110] == 'G' ? 'T' : 'G';
  std::vector<std::string> texts = {text};
  for (size_t i = 0; i < 400; i++) {
    texts.push_back(mutated);
    for (size_t d = 0; d < 3; d++) {
      texts.back()[150 + genomes.below(110)] = kCharacters[genomes.below(4)];
    }
  }
  const PackedTexts collection(texts);
  const Stretches stretches = collection.stretches();
  Settled settled;
  for (uint32_t i = 0; i < 8'000; i++) {
    const auto a = static_cast<uint32_t>(genomes.below(texts.size()));
    const auto b = static_cast<uint32_t>(genomes.below(texts.size()));
    const auto at = static_cast<uint32_t>(genomes.below(200));
    expectTrue(collection, stretches, {a, at}, {b, at}, settled);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(settled.byKeys, settled.pairs * 95 / 100);
}

// What stands behind each difference is the same difference again, thousands of
// times: that is left without ranks, and compared all the same.
TEST(Stretches, DifferencesThatAreNotRanked) {
  Genomes genomes(10);
  const std::string unit = genomes.unrelated(80);
  std::string changed = unit;
  changed[40] = unit[40] == 'A' ? 'C' : 'A';
  std::string text;
  for (size_t i = 0; i < 2'000; i++) text += unit + unit + unit + changed;
  const PackedTexts collection({text});
  const Stretches stretches = collection.stretches();
  expectTrue(collection, stretches);
  Settled settled;
  size_t unknown = 0;
  for (uint32_t i = 0; i < 200; i++) {
    const auto a = static_cast<uint32_t>(320 * genomes.below(1'900)) + i;
    const auto b = static_cast<uint32_t>(320 * genomes.below(1'900)) + i;
    expectTrue(collection, stretches, {0, a}, {0, b}, settled);
    if (HasFatalFailure()) return;
    const StretchParting followed =
        followStretches(stretches, collection.strings(), {0, a}, {0, b}, 0);
    unknown += followed.known ? 0 : 1;
  }
  EXPECT_GT(unknown, 100);
}

TEST(Stretches, AStringOfManyDifferencesIsLeftAlone) {
  Genomes genomes(5);
  const std::string text = genomes.unrelated(40'000);
  std::string edited = text;
  for (size_t i = 0; i < edited.size(); i += 4 + genomes.below(8)) {
    edited[i] = edited[i] == 'G' ? 'T' : 'G';
  }
  const PackedTexts collection({text, edited});
  const Stretches stretches = collection.stretches();
  EXPECT_LT(stretches.size(), 80'000 / 32 + 600);
  expectTrue(collection, stretches);
}

TEST(Stretches, LongStrains) {
  Genomes genomes(6);
  const std::string ancestor = genomes.unrelated(8'000);
  std::vector<std::string> texts;
  for (size_t i = 0; i < 4; i++) {
    texts.push_back(genomes.descendant(ancestor, 16));
    texts.push_back(genomes.descendant(texts.back(), 5));
  }
  const PackedTexts collection(texts);
  const Settled settled = expectTrue(collection, 0);
  EXPECT_GT(settled.byFollowing, settled.pairs * 8 / 10);
  const Stretches stretches = collection.stretches();
  EXPECT_LT(stretches.memory(), 64'000 * 3 / 10);
}

}  // namespace
}  // namespace palvor
