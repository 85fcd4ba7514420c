// Standard output, where results go.

#ifndef PALVOR_KIT_STANDARD_OUTPUT_H_
#define PALVOR_KIT_STANDARD_OUTPUT_H_

#include <string_view>

namespace kit {

// Writes text; buffered. Both throw std::runtime_error with the system's reason
// if something could not be written.
void writeOutput(std::string_view text);

// Writes what is buffered. To be called when all is written.
void finishOutput();

}  // namespace kit

#endif  // PALVOR_KIT_STANDARD_OUTPUT_H_
