#include "run/sizes.h"

#include <algorithm>

#include "run/options.h"
#include "run/values.h"
#include "sources/suffix.h"
#include "support/report.h"

namespace {

constexpr int kRecordSize = sizeof(Suffix);

// Buffers are read and written with byte counts that are signed 32-bit.
constexpr int kMostRecords = 134217727;  // of 16 bytes
constexpr int kMostNodes = 178956970;    // of 12 bytes

constexpr int kDefaultMemory = 300000000;  // bytes
constexpr int kDefaultOutput = 1048576;    // records or nodes, at most

// A tree needs its root and one leaf.
int leastOutput() { return sarray != 0 ? 1 : 2; }

void testNotNegative(char letter, int value) {
  if (value < 0) die("option -%c: %d cannot be a size\n", letter, value);
}

}  // namespace

void testSizeOptions() {
  testNotNegative('M', sBuffSize);
  if (sBuffSize == 0) testNotNegative('m', maxSAMem);
  testNotNegative('N', nmerge);
  testNotNegative('n', maxNodes);
  const int most = sarray != 0 ? kMostRecords : kMostNodes;
  if (maxNodes != 0 && (maxNodes < leastOutput() || maxNodes > most)) {
    die("option -n: %d is not from %d to %d\n", maxNodes, leastOutput(), most);
  }
}

void sizeBuffers(int longest) {
  if (maxSAMem == 0) maxSAMem = kDefaultMemory;
  const long long streams = streamCount();
  if (sBuffSize != 0) {
    sufBuffSize = sBuffSize / kRecordSize;
  } else if (streams != 0) {
    sufBuffSize = static_cast<int>(maxSAMem / (kRecordSize * streams));
  }
  sufBuffSize = std::min(sufBuffSize, kMostRecords);
  if (sufBuffSize == 0 && streams != 0 && quiet == 0) {
    say("WARNING: an input buffer holds no record of %d bytes: nothing will be "
        "merged (see -m and -M)\n",
        kRecordSize);
  }
  outBuffSize = maxNodes != 0
                    ? maxNodes
                    : std::clamp(longest, leastOutput(), kDefaultOutput);
}
