// A text of lines, whose fields are parted by tabs.

#ifndef PALVOR_KIT_TABLE_READER_H_
#define PALVOR_KIT_TABLE_READER_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace kit {

// Goes through a table line by line and field by field. All functions throw
// FileError, which names the table's file and the line.
class TableReader {
 public:
  // Both must outlive the reader; the file is only named.
  TableReader(const std::string& path, std::string_view text)
      : path_(path), rest_(text) {}

  // Goes to the next line, past what was not read of this one. False at the
  // end. A last line that does not end is an error.
  bool nextLine();

  // Whether the line has fields that were not read yet.
  bool more() const { return more_; }

  // The next field, as it stands; there must be one.
  std::string_view field();

  // The next field as a decimal number, or as text, with \t, \n and \\ put
  // back to what they stand for.
  uint64_t number();
  std::string text();

  // Throws an error about this line.
  [[noreturn]] void fail(const std::string& reason) const;

 private:
  const std::string& path_;
  std::string_view rest_;
  std::string_view fields_;  // of the line, those not yet read
  bool more_ = false;        // there are such
  uint64_t line_ = 0;        // from 1
};

}  // namespace kit

#endif  // PALVOR_KIT_TABLE_READER_H_
