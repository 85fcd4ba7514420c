// Every error that bad input or a failing system can cause, through the real
// program: status 1, and the exact words. "@" stands for the temporary folder,
// both in options and in messages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

namespace fs = std::filesystem;

using testing::_;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

using Damage = std::function<void(const DataFolder&)>;

Damage operator+(const Damage& first, const Damage& second) {
  return [=](const DataFolder& folder) {
    first(folder);
    second(folder);
  };
}

void nothing(const DataFolder&) {}

Damage removed(const char* name) {
  return [=](const DataFolder& folder) { fs::remove(folder.path(name)); };
}

Damage words(const char* name, const std::vector<uint32_t>& words) {
  return [=](const DataFolder& folder) { folder.writeWords(name, words); };
}

Damage sized(const char* name, uint64_t bytes) {
  return [=](const DataFolder& folder) {
    fs::resize_file(folder.path(name), bytes);
  };
}

// Puts something else where the file should be. Reading a pipe would wait for
// somebody to write.
Damage folderAt(const char* name) {
  return removed(name) + [=](const DataFolder& folder) {
    fs::create_directory(folder.path(name));
  };
}
Damage fullDeviceAt(const char* name) {
  return removed(name) + [=](const DataFolder& folder) {
    fs::create_symlink("/dev/full", folder.path(name));
  };
}
Damage pipeAt(const char* name) {
  return removed(name) + [=](const DataFolder& folder) {
    ASSERT_EQ(mkfifo(folder.path(name).c_str(), 0644), 0);
  };
}

class Message : public testing::Test {
 protected:
  // Damages a folder of GATTACA and TACA, and expects the run with `-q` and
  // these options to end with the message, and to say nothing more than the
  // command, the version and, where the message leaves it out, the file.
  void ends(const std::string& options, const Damage& damage,
            const std::string& message) {
    SCOPED_TRACE(options + " " + message);
    const DataFolder folder{Collection{{"GATTACA", "TACA"}}};
    const auto withRoot = [&](std::string text) {
      const size_t at = text.find('@');
      return at == std::string::npos ? text
                                     : text.replace(at, 1, folder.root());
    };
    ASSERT_NO_FATAL_FAILURE(damage(folder));
    const Outcome outcome = folder.merge("-q " + withRoot(options), setting_);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    const std::vector<std::string> lines = linesOf(outcome.err);
    ASSERT_THAT(lines, SizeIs(AnyOf(3, 4)));
    EXPECT_EQ(lines.back(), "## ERROR: " + withRoot(message));
    const std::string file = lines.size() == 4 ? lines[2] : withRoot("# @");
    EXPECT_THAT(file, StartsWith(withRoot("# @")));
    EXPECT_EQ(outcome.err.back(), '\n');
  }

  Setting setting_;
};

TEST_F(Message, ForTheCommandLine) {
  const std::string pending = "Error: option value pending when reached ";
  ends("-m -v", nothing, pending + "'-v'");
  ends("-o -1", nothing, pending + "'-1'");
  ends("-x4 -v", nothing, pending + "'-v'");
  ends("-m", nothing, pending + "end of args");
  ends("-J", nothing, pending + "end of args");
  for (const std::string option : {"-D", "-1", "-"}) {
    ends(option, nothing, "Error: unrecognized option '" + option + "'");
  }
  ends("y", nothing, "main parameters already defined, at option 'y'");
  for (const std::string option : {"-M", "-m", "-N", "-n"}) {
    ends(option + " 2^31", nothing,
         "option " + option + ": -2147483648 cannot be a size");
  }
  ends("-a -n 1e99", nothing,
       "option -n: 2147483647 is not from 1 to 134217727");
}

TEST_F(Message, ForAMissingPositionalValue) {
  EXPECT_EQ(linesOf(runPalvor({"-q", "-a"}).err).back(),
            "## ERROR: Error: the input folder is missing (first main "
            "parameter)");
  EXPECT_EQ(linesOf(runPalvor({"data/", "-a"}).err).back(),
            "## ERROR: Error: the input file prefix is missing (second main "
            "parameter)");
}

TEST_F(Message, AsksForAMissingSlash) {
  const DataFolder folder{Collection{{"GATTACA"}}};
  const std::string bare = folder.root().substr(0, folder.root().size() - 1);
  const auto lines = [](const std::vector<std::string>& arguments) {
    const Outcome outcome = runPalvor(arguments);
    EXPECT_EQ(outcome.status, 1);
    return linesOf(outcome.err);
  };
  const std::string question = "# Did you mean " + folder.root() + " ?";
  const std::string unfound = bare + "x.ST/x.stlengths";
  EXPECT_THAT(
      lines({bare, "x", "-q"}),
      ElementsAre(_, _, "# " + unfound + ": No such file or directory",
                  question,
                  "## ERROR: could not access lengths file " + unfound));
  EXPECT_THAT(lines({folder.root(), "x", "-S", bare}), Contains(question));
  // Where that would be no data folder either.
  EXPECT_THAT(lines({bare, "y", "-q"}), SizeIs(4));
  EXPECT_THAT(lines({bare + "/z", "x", "-q"}), SizeIs(4));
}

