// What stretches cost and what they settle, on a data folder: builds them, and
// compares neighbours in merged order by anchors, by following stretches and
// with the strings, each against the merged LCP file.
//
// usage: stretches_bench DIR PREFIX MERGED [EVERY]
// DIR ends with a slash, as for palvor. MERGED is the path, without .stpsa, of
// what `palvor DIR PREFIX -a -l` wrote. Every EVERYth record is looked at, or
// every eighth.

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "palvor/text/likeness.h"
#include "palvor/text/second_key.h"
#include "palvor/text/stretch_builder.h"
#include "palvor/text/stretch_comparison.h"

namespace {

using palvor::PackedString;
using palvor::Stretches;
using palvor::SuffixPlace;

struct Record {
  uint32_t input;
  uint32_t position;
  uint32_t prefix0;
  uint32_t prefix1;
};

template <typename Element>
std::span<const Element> mapFile(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY);
  struct stat status {};
  if (fd < 0 || fstat(fd, &status) != 0) {
    std::fprintf(stderr, "stretches_bench: can't read %s\n", path.c_str());
    std::exit(1);
  }
  const auto bytes = static_cast<size_t>(status.st_size);
  void* mapping = bytes == 0 ? nullptr
                             : mmap(nullptr, bytes, PROT_READ,
                                    MAP_PRIVATE | MAP_POPULATE, fd, 0);
  close(fd);
  return {static_cast<const Element*>(mapping), bytes / sizeof(Element)};
}

double userSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) +
         1e-9 * static_cast<double>(now.tv_nsec);
}

class Timer {
 public:
  double nanoseconds(size_t steps) const {
    return (userSeconds() - start_) * 1e9 /
           static_cast<double>(steps == 0 ? 1 : steps);
  }

 private:
  double start_ = userSeconds();
};

SuffixPlace placeOf(const Record& record) {
  return {record.input >> 2, record.position};
}

bool sameWords(const Record& a, const Record& b) {
  return a.prefix0 == b.prefix0 && a.prefix1 == b.prefix1;
}

struct Pair {
  SuffixPlace a;
  SuffixPlace b;
  uint32_t bits;
};

double percent(size_t part, size_t whole) {
  return 100.0 * static_cast<double>(part) /
         static_cast<double>(whole == 0 ? 1 : whole);
}

