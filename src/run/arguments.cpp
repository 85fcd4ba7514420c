#include "run/arguments.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "run/options.h"
#include "run/usage.h"
#include "support/report.h"

namespace {

struct Flag {
  char letter;
  int* variable;
  const char* label;  // in the options line
};

struct TextOption {
  char letter;
  char* PathArguments::*path;  // null: the text goes to `Joption`
  const char* label;
};

struct NumberOption {
  char letter;
  int* variable;
  const char* format;
};

// Each table stands in the order of the options line.
constexpr Flag kFlags[] = {
    {'c', &check, "check "},
    {'v', &verbose, "verbose "},
    {'a', &sarray, "sarray "},
    {'l', &larray, "larray "},
    {'w', &czep, "czep (deprecated) "},
    {'X', &noprefix, "noprefix "},
    {'L', &noheap, "noheap (deprecated) "},
    {'H', &hpflag, "hpflag "},
    {'b', &bsuffix, "bsuffix "},
    {'f', &useFPs, "useFPs "},
    {'C', &compact, "compact "},
    {'R', &reorder, "reorder "},
    {'U', &usemmap, "usemmap "},
    {'z', &iorigin, "iorigin "},
    {'Z', &Manzini, "Manzini "},
    {'q', &quiet, nullptr},  // has no item: with -q there is no line
};

constexpr TextOption kTextOptions[] = {
    {'o', &PathArguments::odir, "odir"}, {'p', &PathArguments::opfx, "opfx"},
    {'S', &PathArguments::sdir, "sdir"}, {'s', &PathArguments::spfx, "spfx"},
    {'J', nullptr, "Joption"},
};

constexpr NumberOption kNumberOptions[] = {
    {'n', &maxNodes, "maxNodes=%d "},   {'m', &maxSAMem, "maxSAMem=%u "},
    {'M', &sBuffSize, "sBuffSize=%d "}, {'i', &maxIter, "maxIter=%d "},
    {'x', &pfxlen, "pfxlen=%d "},       {'N', &nmerge, "nmerge=%d "},
};

char*& textOf(const TextOption& option, PathArguments& paths) {
  return option.path != nullptr ? paths.*option.path : Joption;
}

// What an option letter leaves waiting for the next argument: at most one.
struct Pending {
  char** text = nullptr;
  int* number = nullptr;
  bool any() const { return text != nullptr || number != nullptr; }
};

// Carries out one option. False if the letter is unknown.
bool takeOption(char letter, char* program, PathArguments& paths,
                Pending& pending) {
  for (const Flag& flag : kFlags) {
    if (flag.letter != letter) continue;
    *flag.variable = 1;
    return true;
  }
  for (const TextOption& option : kTextOptions) {
    if (option.letter != letter) continue;
    pending.text = &textOf(option, paths);
    return true;
  }
  for (const NumberOption& option : kNumberOptions) {
    if (option.letter != letter) continue;
    pending.number = option.variable;
    return true;
  }
  if (letter != 'h') return false;
  pusage(program);
  return true;
}

}  // namespace

PathArguments scanArguments(int argc, char** argv) {
  PathArguments paths;
  Pending pending;
  for (int i = 1; i < argc; i++) {
    char* argument = argv[i];
    if (argument[0] == '-') {
      if (pending.any()) {
        die("Error: option value pending when reached '%s'\n", argument);
      }
      if (!takeOption(argument[1], argv[0], paths, pending)) {
        die("Error: unrecognized option '%s'\n", argument);
      }
    } else if (pending.number != nullptr) {
      *pending.number = getNum(argument);
      pending.number = nullptr;
    } else if (pending.text != nullptr) {
      *pending.text = argument;
      pending.text = nullptr;
    } else if (paths.inputdir == nullptr) {
      paths.inputdir = argument;
    } else if (paths.inputfileprefix == nullptr) {
      paths.inputfileprefix = argument;
    } else {
      die("main parameters already defined, at option '%s'\n", argument);
    }
  }
  if (pending.any()) {
    die("Error: option value pending when reached end of args\n");
  }
  if (paths.inputdir == nullptr) {
    die("Error: the input folder is missing (first main parameter)\n");
  }
  if (paths.inputfileprefix == nullptr) {
    die("Error: the input file prefix is missing (second main parameter)\n");
  }
  return paths;
}

void listOptions(const PathArguments& paths) {
  bool none = true;
  say("merge options: ");
  for (const Flag& flag : kFlags) {
    if (*flag.variable == 0 || flag.label == nullptr) continue;
    std::fputs(flag.label, stderr);
    none = false;
  }
  PathArguments given = paths;
  for (const TextOption& option : kTextOptions) {
    const char* text = textOf(option, given);
    if (text == nullptr) continue;
    std::fprintf(stderr, "%s=%s ", option.label, text);
    none = false;
  }
  for (const NumberOption& option : kNumberOptions) {
    if (*option.variable == 0) continue;
    std::fprintf(stderr, option.format, *option.variable);
    none = false;
  }
  std::fputs(none ? "none\n" : "\n", stderr);
  if (Joption != nullptr) say("WARNING: J option unimplemented!\n");
}

int getNum(const char* s) {
  if (s[0] == '2' && s[1] == '^') {
    const long shift = std::strtol(s + 2, nullptr, 10);
    return static_cast<int>(1U << (static_cast<unsigned long>(shift) & 31));
  }
  const double value = std::strtod(s, nullptr);
  if (std::isnan(value)) return 0;
  if (value >= INT_MAX) return INT_MAX;
  if (value <= INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}
