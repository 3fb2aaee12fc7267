// Where exported text goes.
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/csv/output.h"
#include "support/file_size_limit.h"
#include "support/temporary_folder.h"
#include "tools/standard_descriptor.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

class CsvOutputs : public testing::Test {
 protected:
  void Write(const std::string& text) const {
    CsvOutput output(path_);
    output.WriteRecord(text);
    output.Commit();
  }

  // What is said of a path that nothing can be written to.
  static std::string Refused(const std::string& path) {
    try {
      const CsvOutput output(path);
    } catch (const FileFailure& failure) {
      return failure.what();
    }
    return "nothing was refused";
  }

  std::ptrdiff_t FilesInFolder() const {
    return std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator());
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.path() + "/ports.csv";
};

TEST_F(CsvOutputs, AFileIsThereFromItsCommitOn) {
  CsvOutput output(path_);
  output.WriteRecord("a,b\n");
  output.WriteRecord("c,d\n");
  EXPECT_FALSE(fs::exists(path_));
  output.Commit();
  EXPECT_EQ(ReadFileBytes(path_), "a,b\nc,d\n");
  EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(CsvOutputs, AFileIsForItsOwnerAlone) {
  Write("a\n");
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(CsvOutputs, AnOldFileStaysWithoutACommit) {
  Write("old\n");
  CsvOutput(path_).WriteRecord("new\n");
  EXPECT_EQ(ReadFileBytes(path_), "old\n");
  EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(CsvOutputs, AnOldFileIsReplaced) {
  Write("old and long\n");
  Write("new\n");
  EXPECT_EQ(ReadFileBytes(path_), "new\n");
}

// It could be somebody else's, and lead anywhere.
TEST_F(CsvOutputs, ALinkIsNeitherFollowedNorReplaced) {
  Write("old\n");
  const std::string link = folder_.path() + "/link.csv";
  for (const char* file : {"ports.csv", "missing.csv", "."}) {
    fs::create_symlink(file, link);
    EXPECT_EQ(Refused(link), link +
                                 " is a link; name the file that it leads to, or - for standard"
                                 " output");
    fs::remove(link);
  }
  EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(CsvOutputs, ALinkThatIsMadeMeanwhileIsReplacedItself) {
  CsvOutput output(path_);
  output.WriteRecord("new\n");
  const std::string other = folder_.path() + "/other";
  CsvOutput(other).Commit();
  fs::create_symlink("other", path_);
  output.Commit();
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path_)));
  EXPECT_EQ(ReadFileBytes(other), "");
}

TEST_F(CsvOutputs, ADatabaseIsNotReplaced) {
  for (const char* name : {"Quillon.mdb", "Reports.mdb", "History.mdb", "Reports.mdb-wal",
                           "Reports.mdb-shm", "History.mdb-journal"}) {
    const std::string path = folder_.path() + "/" + name;
    EXPECT_EQ(Refused(path), path +
                                 " is the name of a database; name another file, or - for"
                                 " standard output");
  }
  EXPECT_EQ(Refused(folder_.path() + "/Reports.mdb.csv"), "nothing was refused");
  EXPECT_EQ(FilesInFolder(), 0);
}

TEST_F(CsvOutputs, WhatIsNoFileIsNotReplaced) {
  EXPECT_EQ(Refused("/dev/null"),
            "/dev/null is no ordinary file; name another one, or - for standard output");
  EXPECT_EQ(Refused(folder_.path()),
            folder_.path() + " is no ordinary file; name another one, or - for standard output");
}

TEST_F(CsvOutputs, AFolderThatIsMissingIsNamed) {
  const std::string path = folder_.path() + "/missing/ports.csv";
  EXPECT_EQ(Refused(path), "cannot create " + path + ": No such file or directory");
}

TEST_F(CsvOutputs, AFullDiskLeavesTheOldFile) {
  Write("old\n");
  {
    const FileSizeLimit limit(4096);
    CsvOutput output(path_);
    EXPECT_THROW(
        {
          output.WriteRecord(std::string(8000, 'x') + '\n');
          output.Commit();
        },
        FileFailure);
  }
  EXPECT_EQ(ReadFileBytes(path_), "old\n");
  EXPECT_EQ(FilesInFolder(), 1);
}

TEST_F(CsvOutputs, AHyphenIsStandardOutput) {
  testing::internal::CaptureStdout();
  {
    CsvOutput output("-");
    output.WriteRecord("a,\"b\nc\"\n");
    output.Commit();
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a,\"b\nc\"\n");
}

TEST_F(CsvOutputs, ATerminalGetsWhatIsFitForIt) {
  int terminal = -1;
  int programsEnd = -1;
  ASSERT_EQ(openpty(&terminal, &programsEnd, nullptr, nullptr, nullptr), 0);
  {
    const StandardDescriptor standardOutput(STDOUT_FILENO, programsEnd);
    CsvOutput output("-");
    output.WriteRecord("a,\"\x1B[2J\nb\"\n");
    output.Commit();
  }
  char shown[64];
  const ssize_t length = read(terminal, shown, sizeof shown);
  EXPECT_EQ(std::string(shown, length < 0 ? 0 : static_cast<std::size_t>(length)),
            "a,\"?[2J?b\"\r\n");
  close(terminal);
}

}  // namespace
}  // namespace quillon
