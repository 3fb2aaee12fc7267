// Remembered pages against the files that they were read from.
#include "web/page_memory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/failure.h"
#include "platform/files.h"
#include "support/installation.h"

namespace quillon {
namespace {

class PageMemoryTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const {
    return installation.path() + "/WebReports/Cache/" + name;
  }

  // Writes the file in place, as an editor would, with a time of change long ago. The time
  // of its status cannot be set, so a settled file has to wait for the clock.
  void WriteInPlace(const std::string& name, const std::string& bytes) const {
    installation.Write("WebReports/Cache/" + name, bytes);
  }

  std::string Read(const std::string& name) {
    std::string text = "before";
    memory.Read(Path(name), text);
    return text;
  }

  static void LetFilesSettle() { sleep(3); }

  Installation installation;
  PageMemory memory;
};

TEST_F(PageMemoryTest, FileThatJustChangedIsReadEachTime) {
  for (const std::string bytes : {"first", "other", "third", ""}) {
    WriteInPlace("a.htm", bytes);
    EXPECT_EQ(Read("a.htm"), bytes);
  }
}

TEST_F(PageMemoryTest, EveryChangeOfASettledFileShows) {
  WriteInPlace("a.htm", "first");
  WriteInPlace("b.htm", "b");
  LetFilesSettle();
  EXPECT_EQ(Read("a.htm"), "first");
  EXPECT_EQ(Read("a.htm"), "first");
  WriteInPlace("a.htm", "other");  // of the same length
  EXPECT_EQ(Read("a.htm"), "other");
  ReplaceFile(Path("a.htm"), "moved", OldFile::kGoes);
  EXPECT_EQ(Read("a.htm"), "moved");
  EXPECT_EQ(Read("b.htm"), "b");
  unlink(Path("a.htm").c_str());
  EXPECT_EQ(Read("a.htm"), "");
  EXPECT_TRUE(installation.Exists("WebReports/Cache/a.htm"));
}

TEST_F(PageMemoryTest, OnlyARememberedPageWhoseFileIsUnchangedIsTaken) {
  std::string text = "before";
  WriteInPlace("a.htm", "first");
  WriteInPlace("b.htm", "b");
  LetFilesSettle();
  EXPECT_FALSE(memory.Take(Path("a.htm"), text));
  Read("a.htm");
  Read("b.htm");
  EXPECT_TRUE(memory.Take(Path("a.htm"), text));
  EXPECT_EQ(text, "first");
  ReplaceFile(Path("a.htm"), "other", OldFile::kGoes);
  unlink(Path("b.htm").c_str());
  EXPECT_FALSE(memory.Take(Path("a.htm"), text));
  EXPECT_FALSE(memory.Take(Path("b.htm"), text));
  EXPECT_EQ(text, "first");
  EXPECT_FALSE(installation.Exists("WebReports/Cache/b.htm"));
}

TEST_F(PageMemoryTest, SettledFileWithItsOldTimesIsReadAnewAfterAChange) {
  WriteInPlace("a.htm", "first");
  LetFilesSettle();
  EXPECT_EQ(Read("a.htm"), "first");
  struct stat status {};
  ASSERT_EQ(stat(Path("a.htm").c_str(), &status), 0);
  WriteInPlace("a.htm", "other");
  const timespec times[] = {status.st_atim, status.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, Path("a.htm").c_str(), times, 0), 0);
  EXPECT_EQ(Read("a.htm"), "other");
}

TEST_F(PageMemoryTest, MorePagesThanItHoldsAreAllRight) {
  const std::string page(PageMemory::kLimit / 4, 'x');
  for (const std::string name : {"1", "2", "3", "4", "5", "6"}) WriteInPlace(name, name + page);
  WriteInPlace("huge", std::string(PageMemory::kLimit + 1, 'h'));
  LetFilesSettle();
  for (int round = 0; round < 2; ++round) {
    for (const std::string name : {"1", "2", "3", "4", "5", "6"})
      EXPECT_EQ(Read(name), name + page);
    EXPECT_EQ(Read("huge").size(), PageMemory::kLimit + 1);
  }
}

TEST_F(PageMemoryTest, FileThatCannotBeReadKeepsTheText) {
  std::string text = "before";
  EXPECT_THROW(memory.Read(installation.path() + "/WebReports/Cache", text), FileFailure);
  EXPECT_THROW(memory.Read(installation.path() + "/nowhere/a.htm", text), FileFailure);
  EXPECT_EQ(text, "before");
}

}  // namespace
}  // namespace quillon
