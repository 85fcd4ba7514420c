#include "kit/prepare/psa_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "kit/packer.h"
#include "kit/sequences/source_file.h"

namespace kit {
namespace {

// A packed string's length in bits, and an input number, are limited.
constexpr size_t kLongestInput = 1'073'741'823;  // characters
constexpr uint64_t kMostInputs = 1'073'741'823;

// Letters that say something about what a text is.
constexpr uint64_t kWorthJudging = 64;

// Positions of a text are 32-bit numbers.
constexpr size_t kMostWords = (size_t{1} << 28) - 1;

}  // namespace

PsaSource::PsaSource(std::vector<std::string> files, const ReadingRules& rules,
                     int firstArray, uint32_t firstInput)
    : files_(std::move(files)),
      rules_(rules),
      nextNumber_(firstArray),
      nextInput_(firstInput) {}

bool PsaSource::next(PsaText& psa) {
  psa = {};
  while (fileIndex_ < files_.size()) {
    if (!reader_) {
      reader_ = std::make_unique<SequenceReader>(files_[fileIndex_]);
      fileGaveInput_ = false;
      fileLetters_ = 0;
      if (!rules_.psaPerRecord) reserve(psa);
    }
    psa.file = files_[fileIndex_];
    while (reader_->nextRecord()) {
      readRecord(psa);
      if (rules_.psaPerRecord && finish(psa)) return true;
    }
    const bool found = !rules_.psaPerRecord && finish(psa);
    endFile();
    if (found) return true;
  }
  return false;
}

// Makes room for all of the current file, so that the text need not move.
void PsaSource::reserve(PsaText& psa) const {
  const size_t words =
      reader_->bytesAhead() / kCharactersPerWord * (rules_.bothStrands ? 2 : 1);
  psa.words.reserve(std::min(words, kMostWords));
}

// Sums up the current file, and leaves it. Unknown characters (N) may be most
// of a genome; codes that leave a choice are rare in DNA and frequent in
// protein.
void PsaSource::endFile() {
  uint64_t codes = 0;
  const LetterCounts& letters = reader_->ambiguousLetters();
  for (size_t letter = 0; letter < letters.size(); letter++) {
    summary_.letters[letter] += letters[letter];
    if (letter >= 'A' && letter <= 'Z' && letter != 'N') {
      codes += letters[letter];
    }
  }
  if (fileLetters_ >= kWorthJudging && 2 * codes > fileLetters_) {
    throw std::runtime_error(
        fmt::format("{}: of {} letters {} are ambiguous: this is probably "
                    "protein, not DNA",
                    sourceName(files_[fileIndex_]), fileLetters_, codes));
  }
  if (!fileGaveInput_ && summary_.emptyFiles++ == 0) {
    summary_.emptyFile = sourceName(files_[fileIndex_]);
  }
  reader_.reset();
  fileIndex_++;
}

// Numbers what was read, if it holds any input.
bool PsaSource::finish(PsaText& psa) {
  if (psa.inputs.empty()) return false;
  psa.number = nextNumber_++;
  psa.firstInput = static_cast<uint32_t>(nextInput_);
  nextInput_ += psa.inputs.size();
  summary_.inputs += psa.inputs.size();
  if (nextInput_ > kMostInputs) {
    throw std::runtime_error(
        fmt::format("{}: more inputs than {}", psa.file, kMostInputs));
  }
  for (const InputString& input : psa.inputs) psa.characters += input.length;
  summary_.characters += psa.characters;
  fileGaveInput_ = true;
  return true;
}

void PsaSource::readRecord(PsaText& psa) {
  const size_t inputsBefore = psa.inputs.size();
  uint64_t offset = 0;
  bool skip = false;
  summary_.records++;
  for (std::string_view piece = reader_->readSequence(); !piece.empty();
       piece = reader_->readSequence()) {
    while (!piece.empty()) {
      const size_t clean = std::min(piece.find('N'), piece.size());
      if (clean > 0 && !skip)
        addCharacters(psa, piece.substr(0, clean), offset);
      const size_t next =
          std::min(piece.find_first_not_of('N', clean), piece.size());
      const size_t ambiguous = next - clean;
      if (ambiguous > 0) {
        if (rules_.ambiguous == Ambiguous::kError) {
          throw std::runtime_error(reader_->located(fmt::format(
              "character {} of record '{}' is '{}', which is ambiguous (see "
              "--ambiguous)",
              offset + clean, reader_->name(), reader_->firstAmbiguous())));
        }
        summary_.ambiguous += ambiguous;
        skip = skip || rules_.ambiguous == Ambiguous::kSkipRecord;
        endInput(psa);
      }
      offset += next;
      piece.remove_prefix(next);
    }
  }
  fileLetters_ += offset;
  endInput(psa);
  if (skip) {
    dropInputs(psa, inputsBefore);
    summary_.skippedRecords++;
  } else if (psa.inputs.size() == inputsBefore) {
    summary_.emptyRecords++;
  } else {
    const size_t strands = rules_.bothStrands ? 2 : 1;
    summary_.splits += (psa.inputs.size() - inputsBefore) / strands - 1;
  }
}

void PsaSource::addCharacters(PsaText& psa, std::string_view run,
                              uint64_t offset) {
  if (!inputOpen_) {
    psa.inputs.push_back(
        {kCharactersPerWord * psa.words.size(), 0, reader_->name(), offset});
    inputOpen_ = true;
  }
  InputString& input = psa.inputs.back();
  appendPacked(psa.words, input.length, run);
  input.length += run.size();
  if (input.length > kLongestInput) {
    throw std::runtime_error(reader_->located(
        fmt::format("an input of more than {} characters", kLongestInput)));
  }
  testSize(psa);
}

void PsaSource::testSize(const PsaText& psa) const {
  if (psa.words.size() + kGapWords > kMostWords) {
    throw std::runtime_error(reader_->located(fmt::format(
        "more than {} packed words for one suffix array{}", kMostWords,
        rules_.psaPerRecord ? "" : " (see --psa-per record)")));
  }
}

void PsaSource::endInput(PsaText& psa) {
  if (!inputOpen_) return;
  inputOpen_ = false;
  psa.words.resize(psa.words.size() + kGapWords);
  if (!rules_.bothStrands) return;
  InputString other = psa.inputs.back();
  other.begin = kCharactersPerWord * psa.words.size();
  other.reverse = true;
  appendReverseComplement(
      psa.words, psa.inputs.back().begin / kCharactersPerWord, other.length);
  psa.words.resize(psa.words.size() + kGapWords);
  psa.inputs.push_back(std::move(other));
  testSize(psa);
}

void PsaSource::dropInputs(PsaText& psa, size_t from) {
  if (from == psa.inputs.size()) return;
  psa.words.resize(psa.inputs[from].begin / kCharactersPerWord);
  psa.inputs.resize(from);
}

}  // namespace kit
