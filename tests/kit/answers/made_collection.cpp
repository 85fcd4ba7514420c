#include "kit/answers/made_collection.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Random = std::mt19937;

std::string letters(Random& random, size_t n, const std::string& alphabet) {
  std::string text;
  while (text.size() < n) text += alphabet[below(random, alphabet.size())];
  return text;
}

std::string stretchOf(Random& random, const std::string& text) {
  const size_t begin = below(random, text.size());
  return text.substr(begin, 1 + below(random, text.size() - begin));
}

// One of many kinds of text, some made of what there was before.
std::string randomText(Random& random, const std::vector<std::string>& before,
                       size_t longest) {
  const size_t length = 1 + below(random, longest);
  switch (below(random, before.empty() ? 4 : 8)) {
    case 0:
      return letters(random, length, "ACGT");
    case 1:
      return letters(random, length, "AT");
    case 2: {  // a palindrome with something around it
      const std::string half = letters(random, 1 + length / 2, "ACGT");
      return letters(random, 3, "AC") + half + reverseComplementOf(half) +
             letters(random, 3, "GT");
    }
    case 3: {  // a tandem repeat
      const std::string unit = letters(random, 1 + below(random, 4), "ACGT");
      std::string text;
      while (text.size() < length) text += unit;
      return text;
    }
    case 4:
      return before[below(random, before.size())];
    case 5:
      return reverseComplementOf(before[below(random, before.size())]);
    case 6: {  // a mutant
      std::string text = before[below(random, before.size())];
      text[below(random, text.size())] = "ACGT"[below(random, 4)];
      return text;
    }
    default:
      return stretchOf(random, before[below(random, before.size())]) +
             stretchOf(random, before[below(random, before.size())]);
  }
}

}  // namespace

size_t below(std::mt19937& random, size_t n) {
  return std::uniform_int_distribution<size_t>(0, n - 1)(random);
}

std::string reverseComplementOf(const std::string& text) {
  const std::string letters = "ACGT", complements = "TGCA";
  std::string result;
  for (auto c = text.rbegin(); c != text.rend(); ++c) {
    result += complements[letters.find(*c)];
  }
  return result;
}

std::vector<SequenceFile> randomFiles(Random& random, size_t longest) {
  std::vector<SequenceFile> files;
  std::vector<std::string> texts;
  const size_t count = 1 + below(random, 5);
  for (size_t f = 0; f < count; f++) {
    SequenceFile file = {fmt::format("f{}.fa", f), {}};
    const size_t records = 1 + below(random, 3);
    for (size_t r = 0; r < records; r++) {
      std::string text;
      do {
        texts.push_back(randomText(random, texts, longest));
        if (!text.empty()) text += "NN";
        text += texts.back();
      } while (below(random, 3) == 0);
      file.records.push_back({fmt::format("r{}{}", f, r), text});
    }
    files.push_back(file);
  }
  return files;
}

MadeCollection::MadeCollection(const std::vector<SequenceFile>& files,
                               const std::string& prepareOptions,
                               const std::string& mergeOptions)
    : genomes_(static_cast<uint32_t>(files.size())) {
  std::vector<std::string> prepare = {"prepare", "-o", folder_.path(""), "-p",
                                      "d"};
  for (const std::string& word : wordsOf(prepareOptions)) {
    prepare.push_back(word);
  }
  for (uint32_t f = 0; f < files.size(); f++) {
    std::string fasta;
    for (const SequenceRecord& record : files[f].records) {
      fasta += ">" + record.name + "\n" + record.text + "\n";
      for (size_t begin = 0; begin < record.text.size();) {
        const size_t end =
            std::min(record.text.find('N', begin), record.text.size());
        if (end > begin) {
          pieces_.push_back({f, folder_.path(files[f].name), record.name, begin,
                             record.text.substr(begin, end - begin)});
        }
        begin = end + 1;
      }
    }
    prepare.push_back(folder_.write(files[f].name, fasta));
  }
  const Outcome prepared = runKit(prepare);
  EXPECT_EQ(prepared.status, 0) << prepared.err;
  folder_.write("m.ST/placeholder", "");
  std::vector<std::string> merge = {folder_.path(""), "d", "-q", "-p", "m"};
  for (const std::string& word : wordsOf(mergeOptions)) merge.push_back(word);
  const Outcome merged = runPalvor(merge);
  EXPECT_EQ(merged.status, 0) << merged.err;
}

Outcome MadeCollection::run(const std::string& command,
                            const std::string& options) const {
  std::vector<std::string> words = {command, folder_.path(""), "d", "-p", "m"};
  for (const std::string& word : wordsOf(options)) words.push_back(word);
  return runKit(words);
}

std::string MadeCollection::expect(const std::string& command,
                                   const std::string& options) const {
  const Outcome outcome = run(command, options);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return outcome.out;
}
