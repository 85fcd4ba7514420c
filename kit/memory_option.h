// The option --memory of all commands that keep to a limit.

#ifndef PALVOR_KIT_MEMORY_OPTION_H_
#define PALVOR_KIT_MEMORY_OPTION_H_

#include <cstdint>
#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kit {

// Has an option take a number of bytes with a unit, K and so on being powers of
// 1000 or of 1024. A sign is refused, which the parser would read as 2^64 less.
CLI::Option* takeSize(CLI::Option* option, bool thousands);

// Adds it: a number of bytes, or of kibibytes (K), mebibytes (M), gibibytes (G)
// and so on, such as 500M. `what` describes it. The number must outlive the
// command, and stays as it is if the option is not given.
void addMemoryOption(CLI::App& command, uint64_t& memory,
                     const std::string& what);

// A limit as somebody would have given it: "8G"; others in round numbers.
std::string memoryText(uint64_t bytes);

}  // namespace kit

#endif  // PALVOR_KIT_MEMORY_OPTION_H_
