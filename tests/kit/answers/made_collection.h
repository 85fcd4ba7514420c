// A small collection of genomes, at random or given, that the real programs
// prepare and merge, and what a slow model has to know of it.

#ifndef PALVOR_TESTS_KIT_ANSWERS_MADE_COLLECTION_H_
#define PALVOR_TESTS_KIT_ANSWERS_MADE_COLLECTION_H_

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

struct SequenceRecord {
  std::string name;
  std::string text;  // over ACGTN
};

struct SequenceFile {
  std::string name;
  std::vector<SequenceRecord> records;
};

// A stretch without N of a record.
struct Piece {
  uint32_t genome;  // number of its file
  std::string file;
  std::string record;
  uint64_t offset;  // in the record
  std::string text;
};

// A number from 0 to n - 1.
size_t below(std::mt19937& random, size_t n);

std::string reverseComplementOf(const std::string& text);

// Files of several records with repeats, inverted repeats, palindromes, runs of
// N, and stretches of one another; of at most about `longest` characters.
std::vector<SequenceFile> randomFiles(std::mt19937& random, size_t longest);

class MadeCollection {
 public:
  // Writes the files, prepares them as d.ST and merges them as m.ST, with their
  // LCPs; both must succeed.
  //   prepareOptions, mergeOptions  parted by blanks
  MadeCollection(const std::vector<SequenceFile>& files,
                 const std::string& prepareOptions,
                 const std::string& mergeOptions = "-a -l");

  // Runs a command on the merged array; the options are parted by blanks.
  Outcome run(const std::string& command, const std::string& options) const;

  // The same, which must succeed; standard output.
  std::string expect(const std::string& command,
                     const std::string& options) const;

  // On the forward strand.
  const std::vector<Piece>& pieces() const { return pieces_; }
  uint32_t genomes() const { return genomes_; }

  const TemporaryFolder& folder() const { return folder_; }

 private:
  TemporaryFolder folder_;
  std::vector<Piece> pieces_;
  uint32_t genomes_;
};

#endif  // PALVOR_TESTS_KIT_ANSWERS_MADE_COLLECTION_H_
