#include "palvor/io/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "palvor/io/record_writer.h"
#include "support/temporary_folder.h"

namespace {

using palvor::File;

class Files : public testing::Test {
 protected:
  TemporaryFolder folder_;
  const std::string path_ = folder_.path("file");
  palvor::IoTime time_;
};

TEST_F(Files, AreCreatedOrEmptiedForWriting) {
  const mode_t mask = umask(0);
  folder_.write("file", "longer than what comes");
  for (const char* name : {"new", "file"}) {
    File file = File::create(folder_.path(name));
    EXPECT_EQ(file.write("text", 4, time_), 4);
    EXPECT_EQ(file.write("more", 4, time_), 4);
    EXPECT_EQ(file.close(), 0);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(folder_.read(name), "textmore");
  }
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat(folder_.path("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(Files, AreReadAtAnOffset) {
  folder_.write("file", "0123456789");
  File file = File::openInput(path_);
  char text[16] = {};
  EXPECT_EQ(file.readAt(text, 4, 6, time_), 4);
  EXPECT_EQ(file.readAt(text + 4, 4, 0, time_), 4);
  EXPECT_STREQ(text, "67890123");
  EXPECT_EQ(file.readAt(text, 16, 8, time_), 2);
  EXPECT_EQ(file.readAt(text, 16, 10, time_), 0);
  EXPECT_LT(file.readAt(text, 16, -1, time_), 0);
  File::Status status = {};
  EXPECT_TRUE(file.examine(status));
  EXPECT_EQ(status.size, 10);
  EXPECT_TRUE(status.regular);
  EXPECT_EQ(palvor::fileSize(path_), 10);
}

TEST_F(Files, CloseTheirDescriptorOnceWhoeverHasIt) {
  folder_.write("file", "text");
  File file = File::openInput(path_);
  const int descriptor = file.descriptor();
  {
    File other(std::move(file));
    EXPECT_EQ(other.descriptor(), descriptor);
    other = File();
    EXPECT_LT(fcntl(descriptor, F_GETFD), 0) << "it was given up";
    other = File::openInput(path_);
  }
  EXPECT_LT(fcntl(descriptor, F_GETFD), 0);
}

TEST_F(Files, ThatAreMissingOrNeverEndAreNotOpened) {
  EXPECT_FALSE(File::openInput(path_).isOpen());
  EXPECT_EQ(errno, ENOENT);
  EXPECT_LT(palvor::fileSize(path_), 0);
  EXPECT_FALSE(palvor::isStream(path_));
  ASSERT_EQ(mkfifo(path_.c_str(), 0644), 0);
  EXPECT_FALSE(File::openInput(path_).isOpen());
  EXPECT_EQ(errno, ESPIPE);
  EXPECT_TRUE(palvor::isStream("/dev/zero"));
}

TEST_F(Files, AreWrittenInPiecesOfFourMebibytes) {
  const std::vector<char> zeros(12582913);
  // A full device fails each piece, and each failure counts -1.
  File full(open("/dev/full", O_WRONLY));
  for (const auto& [bytes, pieces] :
       {std::pair(4194304, 1), {4194305, 2}, {12582913, 4}}) {
    EXPECT_EQ(full.write(zeros.data(), bytes, time_), -pieces) << bytes;
    File file = File::create(path_);
    EXPECT_EQ(file.write(zeros.data(), bytes, time_), bytes);
    file.close();
    EXPECT_EQ(palvor::fileSize(path_), bytes);
  }
}

TEST_F(Files, TakeTimeForReadingAndWritingApart) {
  File zero(open("/dev/zero", O_RDONLY));
  std::vector<char> zeros(64 << 20);
  zero.readAt(zeros.data(), static_cast<int64_t>(zeros.size()), 0, time_);
  EXPECT_GT(time_.read, 0);
  EXPECT_EQ(time_.write, 0);
}

TEST_F(Files, BlameWhatTheWriterMetFirst) {
  palvor::RecordWriter missing(folder_.path("no/file"), time_);
  EXPECT_FALSE(missing.create());
  EXPECT_EQ(missing.blame().file, folder_.path("no/file"));
  EXPECT_EQ(missing.blame().reason, "No such file or directory");

  palvor::RecordWriter full("/dev/full", time_);
  ASSERT_TRUE(full.create());
  EXPECT_EQ(full.write("text", 4), -1);
  EXPECT_EQ(full.blame().reason, "No space left on device");
}

}  // namespace
