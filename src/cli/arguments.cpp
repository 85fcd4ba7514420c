#include "cli/arguments.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "cli/report.h"
#include "cli/usage.h"

namespace cli {
namespace {

using palvor::fail;

struct Flag {
  char letter;
  bool Arguments::*set;
  const char* label;  // in the options line
};

struct TextOption {
  char letter;
  const char* Arguments::*text;
  const char* label;
};

struct NumberOption {
  char letter;
  int Arguments::*number;
  const char* format;
};

// Each table stands in the order of the options line.
constexpr Flag kFlags[] = {
    {'c', &Arguments::check, "check "},
    {'v', &Arguments::verbose, "verbose "},
    {'a', &Arguments::array, "sarray "},
    {'l', &Arguments::lcps, "larray "},
    {'w', &Arguments::czep, "czep (deprecated) "},
    {'X', &Arguments::noPrefixKeys, "noprefix "},
    {'L', &Arguments::noHeap, "noheap (deprecated) "},
    {'H', &Arguments::heap, "hpflag "},
    {'b', &Arguments::bigSuffixes, "bsuffix "},
    {'f', &Arguments::keepOpen, "useFPs "},
    {'C', &Arguments::compact, "compact "},
    {'R', &Arguments::reorder, "reorder "},
    {'U', &Arguments::mapStrings, "usemmap "},
    {'z', &Arguments::zeroOrigin, "iorigin "},
    {'Z', &Arguments::readLcps, "Manzini "},
    {'q', &Arguments::quiet, nullptr},  // with -q there is no line
};

constexpr TextOption kTextOptions[] = {
    {'o', &Arguments::outputFolder, "odir"},
    {'p', &Arguments::outputPrefix, "opfx"},
    {'S', &Arguments::arrayFolder, "sdir"},
    {'s', &Arguments::arrayPrefix, "spfx"},
    {'J', &Arguments::indexes, "Joption"},
};

constexpr NumberOption kNumberOptions[] = {
    {'n', &Arguments::outputBuffer, "maxNodes=%d "},
    {'m', &Arguments::memory, "maxSAMem=%u "},
    {'M', &Arguments::streamBuffer, "sBuffSize=%d "},
    {'i', &Arguments::maxIterations, "maxIter=%d "},
    {'x', &Arguments::prefixLength, "pfxlen=%d "},
    {'N', &Arguments::mostInputs, "nmerge=%d "},
};

// What an option letter leaves waiting for the next argument: at most one.
struct Pending {
  char letter = 0;
  const char* Arguments::*text = nullptr;
  int Arguments::*number = nullptr;
  bool any() const { return text != nullptr || number != nullptr; }
};

// Carries out one option. False if the letter is unknown.
bool takeOption(char letter, const char* program, Arguments& arguments,
                Pending& pending) {
  for (const Flag& flag : kFlags) {
    if (flag.letter != letter) continue;
    arguments.*flag.set = true;
    return true;
  }
  for (const TextOption& option : kTextOptions) {
    if (option.letter != letter) continue;
    pending.text = option.text;
    return true;
  }
  for (const NumberOption& option : kNumberOptions) {
    if (option.letter != letter) continue;
    pending.letter = letter;
    pending.number = option.number;
    return true;
  }
  if (letter != 'h') return false;
  sayUsage(program);
  return true;
}

// Whether a decimal number is all of the text.
bool endsThere(const char* text, const char* end) {
  return end != text && *end == '\0';
}

std::string orDefault(const char* given, const char* otherwise) {
  return given != nullptr ? given : otherwise;
}

}  // namespace

Arguments scanArguments(int argc, char** argv) {
  Arguments arguments;
  Pending pending;
  for (int i = 1; i < argc; i++) {
    const char* argument = argv[i];
    if (argument[0] == '-') {
      if (pending.any()) {
        fail("Error: option value pending when reached '%s'", argument);
      }
      if (!takeOption(argument[1], argv[0], arguments, pending)) {
        fail("Error: unrecognized option '%s'", argument);
      }
    } else if (pending.number != nullptr) {
      const Number number = numberOf(argument);
      arguments.*pending.number = number.value;
      if (number.odd) {
        arguments.oddNumbers.push_back(
            {pending.letter, argument, number.value});
      }
      pending.number = nullptr;
    } else if (pending.text != nullptr) {
      arguments.*pending.text = argument;
      pending.text = nullptr;
    } else if (arguments.inputFolder == nullptr) {
      arguments.inputFolder = argument;
    } else if (arguments.inputPrefix == nullptr) {
      arguments.inputPrefix = argument;
    } else {
      fail("main parameters already defined, at option '%s'", argument);
    }
  }
  if (pending.any()) {
    fail("Error: option value pending when reached end of args");
  }
  if (arguments.inputFolder == nullptr) {
    fail("Error: the input folder is missing (first main parameter)");
  }
  if (arguments.inputPrefix == nullptr) {
    fail("Error: the input file prefix is missing (second main parameter)");
  }
  return arguments;
}

void sayOptions(const Arguments& arguments) {
  bool none = true;
  say("merge options: ");
  for (const Flag& flag : kFlags) {
    if (!(arguments.*flag.set) || flag.label == nullptr) continue;
    std::fputs(flag.label, stderr);
    none = false;
  }
  for (const TextOption& option : kTextOptions) {
    if (arguments.*option.text == nullptr) continue;
    std::fprintf(stderr, "%s=%s ", option.label, arguments.*option.text);
    none = false;
  }
  for (const NumberOption& option : kNumberOptions) {
    if (arguments.*option.number == 0) continue;
    std::fprintf(stderr, option.format, arguments.*option.number);
    none = false;
  }
  std::fputs(none ? "none\n" : "\n", stderr);
  for (const OddNumber& odd : arguments.oddNumbers) {
    say("WARNING: %s\n", odd.told().c_str());
  }
  if (arguments.indexes != nullptr) say("WARNING: J option unimplemented!\n");
}

palvor::MergeOptions mergeOptionsOf(const Arguments& arguments) {
  palvor::MergeOptions options;
  options.input = {arguments.inputFolder, arguments.inputPrefix};
  options.arrays = {orDefault(arguments.arrayFolder, arguments.inputFolder),
                    orDefault(arguments.arrayPrefix, arguments.inputPrefix)};
  options.output = {orDefault(arguments.outputFolder, arguments.inputFolder),
                    orDefault(arguments.outputPrefix, arguments.inputPrefix)};
  options.array = arguments.array;
  options.lcps = arguments.lcps;
  options.reorderTrees = arguments.reorder;
  options.measureCompaction = arguments.compact;
  if (arguments.memory != 0) options.memory = arguments.memory;
  options.streamBuffer = arguments.streamBuffer;
  options.outputBuffer = arguments.outputBuffer;
  options.mostInputs = arguments.mostInputs;
  options.keepFilesOpen = arguments.keepOpen;
  options.mapStrings = arguments.mapStrings;
  options.zeroOrigin = arguments.zeroOrigin;
  options.readLcps = arguments.readLcps;
  options.usePrefixKeys = !arguments.noPrefixKeys;
  options.heap = arguments.heap;
  return options;
}

std::string OddNumber::told() const {
  return std::string("-") + letter + " " + text + " is read as " +
         std::to_string(number);
}

Number numberOf(const char* text) {
  char* end = nullptr;
  if (text[0] == '2' && text[1] == '^') {
    const long shift = std::strtol(text + 2, &end, 10);
    const int value =
        static_cast<int>(1U << (static_cast<unsigned long>(shift) & 31));
    return {value, shift < 0 || shift > 30 || !endsThere(text + 2, end)};
  }
  const double value = std::strtod(text, &end);
  if (std::isnan(value)) return {0, true};
  // A fraction is cut off, which nobody needs to be told.
  if (value >= INT_MAX + 1.0) return {INT_MAX, true};
  if (value <= INT_MIN - 1.0) return {INT_MIN, true};
  return {static_cast<int>(value), !endsThere(text, end)};
}

}  // namespace cli