// No file is made in a folder whose paths would be too long.
TEST_F(Message, ForLongPaths) {
  const DataFolder folder{Collection{{"GATTACA"}}};
  const std::string prefix(100, 'p');
  const std::string file = prefix + ".ST/" + prefix;
  const std::string path = folder.root() + file;
  const std::string message = "## ERROR: path of " +
                              std::to_string(path.size()) +
                              " characters is too long (at most 199): " + path;
  for (const std::string options : {"-o @ -p ", "-S @ -s "}) {
    std::string given = options + prefix;
    given.replace(given.find('@'), 1, folder.root());
    const Outcome outcome = folder.merge("-q " + given);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.err).back(), message);
    EXPECT_FALSE(folder.holds("x.stdiv"));
    EXPECT_FALSE(fs::exists(folder.root() + prefix + ".ST"));
  }
}

TEST_F(Message, ForLengths) {
  const Damage noInputs = words("x.stlengths", {});
  const std::string noBits = "Could not open binary lengths file \"@x.ST/";
  ends("", removed("x.stlengths"),
       "could not access lengths file @x.ST/x.stlengths");
  ends("", pipeAt("x.stlengths"),
       "could not open lengths file \"@x.ST/x.stlengths\"");
  ends("", folderAt("x.stlengths"), "Reading lengths of partitions - error ");
  ends("", sized("x.stlengths", 1ULL << 33),
       "lengths file @x.ST/x.stlengths: 2147483648 inputs are too many");
  ends("", removed("x.stblengths"), noBits + "x.stblengths\"");
  ends("", noInputs + removed("x.stblengths"), noBits + "x.stblengths\"");
  ends("", sized("x.stblengths", 7),
       "Reading binary lengths of partitions - error ");
  ends("", words("x.stplengths", {}) + sized("x.stplengths", 1ULL << 33),
       "partitions file @x.ST/x.stplengths: 2147483648 partitions are too "
       "many");
  ends("", folderAt("x.stplengths"),
       "could not read partitions file \"@x.ST/x.stplengths\"");
  ends("-N 1", words("x.stplengths", {2}),
       "option -N caps the inputs, not the partitions that name them: it "
       "cannot be used with the partitions file @x.ST/x.stplengths");
}

TEST_F(Message, ForStrings) {
  const std::string unopened = "can't open input string binary file @x.ST/";
  const std::string unread = "binary string 1 reading error: read ";
  ends("", removed("x_1.stbin"), unopened + "x_1.stbin");
  ends("", pipeAt("x_1.stbin"), unopened + "x_1.stbin");
  ends("", sized("x_1.stbin", 7), unread + "7 bytes, wanted 2 words");
  ends("-U", sized("x_1.stbin", 7), unread + "7 bytes, wanted 2 words");
  ends("", folderAt("x_1.stbin"), unread + "-1 bytes, wanted 2 words");
  ends("", words("x.stblengths", {0, 8}) + sized("x_0.stbin", 0),
       "binary string 0 reading error: read 0 bytes, wanted 1 words");
  ends("", words("x_1.stbin", {0, 1}), "bad binary file 1");
  ends("", words("x.stblengths", {14, 1U << 31}),
       "binary length of input 1 is 2147483648 bits, at most 2147483647 are "
       "possible");
}

TEST_F(Message, ForSuffixArrays) {
  const std::string file = "Suffix file @x.ST/x_1.stpsa";
  for (const std::string options : {"-a", "-a -f"}) {
    ends(options, pipeAt("x_1.stpsa"), "can't open " + file);
    ends(options, removed("x_1.stpsa"), "can't open " + file);
    ends(options, folderAt("x_1.stpsa"),
         "can't read " + file + ": Is a directory");
  }
  ends("-M 16", words("x_1.stpsa", {4, 3, 0, 0, 8, 0, 0, 0}),
       "record 1 of " + file + ": there is no input 2, only 2 inputs");
  ends("-N 1", words("x_0.stpsa", {4, 3, 0, 0}),
       "record 0 of Suffix file @x.ST/x_0.stpsa: there is no input 1, only 1 "
       "inputs");
  ends("-M 32", words("x_1.stpsa", {4, 3, 0, 0, 4, 2, 0, 0, 4, 4, 0, 0}),
       "record 2 of " + file +
           ": position 4 is not inside input 1 of 4 characters");
  ends("-f", words("x_1.stpsa", {4, 1U << 31, 0, 0}),
       "record 0 of " + file +
           ": position 2147483648 is not inside input 1 of 4 characters");
}

