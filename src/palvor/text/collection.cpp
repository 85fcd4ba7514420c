#include "palvor/text/collection.h"

#include <sys/mman.h>

#include <climits>
#include <string>

#include "palvor/error.h"
#include "palvor/format/packing.h"

namespace palvor {
namespace {

[[noreturn]] void refuseSize(const std::string& path, int input, int64_t got,
                             int64_t words) {
  fail(got < 0 ? blameSystem(path)
               : Blame{path, "shorter than its binary length says"},
       "binary string %d reading error: read %d bytes, wanted %d words", input,
       static_cast<int>(got), static_cast<int>(words));
}

}  // namespace

Collection::Collection(const DataPaths& paths,
                       const std::vector<uint32_t>& bits, bool map,
                       MemoryCount& memory, IoTime& time) {
  strings_.reserve(bits.size());
  memory.add(
      Block<const uint32_t*>::bytesOf(static_cast<int64_t>(bits.size())));
  for (size_t i = 0; i < bits.size(); i++) {
    const int input = static_cast<int>(i);
    if (bits[i] > INT_MAX) {
      fail("binary length of input %d is %u bits, at most %d are possible",
           input, bits[i], INT_MAX);
    }
    const int64_t words = storedWords(bits[i]);
    const std::string path = paths.stringFile(input);
    File file = File::openInput(path);
    if (!file.isOpen()) {
      fail(blameSystem(path), "can't open input string binary file %s",
           path.c_str());
    }
    strings_.push_back(
        {map ? mapString(file, path, input, words)
             : readString(file, path, input, words, memory, time),
         bits[i]});
  }
}

Collection::~Collection() {
  for (const Mapping& mapping : mappings_) {
    munmap(mapping.address, mapping.bytes);
  }
}

const uint32_t* Collection::readString(const File& file,
                                       const std::string& path, int input,
                                       int64_t words, MemoryCount& memory,
                                       IoTime& time) {
  memory.add(4 * words);
  Block<uint32_t> string(words, path.c_str());
  const int64_t got = file.readAt(string.data(), 4 * words, 0, time);
  if (got < 4 * words) refuseSize(path, input, got, words);
  if (string[words - 1] != 0) {
    fail(Blame{path, "its last word is not zero"}, "bad binary file %d", input);
  }
  blocks_.push_back(std::move(string));
  return blocks_.back().data();
}

// Touching a mapping past the end of its file would end the process by a
// signal, so the size is looked at first.
const uint32_t* Collection::mapString(const File& file, const std::string& path,
                                      int input, int64_t words) {
  File::Status status = {};
  const bool examined = file.examine(status);
  if (!examined || status.size < 4 * words) {
    refuseSize(path, input, examined ? status.size : -1, words);
  }
  const auto bytes = static_cast<uint64_t>(4 * words);
  void* mapping =
      mmap(nullptr, bytes, PROT_READ, MAP_SHARED, file.descriptor(), 0);
  if (mapping == MAP_FAILED) fail(blameSystem(path), "problem with mmap");
  mappings_.push_back({mapping, bytes});
  // The merge comes by every page, in no order: one read-ahead of the whole
  // serves it, and reading around a page fault later does not. Only advice.
  madvise(mapping, bytes, MADV_WILLNEED);
  madvise(mapping, bytes, MADV_RANDOM);
  return static_cast<const uint32_t*>(mapping);
}

}  // namespace palvor
