// From sequence files to the texts of suffix arrays, one after the other.

#ifndef PALVOR_KIT_PREPARE_PSA_SOURCE_H_
#define PALVOR_KIT_PREPARE_PSA_SOURCE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kit/prepare/psa_text.h"
#include "kit/sequences/sequence_reader.h"

namespace kit {

// What to do about characters other than A, C, G and T.
enum class Ambiguous {
  kSplit,       // end the input there, and begin the next one after them
  kSkipRecord,  // leave the whole record out
  kError        // stop
};

// How records become inputs and suffix arrays.
struct ReadingRules {
  Ambiguous ambiguous = Ambiguous::kSplit;
  bool psaPerRecord = false;  // an array for each record, instead of each file
  bool bothStrands = false;   // the reverse complement of each input follows it
                              // as an input of its own
};

// What was read, and what was done about it.
struct ReadingSummary {
  uint64_t records = 0;
  uint64_t inputs = 0;
  uint64_t characters = 0;      // in the inputs, on all strands
  uint64_t ambiguous = 0;       // ambiguous characters
  LetterCounts letters{};       // which ones
  uint64_t splits = 0;          // inputs that begin after ambiguous characters
  uint64_t skippedRecords = 0;  // left out for an ambiguous character
  uint64_t emptyRecords = 0;    // left out since nothing is in them
  uint64_t emptyFiles = 0;      // files that gave no input at all
  std::string emptyFile;        // the first of these
};

class PsaSource {
 public:
  // Arrays and inputs are numbered from these on.
  PsaSource(std::vector<std::string> files, const ReadingRules& rules,
            int firstArray = 0, uint32_t firstInput = 0);

  // Reads the next array's inputs. Arrays without any are passed over. False
  // when all files are read. Throws std::runtime_error with the file's name.
  bool next(PsaText& psa);

  const ReadingSummary& summary() const { return summary_; }

 private:
  void reserve(PsaText& psa) const;
  void readRecord(PsaText& psa);
  void addCharacters(PsaText& psa, std::string_view run, uint64_t offset);
  void endFile();
  void testSize(const PsaText& psa) const;
  void endInput(PsaText& psa);
  void dropInputs(PsaText& psa, size_t from);
  bool finish(PsaText& psa);

  std::vector<std::string> files_;
  ReadingRules rules_;
  std::unique_ptr<SequenceReader> reader_;  // of the current file, if any
  size_t fileIndex_ = 0;
  bool fileGaveInput_ = false;
  uint64_t fileLetters_ = 0;  // of the current file
  bool inputOpen_ = false;    // the text ends in the middle of an input
  int nextNumber_;
  uint64_t nextInput_;
  ReadingSummary summary_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_PSA_SOURCE_H_
