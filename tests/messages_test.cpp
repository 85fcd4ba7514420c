// Every error that bad input or a failing system can cause, through the real
// program: status 1, and the exact words. "ROOT" stands for the temporary
// folder, both in arguments and in messages.

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

std::string withRoot(std::string text, const std::string& root) {
  for (size_t at; (at = text.find("ROOT")) != std::string::npos;) {
    text.replace(at, 4, root);
  }
  return text;
}

// A file that has a size but cannot be opened, not even by root.
void replaceBySocket(const DataFolder& folder, const std::string& name) {
  folder.remove(name);
  struct sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  strncpy(address.sun_path, folder.path(name).c_str(),
          sizeof address.sun_path - 1);
  const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(
      bind(fd, reinterpret_cast<struct sockaddr*>(&address), sizeof address),
      0);
  close(fd);
}

// Inputs of all A, so long that two of them share 2^30 bits and more. Sparse.
void makeHugeInputs(const DataFolder& folder) {
  constexpr uint32_t kBits = (1U << 30) + 2;
  folder.writeWords("x.stblengths", {kBits, kBits});
  for (const uint32_t i : {0U, 1U}) {
    const std::string name = "x_" + std::to_string(i);
    folder.write(name + ".stbin", "");
    folder.resize(name + ".stbin", 4 * (((kBits - 1) >> 5) + 2));
    folder.writeWords(name + ".stpsa", {i << 2, 0, 0, 0});
  }
}

struct Case {
  std::string name;
  std::vector<std::string> options;  // after: ROOT x -a -q
  std::function<void(const DataFolder&)> damage;
  std::string message;
  bool needsMemoryLimit = false;
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.message; }

using Damage = std::function<void(const DataFolder&)>;

void nothing(const DataFolder&) {}

Damage removed(const char* name) {
  return [=](const DataFolder& folder) { folder.remove(name); };
}

Damage folderAt(const char* name) {
  return [=](const DataFolder& folder) { folder.replaceByFolder(name); };
}

// Reading it would wait for somebody to write.
Damage pipeAt(const char* name) {
  return [=](const DataFolder& folder) {
    folder.remove(name);
    ASSERT_EQ(mkfifo(folder.path(name).c_str(), 0644), 0);
  };
}

Damage fullDeviceAt(const char* name) {
  return [=](const DataFolder& folder) { folder.replaceByFullDevice(name); };
}

Damage cut(const char* name, uint64_t bytes) {
  return [=](const DataFolder& folder) { folder.resize(name, bytes); };
}

Damage words(const char* name, const std::vector<uint32_t>& words) {
  return [=](const DataFolder& folder) { folder.writeWords(name, words); };
}

