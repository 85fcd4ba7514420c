#include "palvor/range/array_reader.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "palvor/error.h"

namespace palvor {
namespace {

constexpr int64_t kRecordSize = sizeof(Suffix);

// Records that are sooner read than asked for one by one.
constexpr int64_t kSmall = 1 << 14;

}  // namespace

ArrayReader::ArrayReader(const StreamFiles& files, int k)
    : path_(files.path(k)),
      origin_(files.origin(k)),
      file_(File::openInput(path_)) {
  File::Status status = {};
  if (!file_.isOpen() || !file_.examine(status)) {
    fail(blameSystem(path_), "can't open Suffix file %s", path_.c_str());
  }
  if (!status.regular) {
    fail(Blame{path_, "no regular file"}, "can't open Suffix file %s",
         path_.c_str());
  }
  size_ = status.size / kRecordSize;
  if (size_ > UINT_MAX) {
    fail("Suffix file %s holds more than %u records", path_.c_str(), UINT_MAX);
  }
}

void ArrayReader::hold() {
  if (size_ > kSmall) return;
  std::vector<Suffix> all(static_cast<size_t>(size_));
  read(0, size_, all.data());
  all_ = std::move(all);
  file_.close();
}

void ArrayReader::read(int64_t first, int64_t count, Suffix* to) const {
  if (!all_.empty()) {
    std::copy_n(all_.data() + first, count, to);
    return;
  }
  IoTime time;
  const int64_t bytes = kRecordSize * count;
  const int64_t got = file_.readAt(to, bytes, kRecordSize * first, time);
  if (got < 0) {
    fail("can't read Suffix file %s: %s", path_.c_str(), std::strerror(errno));
  }
  if (got < bytes) fail("Suffix file %s became shorter", path_.c_str());
}

uint64_t ArrayReader::keyAt(int64_t record) const {
  Suffix suffix;
  read(record, 1, &suffix);
  return prefixBits(suffix);
}

int64_t ArrayReader::lowerBound(uint64_t key, int64_t from) const {
  int64_t to = size_;
  while (from < to) {
    const int64_t middle = from + (to - from) / 2;
    if (keyAt(middle) < key) {
      from = middle + 1;
    } else {
      to = middle;
    }
  }
  return from;
}

Suffix ArrayReader::tested(Suffix suffix, int64_t record,
                           const Collection& text) const {
  const auto place = static_cast<long long>(record);
  const uint64_t input = static_cast<uint64_t>(suffix.input) + origin_;
  if (input >> 2 >= text.inputs()) {
    fail(
        "record %lld of Suffix file %s: there is no input %llu, only %d inputs",
        place, path_.c_str(), static_cast<unsigned long long>(input >> 2),
        static_cast<int>(text.inputs()));
  }
  suffix.input = static_cast<uint32_t>(input);
  const PackedString& string = text[inputNumber(suffix)];
  if (suffix.pos >= string.bits / 2) {
    fail(
        "record %lld of Suffix file %s: position %u is not inside input %u of "
        "%u characters",
        place, path_.c_str(), suffix.pos, inputNumber(suffix), string.bits / 2);
  }
  return suffix;
}

Suffix ArrayReader::suffixAt(int64_t record, const Collection& text) const {
  Suffix suffix;
  read(record, 1, &suffix);
  return tested(suffix, record, text);
}

}  // namespace palvor
