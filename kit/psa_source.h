// From sequence files to the texts of suffix arrays, one after the other.

#ifndef PALVOR_KIT_PSA_SOURCE_H_
#define PALVOR_KIT_PSA_SOURCE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kit/psa_text.h"
#include "kit/sequence_reader.h"

namespace kit {

// What to do about characters other than A, C, G and T.
enum class Ambiguous {
  kSplit,       // end the input there, and begin the next one after them
  kSkipRecord,  // leave the whole record out
  kError        // stop
};

// What was read, and what was done about it.
struct ReadingSummary {
  uint64_t records = 0;
  uint64_t inputs = 0;
  uint64_t characters = 0;  // in the inputs
  uint64_t ambiguous = 0;   // ambiguous characters, as far as they were read
  uint64_t splits = 0;      // inputs that begin after ambiguous characters
  uint64_t skippedRecords = 0;  // left out for an ambiguous character
  uint64_t emptyRecords = 0;    // left out since nothing is in them
  uint64_t emptyFiles = 0;      // files that gave no input at all
};

class PsaSource {
 public:
  // perRecord: each record gets an array of its own, instead of each file.
  PsaSource(std::vector<std::string> files, Ambiguous ambiguous,
            bool perRecord);

  // Reads the next array's inputs. Arrays without any are passed over. False
  // when all files are read. Throws std::runtime_error with the file's name.
  bool next(PsaText& psa);

  const ReadingSummary& summary() const { return summary_; }

  // Files read to their end, for the progress.
  size_t filesRead() const { return fileIndex_; }

 private:
  void readRecord(PsaText& psa);
  void addCharacters(PsaText& psa, std::string_view run, uint64_t offset);
  void endInput(PsaText& psa);
  void dropInputs(PsaText& psa, size_t from);
  bool finish(PsaText& psa);

  std::vector<std::string> files_;
  Ambiguous ambiguous_;
  bool perRecord_;
  std::unique_ptr<SequenceReader> reader_;  // of the current file, if any
  size_t fileIndex_ = 0;
  bool fileGaveInput_ = false;
  bool inputOpen_ = false;  // the text ends in the middle of an input
  int nextNumber_ = 0;
  ReadingSummary summary_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PSA_SOURCE_H_
