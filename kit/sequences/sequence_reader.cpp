#include "kit/sequences/sequence_reader.h"

#include <fmt/format.h>

#include <array>
#include <cstring>
#include <stdexcept>

#include "kit/sequences/source_file.h"

namespace kit {
namespace {

constexpr size_t kBufferBytes = size_t{256} * 1024;
constexpr size_t kLongestName =
    size_t{64} * 1024;  // bytes; beyond, it is no FASTA

constexpr char kInvalid = 0, kSkipped = 1;

constexpr std::array<char, 256> makeSpellings() {
  std::array<char, 256> spellings{};
  auto set = [&](std::string_view characters, char spelling) {
    for (char c : characters) {
      spellings[static_cast<unsigned char>(c)] = spelling;
    }
  };
  set("Aa", 'A');
  set("Cc", 'C');
  set("Gg", 'G');
  set("TtUu", 'T');
  set("NRYSWKMBDHVXnryswkmbdhvx-.*", 'N');
  set(" \t\r\n\v\f", kSkipped);
  return spellings;
}

constexpr std::array<char, 256> kSpellings = makeSpellings();

// Text of which more than one letter in so many is no nucleotide code is no
// DNA.
constexpr size_t kForeignShare = 20;

char capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Copies eight characters as capitals if all are A, C, G or T in either case.
bool copyEight(const char* from, char* to) {
  constexpr uint64_t kOnes = 0x0101010101010101u;
  uint64_t bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  bytes |= 0x20 * kOnes;
  // Bits 2 and 1 tell a, c, g and t apart. Those letters are 0x61 with these
  // bits, but for t, which is 0x74 where that gives 0x65.
  const uint64_t isT = bytes >> 2 & ~(bytes >> 1) & kOnes;
  const uint64_t letters = (0x61 * kOnes | (bytes & 0x06 * kOnes)) ^ isT * 0x11;
  if (bytes != letters) return false;
  bytes &= ~(0x20 * kOnes);
  std::memcpy(to, &bytes, sizeof bytes);
  return true;
}

bool isSpace(char c) {
  return kSpellings[static_cast<unsigned char>(c)] == kSkipped;
}

std::string describeByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool printable = byte > ' ' && byte < 0x7f;
  return printable ? fmt::format("'{}'", c)
                   : fmt::format("byte 0x{:02x}", byte);
}

}  // namespace

SequenceReader::SequenceReader(const std::string& path)
    : path_(path), source_(openByteSource(path)), buffer_(kBufferBytes) {}

std::string SequenceReader::located(const std::string& reason) const {
  return fmt::format("{}:{}: {}", sourceName(path_), line_, reason);
}

void SequenceReader::fail(const std::string& reason) const {
  throw std::runtime_error(located(reason));
}

bool SequenceReader::fill() {
  if (begin_ < end_) return true;
  begin_ = 0;
  end_ = source_->read(buffer_.data(), buffer_.size());
  return end_ > 0;
}

// The next byte, without taking it; -1 at the end of the file.
int SequenceReader::peek() {
  return fill() ? static_cast<unsigned char>(buffer_[begin_]) : -1;
}

// Takes the rest of the line, or as much of it as is in the buffer; midLine_
// tells which. The line's '\n' is taken but not part of the piece. False at
// the end of the file.
bool SequenceReader::nextPiece(std::string_view* piece) {
  if (!fill()) {
    midLine_ = false;
    return false;
  }
  if (!midLine_) line_++;
  const char* first = buffer_.data() + begin_;
  const size_t available = end_ - begin_;
  const void* newline = std::memchr(first, '\n', available);
  midLine_ = newline == nullptr;
  const size_t length =
      midLine_ ? available
               : static_cast<size_t>(static_cast<const char*>(newline) - first);
  *piece = std::string_view(first, length);
  begin_ += midLine_ ? length : length + 1;
  return true;
}

void SequenceReader::skipBlankLines() {
  for (int next = peek(); next >= 0 && isSpace(static_cast<char>(next));
       next = peek()) {
    std::string_view piece;
    do {
      if (!nextPiece(&piece)) return;
      for (char c : piece) {
        if (!isSpace(c)) fail("a record may not begin with white space");
      }
    } while (midLine_);
  }
}

bool SequenceReader::nextRecord() {
  while (inSequence_) readSequence();
  skipBlankLines();
  const int first = peek();
  if (first < 0) return false;
  const Format format = first == '>'   ? Format::kFasta
                        : first == '@' ? Format::kFastq
                                       : Format::kUnknown;
  if (format_ == Format::kUnknown) format_ = format;
  if (format == Format::kUnknown || format != format_) {
    line_++;
    const std::string found = describeByte(static_cast<char>(first));
    if (format_ == Format::kUnknown) {
      fail(fmt::format(
          "neither FASTA nor FASTQ: begins with {} instead of '>' or '@'",
          found));
    }
    fail(fmt::format("expected a record that begins with '{}', found {}",
                     format_ == Format::kFasta ? '>' : '@', found));
  }
  readHeader();
  inSequence_ = true;
  recordLength_ = 0;
  return true;
}

