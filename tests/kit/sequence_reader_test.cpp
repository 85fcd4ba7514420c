// The reader on files as the world makes them, plain and compressed, and on
// damaged ones.

#include "kit/sequences/sequence_reader.h"

#include <archive.h>
#include <archive_entry.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace {

using testing::AnyOf;
using testing::StartsWith;

// The records of a file, "name:SEQUENCE" each, joined by blanks.
std::string recordsOf(const std::string& path) {
  std::string result;
  kit::SequenceReader reader(path);
  while (reader.nextRecord()) {
    result += (result.empty() ? "" : " ") + reader.name() + ":";
    for (std::string_view piece = reader.readSequence(); !piece.empty();
         piece = reader.readSequence()) {
      result += piece;
    }
  }
  return result;
}

// The same, or "error" and the message's part that follows the file's name.
std::string outcomeOf(const std::string& bytes) {
  const TemporaryFolder folder;
  const std::string path = folder.write("reads", bytes);
  try {
    return recordsOf(path);
  } catch (const std::exception& error) {
    const std::string message = error.what();
    EXPECT_THAT(message, StartsWith(path + ":"));
    return "error" + message.substr(std::min(path.size(), message.size()));
  }
}

struct Row {
  std::string bytes, outcome;
};

TEST(SequenceReader, ReadsFastaAndFastq) {
  for (const auto& [bytes, records] : {
           Row{"", ""},
           {"\n \n\r\n", ""},
           {">a b c\nACGT\nac\n\ngt\n>b\tx\nT", "a:ACGTACGT b:T"},
           {">a x\r\nAC\r\nGT\r\n\r\n>b\r\nC\r\n", "a:ACGT b:C"},
           {"\n\n>a\n A C\tG \n", "a:ACG"},
           {">\nA\n> x y\nC\n>\r\nG\n> \nT", ":A x:C :G :T"},
           {">a\n>b\n\n>c\nG\n>d", "a: b: c:G d:"},
           {">a\nUuNnRyswKMbdhvX-.*T\n", "a:TTNNNNNNNNNNNNNNNNT"},
           {">a>b\nA", "a>b:A"},
           {"@a x\nACGT\n+\nIIII\n@b\nC\n+b\n!", "a:ACGT b:C"},
           {"@a\r\nAC\r\n+\r\nII\r\n@b\r\nC\r\n+\r\n~\r\n", "a:AC b:C"},
           // '@' and '+' begin lines of the quality, which may be broken.
           {"@a\nAC\n+\n@+\n@b\nGGT\n+\n+@@\n", "a:AC b:GGT"},
           {"@a\nACG\nTT\n+\n@I\n@\n+I\n\n@b\nC\n+\n@\n", "a:ACGTT b:C"},
           {"@a\n\n+\n\n@b\nC\n+\nI\n", "a: b:C"},
       }) {
    EXPECT_EQ(outcomeOf(bytes), records) << bytes;
  }
}

TEST(SequenceReader, RefusesWhatIsNeitherAndNamesTheLine) {
  const std::string nul(1, '\0');
  for (const auto& [bytes, line] : {
           Row{"ACGT\n", "1"},
           {"\n\nACGT\n", "3"},
           {nul, "1"},
           {">a\nAC\nAC1\n", "3"},
           {">a\nACE\n", "2"},
           {">a\nAC" + nul + "\n", "2"},
           {">a\nAC\n@b\nAC\n+\nII\n", "3"},
           {">a\rACGT\r", "1"},
           {"@a\nACGT\n", "2"},
           {"@a\nACGT\n>b\nACGT\n", "3"},
           {"@a\nACGT\n+\n", "3"},
           {"@a\nACGT\n+\nIII\n", "4"},
           {"@a\nACGT\n+\nIII\n@b\nACGT\n+\nIIII\n", "5"},
           {"@a\nACGT\n+\nIIIII\n", "4"},
           {"@a\nACGT\n+\nIIII\nI\n", "5"},
           {"@a\nACGT\n+\nII\x01I\n", "4"},
           {"@a\nA\n+\nI\n>b\nA\n", "5"},
       }) {
    EXPECT_THAT(outcomeOf(bytes), StartsWith("error:" + line + ": ")) << bytes;
  }
}

// Characters are read several at a time where all are A, C, G or T: every byte
// among such ones means what it means alone.
TEST(SequenceReader, ReadsEveryByteAmongOthersAsAlone) {
  for (int byte = 0; byte < 256; byte++) {
    if (byte == '\n') continue;
    const char c = static_cast<char>(byte);
    const std::string alone = outcomeOf(std::string(">a\nA\nA") + c + "\n");
    // A '>' at the start of a line begins a record.
    for (size_t at = c == '>' ? 1 : 0; at < 8; at++) {
      const std::string others = "acgtACGT";
      const std::string found = outcomeOf(">a\nA\n" + others.substr(0, at) + c +
                                          others.substr(at) + "\n");
      if (alone.starts_with("error")) {
        EXPECT_THAT(found, StartsWith(alone.substr(0, 20))) << byte;
        continue;
      }
      const std::string capitals = "ACGTACGT";
      EXPECT_EQ(found, "a:A" + capitals.substr(0, at) + alone.substr(4) +
                           capitals.substr(at))
          << byte;
    }
  }
}

