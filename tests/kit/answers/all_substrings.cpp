#include "kit/answers/all_substrings.h"

Substrings substringsOf(const MadeCollection& made, bool both) {
  Substrings found;
  for (size_t p = 0; p < made.pieces().size(); p++) {
    const std::string& text = made.pieces()[p].text;
    for (size_t i = 0; i < text.size(); i++) {
      for (size_t n = 1; i + n <= text.size(); n++) {
        const std::string part = text.substr(i, n);
        found[part].insert({p, i, false});
        if (both) found[reverseComplementOf(part)].insert({p, i, true});
      }
    }
  }
  return found;
}
