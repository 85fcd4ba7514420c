// Amounts as somebody would tell them.

#ifndef PALVOR_KIT_AMOUNTS_H_
#define PALVOR_KIT_AMOUNTS_H_

#include <cstdint>
#include <string>

namespace kit {

// "22 million", "1.3 million", "512 thousand", "37"
std::string roundNumber(uint64_t number);

// "360 MB", "1.3 GB", "2 KB"; rounded up.
std::string roundBytes(uint64_t bytes);

}  // namespace kit

#endif  // PALVOR_KIT_AMOUNTS_H_