TEST(SequenceReader, ReadsLinesOfAnyLength) {
  // Longer than any buffer, and with line ends wherever a buffer may end.
  std::string text, bytes = ">long " + std::string(300'000, 'x') + "\n";
  for (size_t i = 0; i < 1'500'000; i++) text += "ACGT"[i * i % 7 % 4];
  bytes += text.substr(0, 1'200'000) + "\n" + text.substr(1'200'000) + "\n>";
  EXPECT_EQ(outcomeOf(bytes), "long:" + text + " :");
  for (size_t extra = 0; extra < 8; extra++) {
    const std::string name(262'144 - 4 + extra - 2, 'n');
    EXPECT_EQ(outcomeOf(">a " + name + "\r\nAC\r\n>b\nG"), "a:AC b:G");
  }
}

TEST(SequenceReader, PassesOverWhatWasNotRead) {
  const TemporaryFolder folder;
  kit::SequenceReader reader(
      folder.write("x", "@a\nAC\nGT\n+\n@I@I\n@b\nC\n+\n@\n"));
  ASSERT_TRUE(reader.nextRecord());
  EXPECT_EQ(reader.readSequence(), "AC");
  ASSERT_TRUE(reader.nextRecord());
  EXPECT_EQ(reader.name(), "b");
  ASSERT_FALSE(reader.nextRecord());
}

using AddFilter = int (*)(archive*);
constexpr struct {
  const char* name;
  AddFilter add;
} kFilters[] = {{"gzip", archive_write_add_filter_gzip},
                {"bzip2", archive_write_add_filter_bzip2},
                {"xz", archive_write_add_filter_xz},
                {"zstd", archive_write_add_filter_zstd}};

std::string compressed(AddFilter add, const std::string& text) {
  std::vector<char> buffer(text.size() + 10'000);
  size_t used = 0;
  archive* writer = archive_write_new();
  archive_entry* entry = archive_entry_new();
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_write_set_format_raw(writer);
  EXPECT_EQ(add(writer), ARCHIVE_OK);
  archive_write_set_bytes_in_last_block(writer, 1);
  EXPECT_EQ(
      archive_write_open_memory(writer, buffer.data(), buffer.size(), &used),
      ARCHIVE_OK);
  EXPECT_EQ(archive_write_header(writer, entry), ARCHIVE_OK);
  EXPECT_EQ(archive_write_data(writer, text.data(), text.size()),
            static_cast<la_ssize_t>(text.size()));
  archive_entry_free(entry);
  EXPECT_EQ(archive_write_close(writer), ARCHIVE_OK);
  archive_write_free(writer);
  return {buffer.data(), used};
}

constexpr char kText[] = ">a\nGATTACACATTAGACCAGGTTGAC\n>b\nTTT\nACG\n";
constexpr char kRecords[] = "a:GATTACACATTAGACCAGGTTGAC b:TTTACG";

TEST(CompressedSequence, ReadsAsItsContents) {
  const std::string text = kText;
  std::string large = ">a\n";
  for (size_t i = 0; i < 900'000; i++) large += "ACGT"[i * i % 11 % 4];
  for (const auto& [name, add] : kFilters) {
    SCOPED_TRACE(name);
    EXPECT_EQ(outcomeOf(compressed(add, text)), kRecords);
    EXPECT_EQ(outcomeOf(compressed(add, "")), "");
    EXPECT_EQ(outcomeOf(compressed(add, large)), "a:" + large.substr(3));
    // Several streams in a row, as bgzip and parallel compressors make them,
    // parted anywhere, with an empty one at the end.
    for (size_t cut : {1u, 5u, 28u}) {
      EXPECT_EQ(
          outcomeOf(compressed(add, text.substr(0, cut)) +
                    compressed(add, text.substr(cut)) + compressed(add, "")),
          kRecords);
    }
  }
}

// As blocks of a fixed size are filled up.
TEST(CompressedSequence, MayBePaddedWithZeros) {
  const std::string text = kText, zeros(512, '\0');
  for (const AddFilter add :
       {archive_write_add_filter_gzip, archive_write_add_filter_xz}) {
    EXPECT_EQ(outcomeOf(compressed(add, text) + zeros), kRecords);
    EXPECT_EQ(outcomeOf(compressed(add, text) + std::string(1 << 19, '\0')),
              kRecords);
    EXPECT_THAT(outcomeOf(compressed(add, text) + zeros + "ACGT"),
                StartsWith("error"));
  }
  const AddFilter gzip = archive_write_add_filter_gzip;
  EXPECT_EQ(outcomeOf(compressed(gzip, text.substr(0, 9)) + zeros +
                      compressed(gzip, text.substr(9)) + '\0'),
            kRecords);
}

TEST(CompressedSequence, MustBeComplete) {
  for (const auto& [name, add] : kFilters) {
    SCOPED_TRACE(name);
    const std::string whole = compressed(add, kText);
    EXPECT_THAT(outcomeOf(whole + "ACGT"), StartsWith("error"));
    for (size_t size = 1; size < whole.size(); size++) {
      SCOPED_TRACE(size);
      const std::string cut = whole.substr(0, size);
      EXPECT_THAT(outcomeOf(cut), StartsWith("error"));
      EXPECT_THAT(outcomeOf(whole + cut), StartsWith("error"));
    }
  }
}

TEST(CompressedSequence, IsNeverReadWrong) {
  for (const auto& [name, add] : kFilters) {
    // libarchive writes zstd without a checksum.
    if (add == archive_write_add_filter_zstd) continue;
    std::string bytes = compressed(add, kText);
    for (char& byte : bytes) {
      byte = static_cast<char>(byte ^ 0x10);
      // A time stamp may differ and do no harm.
      EXPECT_THAT(outcomeOf(bytes), AnyOf(StartsWith("error"), kRecords))
          << name << ", byte " << &byte - bytes.data();
      byte = static_cast<char>(byte ^ 0x10);
    }
  }
}

}  // namespace