const std::vector<Case> kCases = {
    // The command line.
    {"PendingAtOption",
     {"-m", "-v"},
     nothing,
     "Error: option value pending when reached '-v'"},
    {"PendingTextAtOption",
     {"-o", "-1"},
     nothing,
     "Error: option value pending when reached '-1'"},
    {"JoinedValue",
     {"-x4", "-v"},
     nothing,
     "Error: option value pending when reached '-v'"},
    {"PendingAtEnd",
     {"-m"},
     nothing,
     "Error: option value pending when reached end of args"},
    {"PendingTextAtEnd",
     {"-J"},
     nothing,
     "Error: option value pending when reached end of args"},
    {"UnknownOption", {"-D"}, nothing, "Error: unrecognized option '-D'"},
    {"UnknownDigit", {"-1"}, nothing, "Error: unrecognized option '-1'"},
    {"LoneDash", {"-"}, nothing, "Error: unrecognized option '-'"},
    {"ThirdValue",
     {"y"},
     nothing,
     "main parameters already defined, at option 'y'"},
    {"NegativeBuffer",
     {"-M", "2^31"},
     nothing,
     "option -M: -2147483648 cannot be a size"},
    {"NegativeMemory",
     {"-m", "2^31"},
     nothing,
     "option -m: -2147483648 cannot be a size"},
    {"NegativeCount",
     {"-N", "2^31"},
     nothing,
     "option -N: -2147483648 cannot be a size"},
    {"NegativeNodes",
     {"-n", "2^31"},
     nothing,
     "option -n: -2147483648 cannot be a size"},
    {"TooManyNodes",
     {"-n", "1e99"},
     nothing,
     "option -n: 2147483647 is not from 1 to 134217727"},
    // Lengths.
    {"NoLengths",
     {},
     removed("x.stlengths"),
     "could not access lengths file ROOTx.ST/x.stlengths"},
    {"ClosedLengths",
     {},
     [](const DataFolder& folder) { replaceBySocket(folder, "x.stlengths"); },
     "could not open lengths file \"ROOTx.ST/x.stlengths\""},
    {"FolderAsLengths",
     {},
     folderAt("x.stlengths"),
     "Reading lengths of partitions - error "},
    {"PipeAsLengths",
     {},
     pipeAt("x.stlengths"),
     "could not open lengths file \"ROOTx.ST/x.stlengths\""},
    {"PipeAsString",
     {},
     pipeAt("x_1.stbin"),
     "can't open input string binary file ROOTx.ST/x_1.stbin"},
    {"PipeAsSuffixFile",
     {},
     pipeAt("x_1.stpsa"),
     "can't open Suffix file ROOTx.ST/x_1.stpsa"},
    {"PipeAsSuffixFileToKeep",
     {"-f"},
     pipeAt("x_1.stpsa"),
     "can't open Suffix file ROOTx.ST/x_1.stpsa"},
    {"HugeLengths",
     {},
     cut("x.stlengths", 1ULL << 33),
     "lengths file ROOTx.ST/x.stlengths: 2147483648 inputs are too many"},
    {"NoBinaryLengths",
     {},
     removed("x.stblengths"),
     "Could not open binary lengths file \"ROOTx.ST/x.stblengths\""},
    {"NoBinaryLengthsWithoutInputs",
     {},
     [](const DataFolder& folder) {
       folder.write("x.stlengths", "");
       folder.remove("x.stblengths");
     },
     "Could not open binary lengths file \"ROOTx.ST/x.stblengths\""},
    {"ShortBinaryLengths",
     {},
     cut("x.stblengths", 7),
     "Reading binary lengths of partitions - error "},
    {"HugePartitions",
     {},
     [](const DataFolder& folder) {
       folder.write("x.stplengths", "");
       folder.resize("x.stplengths", 1ULL << 33);
     },
     "partitions file ROOTx.ST/x.stplengths: 2147483648 partitions are too "
     "many"},
    {"FolderAsPartitions",
     {},
     folderAt("x.stplengths"),
     "could not read partitions file \"ROOTx.ST/x.stplengths\""},
    {"CountWithPartitions",
     {"-N", "1"},
     words("x.stplengths", {2}),
     "option -N caps the inputs, not the partitions that name them: it cannot "
     "be used with the partitions file ROOTx.ST/x.stplengths"},
    // Strings.
    {"NoString",
     {},
     removed("x_1.stbin"),
     "can't open input string binary file ROOTx.ST/x_1.stbin"},
    {"ShortString",
     {},
     cut("x_1.stbin", 7),
     "binary string 1 reading error: read 7 bytes, wanted 2 words"},
    {"ShortMappedString",
     {"-U"},
     cut("x_1.stbin", 7),
     "binary string 1 reading error: read 7 bytes, wanted 2 words"},
    {"NoTrailerForNoCharacters",
     {},
     [](const DataFolder& folder) {
       folder.writeWords("x.stblengths", {0, 8});
       folder.write("x_0.stbin", "");
     },
     "binary string 0 reading error: read 0 bytes, wanted 1 words"},
    {"FolderAsString",
     {},
     folderAt("x_1.stbin"),
     "binary string 1 reading error: read -1 bytes, wanted 2 words"},
    {"BadTrailer", {}, words("x_1.stbin", {0, 1}), "bad binary file 1"},
    {"HugeString",
     {},
     words("x.stblengths", {14, 1U << 31}),
     "binary length of input 1 is 2147483648 bits, at most 2147483647 are "
     "possible"},
    {"NoRoomToMap",
     {"-U"},
     [](const DataFolder& folder) {
       folder.writeWords("x.stblengths", {0x7FFFFFFF, 0x7FFFFFFF});
       folder.resize("x_0.stbin", 1 << 29);
       folder.resize("x_1.stbin", 1 << 29);
     },
     "problem with mmap",
     true},
    // Suffix arrays.
    {"NoSuffixFile",
     {},
     removed("x_1.stpsa"),
     "can't open Suffix file ROOTx.ST/x_1.stpsa"},
    {"NoSuffixFileToKeep",
     {"-f"},
     removed("x_1.stpsa"),
     "can't open Suffix file ROOTx.ST/x_1.stpsa"},
    {"FolderAsSuffixFile",
     {},
     folderAt("x_1.stpsa"),
     "can't read Suffix file ROOTx.ST/x_1.stpsa: Is a directory"},
    {"FolderAsSuffixFileToKeep",
     {"-f"},
     folderAt("x_1.stpsa"),
     "can't read Suffix file ROOTx.ST/x_1.stpsa: Is a directory"},
    {"NoSuchInput",
     {"-M", "16"},
     words("x_1.stpsa", {4, 3, 0, 0, 8, 0, 0, 0}),
     "record 1 of Suffix file ROOTx.ST/x_1.stpsa: there is no input 2, only 2 "
     "inputs"},
    {"NoSuchInputBeyondACap",
     {"-N", "1"},
     words("x_0.stpsa", {4, 3, 0, 0}),
     "record 0 of Suffix file ROOTx.ST/x_0.stpsa: there is no input 1, only 1 "
     "inputs"},
    {"PositionAtTheEnd",
     {"-M", "32"},
     words("x_1.stpsa", {4, 3, 0, 0, 4, 2, 0, 0, 4, 4, 0, 0}),
     "record 2 of Suffix file ROOTx.ST/x_1.stpsa: position 4 is not inside "
     "input 1 of 4 characters"},
    {"PositionThatWouldWrap",
     {"-f"},
     words("x_1.stpsa", {4, 1U << 31, 0, 0}),
     "record 0 of Suffix file ROOTx.ST/x_1.stpsa: position 2147483648 is not "
     "inside input 1 of 4 characters"},
    // LCP files.
    {"NoLcpFile",
     {"-Z"},
     removed("x_1.stlcp"),
     "can't open LCP file ROOTx.ST/x_1.stlcp"},
    {"NoLcpFileForTheHeap",
     {"-Z", "-H"},
     removed("x_1.stlcp"),
     "can't open LCP file ROOTx.ST/x_1.stlcp"},
    {"NoLcpFileOfAnEmptyStream",
     {"-Z"},
     [](const DataFolder& folder) {
       folder.write("x_1.stpsa", "");
       folder.remove("x_1.stlcp");
     },
     "can't open LCP file ROOTx.ST/x_1.stlcp"},
    {"FolderAsLcpFile",
     {"-Z"},
     folderAt("x_1.stlcp"),
     "can't read LCP file ROOTx.ST/x_1.stlcp: Is a directory"},
    {"ShortLcpFile",
     {"-Z"},
     cut("x_1.stlcp", 15),
     "LCP file ROOTx.ST/x_1.stlcp is shorter than its Suffix file: no entry "
     "for record 3"},
    {"LargeLcpEntry",
     {"-Z"},
     words("x_1.stlcp", {0, 0, 1U << 31, 0}),
     "entry 2 of LCP file ROOTx.ST/x_1.stlcp: the common prefix does not fit, "
     "it has 2^30 bits or more"},
    {"LargeCommonPrefix",
     {"-U", "-l"},
     makeHugeInputs,
     "two suffixes share 1073741826 bits: an LCP entry holds less than 2^30"},
    // Outputs.
    {"NoOutputFolder",
     {"-o", "ROOTno/such/"},
     nothing,
     "can't open ST dividers file ROOTno/such/x.ST/x.stdiv for writing"},
    {"FolderAsDividers",
     {},
     folderAt("x.stdiv"),
     "can't open ST dividers file ROOTx.ST/x.stdiv for writing"},
    {"FolderAsArray",
     {},
     folderAt("x.stpsa"),
     "cannot open suffix array file for writing"},
    {"FolderAsLcpArray",
     {"-l"},
     folderAt("x.stlcp"),
     "cannot open LCP array file for writing"},
    {"FullDevice",
     {"-n", "3"},
     fullDeviceAt("x.stpsa"),
     "not all output Suffixes were written"},
    {"FullDeviceForLcps",
     {"-l"},
     fullDeviceAt("x.stlcp"),
     "not all output LCPs were written"},
    // Memory.
    {"NoMemoryForOutput",
     {"-n", "134217727"},
     nothing,
     "couldn't allocate 134217727 Suffixes for suffBuff",
     true},
    {"NoMemoryForLcpOutput",
     {"-n", "2e7", "-l", "-M", "64"},
     nothing,
     "couldn't allocate 20000000 Suffixes for suffBuff",
     true},
    {"NoMemoryForInput",
     {"-M", "2147483647"},
     nothing,
     "could not allocate 2147483632 bytes for a stream's buffer",
     true},
};