TEST_F(Message, ForLcpFiles) {
  const std::string file = "LCP file @x.ST/x_1.stlcp";
  const Damage noSuffixes = sized("x_1.stpsa", 0);
  ends("-Z", removed("x_1.stlcp"), "can't open " + file);
  ends("-Z -H", removed("x_1.stlcp"), "can't open " + file);
  ends("-Z", noSuffixes + removed("x_1.stlcp"), "can't open " + file);
  ends("-Z", folderAt("x_1.stlcp"), "can't read " + file + ": Is a directory");
  ends("-Z", sized("x_1.stlcp", 15),
       file + " is shorter than its Suffix file: no entry for record 3");
  ends("-a -Z", words("x_1.stlcp", {0, 0, 1U << 31, 0}),
       "entry 2 of " + file +
           ": the common prefix does not fit, it has 2^30 bits or more");
}

// Inputs of all A, so long that two of them share 2^30 bits and more. Sparse.
TEST_F(Message, ForACommonPrefixThatDoesNotFit) {
  constexpr uint32_t kBits = (1U << 30) + 2;
  const uint64_t bytes = 4 * (((kBits - 1) >> 5) + 2);
  Damage huge = words("x.stblengths", {kBits, kBits});
  huge = huge + words("x_0.stbin", {}) + sized("x_0.stbin", bytes);
  huge = huge + words("x_1.stbin", {}) + sized("x_1.stbin", bytes);
  huge = huge + words("x_0.stpsa", {0, 0, 0, 0});
  ends("-a -U -l", huge + words("x_1.stpsa", {4, 0, 0, 0}),
       "two suffixes share 1073741826 bits: an LCP entry holds less than 2^30");
}

TEST_F(Message, ForOutputs) {
  const std::string dividers = "can't open ST dividers file @";
  ends("-o @no/such/", nothing, dividers + "no/such/x.ST/x.stdiv for writing");
  ends("-a", folderAt("x.stdiv"), dividers + "x.ST/x.stdiv for writing");
  ends("", fullDeviceAt("x.stdiv"), "could not write current divider element");
  ends("-a", folderAt("x.stpsa"), "cannot open suffix array file for writing");
  ends("-a -l", folderAt("x.stlcp"), "cannot open LCP array file for writing");
  ends("", folderAt("x_0.stree"),
       "cannot open suffix array @x.ST/x_0.stree for writing tree");
  ends("-a -n 3", fullDeviceAt("x.stpsa"),
       "not all output Suffixes were written");
  ends("-a -l", fullDeviceAt("x.stlcp"), "not all output LCPs were written");
  ends("-n 99", fullDeviceAt("x_0.stree"),
       "not all output tree nodes were written: -1 bytes and 16 Nodes");
}

// Of a write that stops short, and of a folder that cannot be made.
TEST_F(Message, TellsTheReason) {
  const DataFolder folder{Collection{{std::string(1000, 'A')}}};
  const Outcome full = folder.merge("-a -q", {.fileSize = 10'000});
  EXPECT_EQ(linesOf(full.err).at(2),
            "# " + folder.path("x.stpsa") + ": File too large");
  const Outcome unmade = folder.merge("-a -q -o /proc/self/fd/ -p y");
  EXPECT_EQ(linesOf(unmade.err).at(2),
            "# /proc/self/fd/y.ST/: No such file or directory");
  EXPECT_EQ(linesOf(unmade.err).at(3),
            "## ERROR: can't open ST dividers file /proc/self/fd/y.ST/y.stdiv "
            "for writing");
}

TEST_F(Message, ForTooLittleMemory) {
  if (addressSpaceIsNeeded()) {
    GTEST_SKIP() << "the sanitizer's own memory cannot be limited";
  }
  setting_.memory = 400'000'000;
  ends("-a -n 134217727", nothing,
       "couldn't allocate 134217727 Suffixes for suffBuff");
  ends("-a -n 2e7 -l -M 64", nothing,
       "couldn't allocate 20000000 Suffixes for suffBuff");
  // No more than the files could fill is asked for.
  ends("-a -M 2147483647", sized("x_0.stpsa", 1ULL << 31),
       "could not allocate 2147483904 bytes for the streams' buffers");
  ends("-U",
       words("x.stblengths", {0x7FFFFFFF, 0x7FFFFFFF}) +
           sized("x_0.stbin", 1 << 29) + sized("x_1.stbin", 1 << 29),
       "problem with mmap");
}

}  // namespace
