// The fields of tables, whose lines end with a newline and whose fields are
// parted by tabs.

#ifndef PALVOR_KIT_TABLE_FIELDS_H_
#define PALVOR_KIT_TABLE_FIELDS_H_

#include <optional>
#include <string>
#include <string_view>

namespace kit {

// Appends the text as a field: its tabs, newlines and backslashes are written
// \t, \n and double backslashes.
void appendEscaped(std::string& line, std::string_view text);

// The text so written.
std::string escaped(std::string_view text);

// The text that a field was written from; nothing if it ends with a single
// backslash.
std::optional<std::string> unescaped(std::string_view field);

}  // namespace kit

#endif  // PALVOR_KIT_TABLE_FIELDS_H_
