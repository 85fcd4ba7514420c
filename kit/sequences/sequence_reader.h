// Reads FASTA and FASTQ, record by record and piece by piece, so that a record
// of any length needs no memory of its own.
//
// The first record decides which of the two a file is: '>' or '@'. Sequences
// may stand in lines of any width, in either case, with Windows line ends.
// Letters come out in one spelling:
//
//   A C G T   as themselves; U as T
//   N         for N, the other ambiguity codes (R Y S W K M B D H V X) and the
//             signs '-', '.' and '*'
//
// White space is skipped. Any other byte in a sequence is an error, and so are
// a FASTQ record without '+' or with a quality for more or fewer characters
// than its sequence has.

#ifndef PALVOR_KIT_SEQUENCES_SEQUENCE_READER_H_
#define PALVOR_KIT_SEQUENCES_SEQUENCE_READER_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kit/sequences/byte_source.h"

namespace kit {

// How often a file has each of the letters that come out as N, by the letter as
// a capital.
using LetterCounts = std::array<uint64_t, 128>;

class SequenceReader {
 public:
  // Opens a file, plain or compressed; "-" is standard input.
  // Every function throws std::runtime_error with the file's name and, for
  // malformed text, the line number.
  explicit SequenceReader(const std::string& path);

  // Goes to the next record, past what was not read of this one. False at the
  // end of the file; a file without any record has none from the start.
  bool nextRecord();

  // The first word behind the '>' or '@' of the record's header line.
  const std::string& name() const { return name_; }

  // The next characters of the record's sequence, all of one line; empty at
  // the sequence's end, and only there. Valid until the next call.
  std::string_view readSequence();

  // The first letter, as it was written, that came out as N in the characters
  // read last; there must be one.
  char firstAmbiguous() const { return firstAmbiguous_; }

  // Of all characters read so far.
  const LetterCounts& ambiguousLetters() const { return ambiguous_; }

  // Bytes of the file, as it is stored, that were used so far, in blocks.
  uint64_t storedBytes() const { return source_->storedBytes(); }

  // Bytes of text that are still to be read, about; 0 if that is not known.
  uint64_t bytesAhead() const { return source_->bytesAhead(); }

  // Number of the line that was read last, from 1.
  uint64_t line() const { return line_; }

  // "file:line: reason", for errors that the reader's user finds.
  std::string located(const std::string& reason) const;

 private:
  enum class Format { kUnknown, kFasta, kFastq };

  [[noreturn]] void fail(const std::string& reason) const;
  bool fill();
  int peek();
  bool nextPiece(std::string_view* piece);
  void skipBlankLines();
  void readHeader();
  void finishFastqRecord();
  std::string_view normalize(std::string_view piece);
  [[noreturn]] void refuse(std::string_view piece, char found) const;

  std::string path_;
  std::unique_ptr<ByteSource> source_;
  std::vector<char> buffer_;
  size_t begin_ = 0;  // buffer_[begin_, end_) is still to be read
  size_t end_ = 0;
  uint64_t line_ = 0;
  bool midLine_ = false;  // the last piece did not reach its line's end
  Format format_ = Format::kUnknown;
  bool inSequence_ = false;
  uint64_t recordLength_ = 0;  // characters of the sequence read so far
  std::string name_;
  std::string normalized_;
  char firstAmbiguous_ = 0;
  LetterCounts ambiguous_{};
};

}  // namespace kit

#endif  // PALVOR_KIT_SEQUENCES_SEQUENCE_READER_H_
