// What there is to be completed: the program's commands, their options, and
// what these take.

#ifndef PALVOR_KIT_COMPLETION_COMMAND_ENTRIES_H_
#define PALVOR_KIT_COMPLETION_COMMAND_ENTRIES_H_

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kit {

// What completes a value.
enum class ValueKind { kNothing, kWords, kFile, kFolder };

struct Value {
  ValueKind kind = ValueKind::kNothing;
  std::string type;                // "DIR"
  std::vector<std::string> words;  // if it is one of these
};

struct OptionEntry {
  std::vector<std::string> names;  // with their hyphens
  std::string description;
  bool takesValue = false;
  Value value;
};

struct CommandEntry {
  std::string name;
  std::string description;  // its first sentence
  std::vector<OptionEntry> options;
  Value argument;  // what stands for itself; the last kind, if there are some
};

// The commands of the program, in their order. Those of "help" are its words.
std::vector<CommandEntry> entriesOf(const CLI::App& app);

}  // namespace kit

#endif  // PALVOR_KIT_COMPLETION_COMMAND_ENTRIES_H_
