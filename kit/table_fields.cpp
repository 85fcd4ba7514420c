#include "kit/table_fields.h"

namespace kit {

void appendEscaped(std::string& line, std::string_view text) {
  if (text.find_first_of("\t\n\\") == std::string_view::npos) {
    line += text;
    return;
  }
  for (const char c : text) {
    if (c == '\t') {
      line += "\\t";
    } else if (c == '\n') {
      line += "\\n";
    } else if (c == '\\') {
      line += "\\\\";
    } else {
      line += c;
    }
  }
}

std::string escaped(std::string_view text) {
  std::string result;
  appendEscaped(result, text);
  return result;
}

std::optional<std::string> unescaped(std::string_view field) {
  std::string text;
  bool escape = false;
  for (const char c : field) {
    if (!escape && c == '\\') {
      escape = true;
      continue;
    }
    text += !escape ? c : c == 't' ? '\t' : c == 'n' ? '\n' : c;
    escape = false;
  }
  if (escape) return std::nullopt;
  return text;
}

}  // namespace kit