void SequenceReader::readHeader() {
  name_.clear();
  bool nameEnded = false, first = true, sawReturn = false;
  std::string_view piece;
  do {
    if (!nextPiece(&piece)) break;
    if (first) piece.remove_prefix(1);
    first = false;
    for (char c : piece) {
      // Only the last byte of a line can be the '\r' of a Windows line end.
      if (sawReturn) fail("a carriage return within a line");
      sawReturn = c == '\r';
      if (isSpace(c)) nameEnded = !name_.empty();
      if (!nameEnded && !isSpace(c)) name_ += c;
    }
    if (name_.size() > kLongestName) fail("a record name of over 64 KiB");
  } while (midLine_);
}

std::string_view SequenceReader::readSequence() {
  while (inSequence_) {
    if (!midLine_) {
      const int next = peek();
      if (format_ == Format::kFasta && (next < 0 || next == '>')) {
        inSequence_ = false;
        break;
      }
      if (format_ == Format::kFastq && (next < 0 || next == '+')) {
        inSequence_ = false;
        finishFastqRecord();
        break;
      }
    }
    std::string_view piece;
    if (!nextPiece(&piece)) continue;
    const std::string_view sequence = normalize(piece);
    if (sequence.empty()) continue;
    recordLength_ += sequence.size();
    return sequence;
  }
  return {};
}

std::string_view SequenceReader::normalize(std::string_view piece) {
  if (normalized_.size() < piece.size()) normalized_.resize(piece.size());
  char* out = normalized_.data();
  firstAmbiguous_ = 0;
  const char* in = piece.data();
  const char* const end = in + piece.size();
  while (in < end) {
    while (end - in >= 8 && copyEight(in, out)) {
      in += 8;
      out += 8;
    }
    for (const char* const some = end - in < 8 ? end : in + 8; in < some;
         in++) {
      const char spelling = kSpellings[static_cast<unsigned char>(*in)];
      if (spelling == kInvalid) refuse(piece, *in);
      if (spelling == 'N') {
        if (firstAmbiguous_ == 0) firstAmbiguous_ = *in;
        ambiguous_[static_cast<size_t>(capital(*in))]++;
      }
      *out = spelling;
      out += spelling != kSkipped;
    }
  }
  return {normalized_.data(), static_cast<size_t>(out - normalized_.data())};
}

// Says what a character is that no sequence may hold, and whether the text
// around it, as far as it is in the buffer, looks like protein.
void SequenceReader::refuse(std::string_view piece, char found) const {
  std::string reason = fmt::format("{} in the sequence of record '{}'",
                                   describeByte(found), name_);
  const std::string_view more(buffer_.data() + begin_, end_ - begin_);
  size_t letters = 0, foreign = 0;
  const auto judge = [&](std::string_view text) {
    for (const char c : text) {
      if (c == '>') break;  // the next record
      if (capital(c) < 'A' || capital(c) > 'Z') continue;
      letters++;
      foreign += kSpellings[static_cast<unsigned char>(c)] == kInvalid;
    }
  };
  judge(piece);
  judge(more);
  if (foreign * kForeignShare > letters) {
    reason += fmt::format(
        "; of {} letters {} stand for no nucleotide: this is probably protein, "
        "not DNA",
        letters, foreign);
  }
  fail(reason);
}

// Takes the '+' line and as many quality characters as the sequence has. The
// lines are counted, not recognized: '@' and '+' are quality characters too.
void SequenceReader::finishFastqRecord() {
  std::string_view piece;
  if (peek() < 0)
    fail(fmt::format("FASTQ record '{}' ends without '+'", name_));
  do {
    if (!nextPiece(&piece)) break;
  } while (midLine_);

  uint64_t qualities = 0;
  while (qualities < recordLength_ || midLine_) {
    if (!nextPiece(&piece)) break;
    for (char c : piece) {
      if (isSpace(c)) continue;
      if (c < '!' || c > '~') {
        fail(fmt::format("{} in the quality of record '{}'", describeByte(c),
                         name_));
      }
      qualities++;
    }
  }
  if (qualities != recordLength_) {
    fail(fmt::format("FASTQ record '{}' has {} characters and {} qualities",
                     name_, recordLength_, qualities));
  }
}

}  // namespace kit
