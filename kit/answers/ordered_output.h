// Standard output by several threads, each of which has a part of its own: one
// part after the other, as soon as those before it have ended.

#ifndef PALVOR_KIT_ANSWERS_ORDERED_OUTPUT_H_
#define PALVOR_KIT_ANSWERS_ORDERED_OUTPUT_H_

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace kit {

class OrderedOutput {
 public:
  // Adds to a part. Both throw std::runtime_error if nothing can be written.
  void write(size_t part, std::string_view text);

  // To be called once for each part.
  void end(size_t part);

 private:
  struct Part {
    std::string text;
    bool ended = false;
  };

  std::mutex mutex_;  // guards all below
  size_t next_ = 0;   // part to be written
  std::map<size_t, Part> waiting_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_ORDERED_OUTPUT_H_
