// What the program says about its work.

#ifndef PALVOR_KIT_MESSAGE_H_
#define PALVOR_KIT_MESSAGE_H_

#include <string_view>

namespace kit {

// Writes "palvor-kit: ", the text and a newline to standard error. Whether that
// could be written changes nothing.
void say(std::string_view text);

}  // namespace kit

#endif  // PALVOR_KIT_MESSAGE_H_
