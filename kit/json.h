// Results as JSON, one object a line.

#ifndef PALVOR_KIT_JSON_H_
#define PALVOR_KIT_JSON_H_

#include <nlohmann/json.hpp>
#include <string>

namespace kit {

// Keeps its members in the order in which they are set.
using Json = nlohmann::ordered_json;

// The object as a line, its end included. File names and the like may hold
// bytes that are no UTF-8, which JSON cannot hold: each is written as U+FFFD.
std::string jsonLine(const Json& object);

}  // namespace kit

#endif  // PALVOR_KIT_JSON_H_