class Message : public testing::TestWithParam<Case> {};

TEST_P(Message, EndsTheRunWithStatusOne) {
  const Case& test = GetParam();
  if (test.needsMemoryLimit && addressSpaceIsNeeded()) {
    GTEST_SKIP() << "the sanitizer's own memory cannot be limited";
  }
  const DataFolder folder{Collection{{"GATTACA", "TACA"}}};
  ASSERT_NO_FATAL_FAILURE(test.damage(folder));
  std::vector<std::string> arguments = {folder.root(), "x", "-a", "-q"};
  for (const std::string& option : test.options) {
    arguments.push_back(withRoot(option, folder.root()));
  }
  Setting setting;
  if (test.needsMemoryLimit) setting.memory = 400'000'000;
  const Outcome outcome = runPalvor(arguments, setting);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  const std::vector<std::string> lines = linesOf(outcome.err);
  ASSERT_GE(lines.size(), 3u) << outcome.err;
  EXPECT_EQ(lines.back(), "## ERROR: " + withRoot(test.message, folder.root()));
  // The file, where the message itself leaves it out.
  ASSERT_LE(lines.size(), 4u) << outcome.err;
  if (lines.size() == 4) {
    EXPECT_EQ(lines[2].rfind("# " + folder.root(), 0), 0u) << lines[2];
  }
  EXPECT_EQ(outcome.err.back(), '\n');
}

INSTANTIATE_TEST_SUITE_P(, Message, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(Messages, NameTheMissingPositionalValue) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"-q", "-a"},
       "## ERROR: Error: the input folder is missing (first main parameter)"},
      {{"data/", "-a"},
       "## ERROR: Error: the input file prefix is missing (second main "
       "parameter)"}};
  for (const auto& [arguments, message] : rows) {
    const Outcome outcome = runPalvor(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.err).back(), message);
  }
}

}  // namespace