// Looks all records' anchors up, in order, some at a time.
void lookUp(const Stretches& stretches, std::span<const Record> records) {
  constexpr size_t kAtOnce = 64;
  std::vector<uint32_t> axis(kAtOnce);
  std::vector<uint32_t> numbers(kAtOnce);
  const Timer timer;
  uint64_t sum = 0;
  for (size_t from = 0; from < records.size(); from += kAtOnce) {
    const size_t count = std::min(kAtOnce, records.size() - from);
    for (size_t i = 0; i < count; i++) {
      const SuffixPlace place = placeOf(records[from + i]);
      axis[i] = stretches.holds(place.input)
                    ? stretches.axisPosition(place.input, place.position)
                    : palvor::Axis::kNowhere;
      stretches.prefetchBlock(axis[i]);
    }
    for (size_t i = 0; i < count; i++) {
      numbers[i] = stretches.prefetchStretch(axis[i]);
    }
    for (size_t i = 0; i < count; i++) {
      const palvor::Anchor anchor = stretches.anchorFrom(numbers[i], axis[i]);
      sum += anchor.position ^ anchor.key;
    }
  }
  std::printf("anchors          %.1f ns a suffix (sum %llx)\n",
              timer.nanoseconds(records.size()),
              static_cast<unsigned long long>(sum));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: stretches_bench DIR PREFIX MERGED [EVERY]\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + argv[2] + ".ST/" + argv[2];
  const std::string merged = argv[3];
  const size_t every = argc > 4 ? std::strtoul(argv[4], nullptr, 10) : 8;
  const auto lengths = mapFile<uint32_t>(folder + ".stblengths");
  std::vector<PackedString> strings;
  uint64_t characters = 0;
  for (size_t i = 0; i < lengths.size(); i++) {
    const auto words =
        mapFile<uint32_t>(folder + "_" + std::to_string(i) + ".stbin");
    strings.push_back({words.data(), lengths[i]});
    characters += lengths[i] / 2;
  }

  {
    const Timer likenessTimer;
    const std::vector<bool> like = palvor::stringsWithLikes(strings);
    size_t count = 0;
    for (const bool is : like) count += is ? 1 : 0;
    std::printf("%s: %zu strings, %.1f million characters, %zu take part\n",
                argv[2], strings.size(), 1e-6 * static_cast<double>(characters),
                count);
    std::printf("likeness         %.2f ns a character\n",
                likenessTimer.nanoseconds(characters));
  }
  const Timer timer;
  const Stretches stretches = palvor::buildStretches(strings);
  std::printf("build            %.2f ns a character\n",
              timer.nanoseconds(characters));
  std::printf(
      "memory           %.3f bytes a character, %zu stretches, %.0f "
      "characters each\n",
      static_cast<double>(stretches.memory()) / static_cast<double>(characters),
      stretches.size(),
      static_cast<double>(characters) /
          static_cast<double>(stretches.size() + 1));

  const auto records = mapFile<Record>(merged + ".stpsa");
  const auto entries = mapFile<uint32_t>(merged + ".stlcp");
  for (int i = 0; i < 3 && !stretches.empty(); i++) lookUp(stretches, records);

  std::vector<Pair> pairs;
  for (size_t i = 1; i < records.size(); i += every) {
    if (!sameWords(records[i - 1], records[i])) continue;
    const Pair pair = {placeOf(records[i - 1]), placeOf(records[i]),
                       entries[i] >> 1};
    if (pair.bits > 64) pairs.push_back(pair);
  }
  std::printf("%zu neighbours share 32 characters and more (%.0f%%)\n",
              pairs.size(), percent(pairs.size() * every, records.size()));

  size_t wrong = 0;
  size_t byKeys = 0;
  size_t ranks = 0;
  size_t byFollowing = 0;
  double following = 0;
  std::vector<std::pair<uint64_t, uint64_t>> keys;
  std::vector<Pair> left;
  std::vector<Pair> followed;
  for (const Pair& pair : pairs) {
    if (!stretches.empty() && stretches.holds(pair.a.input) &&
        stretches.holds(pair.b.input)) {
      const palvor::Anchor a = stretches.anchorAt(
          stretches.axisPosition(pair.a.input, pair.a.position + 32));
      const palvor::Anchor b = stretches.anchorAt(
          stretches.axisPosition(pair.b.input, pair.b.position + 32));
      if (a.position == b.position &&
          (a.key != b.key || stretches.equalIfAlike(a.key))) {
        const bool equal = a.key == b.key;
        const bool byRanks = !equal && !palvor::partBeforeRanks(a.key, b.key);
        const uint32_t bits =
            equal ? lengths[pair.a.input] - 2 * pair.a.position - 64
                  : stretches.commonBits(a.key, b.key);
        byKeys++;
        if (!equal) keys.push_back({a.key, b.key});
        ranks += byRanks ? 1 : 0;
        if (a.key > b.key || 64 + bits != pair.bits) wrong++;
        continue;
      }
    }
    const palvor::StretchParting found =
        palvor::followStretches(stretches, strings, pair.a, pair.b, 32);
    if (found.known) {
      byFollowing++;
      followed.push_back(pair);
      if (found.order > 0 || found.bits != pair.bits) wrong++;
    } else {
      left.push_back(pair);
      following += pair.bits / 2 - found.bits / 2;
    }
  }
  std::printf(
      "settled          %.1f%% by anchors (%.1f%% by ranks), %.1f%% by "
      "following, %.1f%% not (%.0f characters left)\n",
      percent(byKeys, pairs.size()), percent(ranks, pairs.size()),
      percent(byFollowing, pairs.size()), percent(left.size(), pairs.size()),
      following / static_cast<double>(left.size() + 1));

  {
    const Timer keysTimer;
    uint64_t sum = 0;
    for (const auto& [a, b] : keys) {
      sum += stretches.commonBits(a, b) + (a < b ? 1 : 0);
    }
    std::printf("by keys          %.1f ns a comparison (sum %llu)\n",
                keysTimer.nanoseconds(keys.size()),
                static_cast<unsigned long long>(sum));
  }
  const auto compareAll = [&](const char* name,
                              const std::vector<Pair>& compared) {
    const Timer compareTimer;
    double shared = 0;
    for (const Pair& pair : compared) {
      const palvor::StretchParting found =
          palvor::compareByStretches(stretches, strings, pair.a, pair.b, 32);
      if (found.order > 0 || found.bits != pair.bits) wrong++;
      shared += found.bits / 2;
    }
    if (compared.empty()) return;
    std::printf("%s %.1f ns a comparison (%.0f characters)\n", name,
                compareTimer.nanoseconds(compared.size()),
                shared / static_cast<double>(compared.size() + 1));
  };
  compareAll("followed        ", followed);
  compareAll("left            ", left);
  compareAll("all             ", pairs);
  {
    const Timer plainTimer;
    for (const Pair& pair : pairs) {
      const uint32_t common = palvor::commonCharacters(
          strings[pair.a.input], pair.a.position + 32, strings[pair.b.input],
          pair.b.position + 32, UINT32_MAX);
      if (common + 32 != pair.bits / 2) wrong++;
    }
    std::printf("all by strings   %.1f ns a comparison\n",
                plainTimer.nanoseconds(pairs.size()));
  }
  std::printf("wrong            %zu\n", wrong);
  return wrong == 0 ? 0 : 1;
}
