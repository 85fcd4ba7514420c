// The only way in which the library fails: an exception that says what failed,
// and where it is known, which file and why.

#ifndef PALVOR_ERROR_H_
#define PALVOR_ERROR_H_

#include <stdexcept>
#include <string>

namespace palvor {

// What is wrong with a file: its path, and the reason in words. Empty where
// the text of an error says it all.
struct Blame {
  std::string file;
  std::string reason;
};

// Blames a file for the reason of the system call that failed last (errno).
Blame blameSystem(std::string file);

// `what()` is one line of text, without a line end.
class Error : public std::runtime_error {
 public:
  explicit Error(const std::string& text, Blame blame = {})
      : std::runtime_error(text), blame_(std::move(blame)) {}

  const std::string& file() const { return blame_.file; }
  const std::string& reason() const { return blame_.reason; }

 private:
  Blame blame_;
};

// Throws an Error with a text formatted as by printf.
[[noreturn, gnu::format(printf, 1, 2)]] void fail(const char* format, ...);

// The same, with the file that is to blame.
[[noreturn, gnu::format(printf, 2, 3)]] void fail(Blame blame,
                                                  const char* format, ...);

}  // namespace palvor

#endif  // PALVOR_ERROR_H_
