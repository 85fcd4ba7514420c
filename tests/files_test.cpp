#include "support/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/clocks.h"
#include "support/data_folder.h"

namespace {

class Files : public testing::Test {
 protected:
  DataFolder folder_{Collection{}};
  const std::string path_ = folder_.path("file");
};

TEST_F(Files, AreCreatedOrEmptiedForWriting) {
  umask(0);
  folder_.write("file", "longer than what comes");
  for (const char* name : {"new", "file"}) {
    const int fd = FileOpen(folder_.path(name).c_str(), 1);
    EXPECT_EQ(FileWrite(fd, "text", 4), 4);
    EXPECT_EQ(BigFileWrite(fd, "more", 4), 4);
    EXPECT_EQ(FileClose(fd), 0);
    EXPECT_EQ(folder_.bytes(name), "textmore");
  }
  struct stat status = {};
  ASSERT_EQ(stat(folder_.path("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(Files, AreReadAtAnOffsetOrFromThePosition) {
  folder_.write("file", "0123456789");
  const int fd = FileOpen(path_.c_str(), 0);
  char text[16] = {};
  EXPECT_EQ(FileRead(fd, text, 4), 4);
  EXPECT_EQ(FileRead(fd, text + 4, 4, 6LL), 4);
  EXPECT_EQ(FileRead(fd, text + 8, 3), 3) << "an offset moves no position";
  EXPECT_STREQ(text, "01236789456");
  EXPECT_EQ(FileRead(fd, text, 16, 8), 2);
  EXPECT_LT(FileRead(fd, text, 16, -1), 0);
  EXPECT_EQ(FileSize(fd), 10);
  EXPECT_EQ(lseek(fd, 0, SEEK_CUR), 0);
  EXPECT_EQ(FileClose(fd), 0);
  EXPECT_LT(FileClose(fd), 0);
}

TEST_F(Files, ThatAreMissingGiveNegativeResults) {
  EXPECT_LT(FileOpen(path_.c_str(), 0), 0);
  EXPECT_LT(FileSize(path_.c_str()), 0);
  EXPECT_LT(FileStat(path_.c_str()), 0);
  EXPECT_EQ(FileStat(folder_.root().c_str()), 0);
}

TEST_F(Files, AreWrittenInPiecesOfFourMebibytes) {
  const std::vector<char> zeros(12582913);
  // A full device fails each piece, and each failure counts -1.
  const int full = open("/dev/full", O_WRONLY);
  for (const auto& [bytes, pieces] :
       {std::pair(4194304, 1), {4194305, 2}, {12582913, 4}}) {
    EXPECT_EQ(FileWrite(full, zeros.data(), bytes), -pieces) << bytes;
    const int fd = FileOpen(path_.c_str(), 1);
    EXPECT_EQ(FileWrite(fd, zeros.data(), bytes), bytes);
    FileClose(fd);
    EXPECT_EQ(FileSize(path_.c_str()), bytes);
  }
}

TEST_F(Files, StartTheClockAndTakeTime) {
  const int fd = FileOpen("/dev/zero", 0);
  std::vector<char> zeros(64 << 20);
  FileRead(fd, zeros.data(), static_cast<int>(zeros.size()));
  EXPECT_LT(rclock() - ReadTime(), 1000);
  EXPECT_GT(ReadTime(), 0);
  EXPECT_EQ(WriteTime(), 0);
}

}  // namespace
