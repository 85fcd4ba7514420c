// Fields of tables whose lines end with a newline and whose fields are parted
// by tabs.

#ifndef PALVOR_KIT_TABLE_FIELDS_H_
#define PALVOR_KIT_TABLE_FIELDS_H_

#include <string>

namespace kit {

// The text with tabs, newlines and backslashes written as \t, \n and double
// backslashes.
inline std::string escapedField(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\t':
        result += "\\t";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\\':
        result += "\\\\";
        break;
      default:
        result += c;
    }
  }
  return result;
}

}  // namespace kit

#endif  // PALVOR_KIT_TABLE_FIELDS_H_
