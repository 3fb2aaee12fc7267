// Files on a real file system: plain names, replacing in one step, appending, clearing.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "platform/failure.h"
#include "support/file_size_limit.h"
#include "support/installation.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

class FilesTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder + "/" + name; }
  Names List() const { return installation.List("WebReports/Cache"); }
  void Write(const std::string& name, const std::string& bytes) const {
    installation.Write("WebReports/Cache/" + name, bytes);
  }

  Installation installation;
  const std::string folder = installation.path() + "/WebReports/Cache";
};

TEST_F(FilesTest, PlainNameIsAFileOfTheFolder) {
  for (const std::string name :
       {"a", "page.htm", "..a", "a..", "...", "*?", " ", "Z\xFCrich", "a b"}) {
    EXPECT_EQ(PlainFilePath(folder, name), folder + "/" + name);
  }
}

TEST_F(FilesTest, NameThatIsNotPlainFails) {
  Write("page.htm", "x");
  const std::string names[] = {"",
                               ".",
                               "..",
                               "/",
                               "a/b",
                               "../a",
                               "a\\b",
                               "..\\a",
                               "./page.htm",
                               "page.htm/",
                               "/etc/hostname",
                               std::string("a\0b", 3),
                               std::string("page.htm\0", 9)};
  for (const std::string& name : names) {
    EXPECT_THROW(PlainFilePath(folder, name), FileFailure) << testing::PrintToString(name);
    EXPECT_FALSE(PlainFileExists(folder, name)) << testing::PrintToString(name);
  }
}

TEST_F(FilesTest, PlainFileExistsForOrdinaryFilesOnly) {
  Write("page.htm", "");
  std::filesystem::create_directory(Path("subfolder"));
  EXPECT_TRUE(PlainFileExists(folder, "page.htm"));
  EXPECT_FALSE(PlainFileExists(folder, "PAGE.htm"));
  EXPECT_FALSE(PlainFileExists(folder, "page"));
  EXPECT_FALSE(PlainFileExists(folder, "*.htm"));
  EXPECT_FALSE(PlainFileExists(folder, "subfolder"));
  EXPECT_FALSE(PlainFileExists(folder + "/missing", "page.htm"));
}

TEST_F(FilesTest, NameOf255BytesWorksAndOneOf256Fails) {
  const std::string longest(255, 'a');
  ReplaceFile(PlainFilePath(folder, longest), "page", OldFile::kStays);
  EXPECT_TRUE(PlainFileExists(folder, longest));
  EXPECT_EQ(ReadFileBytes(PlainFilePath(folder, longest)), "page");
  EXPECT_EQ(List(), Names{longest});

  const std::string tooLong(256, 'a');
  EXPECT_FALSE(PlainFileExists(folder, tooLong));
  EXPECT_THROW(ReplaceFile(PlainFilePath(folder, tooLong), "page", OldFile::kStays), FileFailure);
  EXPECT_THROW(ReadFileBytes(PlainFilePath(folder, tooLong)), FileFailure);
  EXPECT_EQ(List(), Names{longest});
}

TEST_F(FilesTest, BytesComeBackAsTheyWere) {
  std::string allBytes;
  for (int i = 0; i < 256; ++i) allBytes += static_cast<char>(i);
  const std::string contents[] = {"", "page\r\n", allBytes, std::string(1'000'000, 'x')};
  for (const std::string& bytes : contents) {
    ReplaceFile(Path("page.htm"), bytes, OldFile::kStays);
    EXPECT_TRUE(ReadFileBytes(Path("page.htm")) == bytes) << bytes.size() << " bytes";
    EXPECT_EQ(List(), Names{"page.htm"});
  }
}

TEST_F(FilesTest, MissingFileAndFolderFailWithTheirName) {
  const std::function<void()> actions[] = {
      [&] { ReadFileBytes(Path("missing.htm")); },
      [&] { ReadFileBytes(Path("missing.htm/page")); },
      [&] { AppendToFile(Path("missing.htm/page"), "x"); },
      [&] { ReplaceFile(Path("missing.htm/page"), "x", OldFile::kStays); },
      [&] { ReplaceFile(Path("missing.htm/page"), "x", OldFile::kGoes); },
      [&] { TouchFile(Path("missing.htm/page")); },
      [&] { MoveFile(Path("missing.htm"), Path("other.htm")); },
      [&] { MoveFile(Path("missing.htm/page"), Path("other.htm")); },
      [&] { DeleteFile(Path("missing.htm")); },
      [&] { DeleteFile(Path("missing.htm/page")); },
  };
  for (const auto& action : actions) {
    try {
      action();
      ADD_FAILURE() << "no failure of action " << &action - actions;
    } catch (const FileFailure& failure) {
      EXPECT_NE(std::string(failure.what()).find("missing.htm"), std::string::npos)
          << failure.what();
    }
  }
  EXPECT_EQ(List(), Names{});
}

TEST_F(FilesTest, FolderIsNoFileToRead) {
  EXPECT_THROW(ReadFileBytes(folder), FileFailure);
}

// The size is asked for before the bytes: this file of the system's says more than it holds.
TEST_F(FilesTest, FileThatHoldsLessThanItsSizeIsReadToItsEnd) {
  const std::string path = "/sys/devices/system/cpu/online";
  if (!FileExists(path)) GTEST_SKIP() << "the system has no such file";
  const std::string bytes = ReadFileBytes(path);
  ASSERT_FALSE(bytes.empty());
  EXPECT_LT(bytes.size(), std::filesystem::file_size(path));
  EXPECT_EQ(bytes.find('\n'), bytes.size() - 1);
}

TEST_F(FilesTest, SyncFailsWhereNothingCanBeSynced) {
  Write("page.htm", "x");
  EXPECT_NO_THROW(SyncFile(Path("page.htm")));
  EXPECT_THROW(SyncFile(Path("missing.htm")), FileFailure);
  EXPECT_THROW(SyncFile("/dev/null"), FileFailure);
}

TEST_F(FilesTest, ReaderOfTheOldFileSeesItWhole) {
  Write("page.htm", std::string(100'000, 'o'));
  std::ifstream reader(Path("page.htm"), std::ios::binary);
  const int first = reader.get();
  ReplaceFile(Path("page.htm"), "new", OldFile::kStays);
  const std::string rest((std::istreambuf_iterator<char>(reader)), {});
  EXPECT_EQ(first, 'o');
  EXPECT_TRUE(rest == std::string(99'999, 'o'));
  EXPECT_EQ(ReadFileBytes(Path("page.htm")), "new");
}

TEST_F(FilesTest, FailedReplacementLeavesTheOldFileOrNone) {
  struct Case {
    OldFile onFailure;
    Names left;
  };
  const Case cases[] = {{OldFile::kStays, {"page.htm"}}, {OldFile::kGoes, {}}};
  for (const Case& row : cases) {
    Write("page.htm", "old");
    {
      const FileSizeLimit disk(1000);
      EXPECT_THROW(ReplaceFile(Path("page.htm"), std::string(50'000, 'n'), row.onFailure),
                   FileFailure);
    }
    EXPECT_EQ(List(), row.left);
    EXPECT_EQ(installation.Read("WebReports/Cache/page.htm"), row.left.empty() ? "" : "old");
  }
}

TEST_F(FilesTest, FailedFirstWriteLeavesNothing) {
  for (const OldFile onFailure : {OldFile::kStays, OldFile::kGoes}) {
    const FileSizeLimit disk(1000);
    EXPECT_THROW(ReplaceFile(Path("page.htm"), std::string(50'000, 'n'), onFailure), FileFailure);
    EXPECT_EQ(List(), Names{});
  }
}

TEST_F(FilesTest, AppendMakesTheFileAndThenGrowsIt) {
  AppendToFile(Path("events.txt"), "one\r\n");
  AppendToFile(Path("events.txt"), "");
  AppendToFile(Path("events.txt"), "two\r\n");
  EXPECT_EQ(ReadFileBytes(Path("events.txt")), "one\r\ntwo\r\n");
}

TEST_F(FilesTest, FailedAppendIsAFailureAndLeavesNothingOfItsText) {
  AppendToFile(Path("events.txt"), "one\r\n");
  const FileSizeLimit disk(1000);
  EXPECT_THROW(AppendToFile(Path("events.txt"), std::string(50'000, 'n')), FileFailure);
  EXPECT_EQ(ReadFileBytes(Path("events.txt")), "one\r\n");
}

class ReadLinesTest : public FilesTest {
 protected:
  std::vector<std::string> LinesOf(const std::string& text) const {
    Write("lines.txt", text);
    std::vector<std::string> lines;
    ReadLines(Path("lines.txt"), [&](std::string_view line) { lines.emplace_back(line); });
    return lines;
  }
};

TEST_F(ReadLinesTest, EndOfEachKindEndsALine) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(LinesOf(""), Lines{});
  EXPECT_EQ(LinesOf("one"), Lines{"one"});
  EXPECT_EQ(LinesOf("one\r\ntwo\rthree\nfour\r\n"), (Lines{"one", "two", "three", "four"}));
  EXPECT_EQ(LinesOf("\r\n\n\r"), (Lines{"", "", ""}));
  EXPECT_EQ(LinesOf("one\r"), Lines{"one"});
}

// The file is read in pieces of 64 KiB, wherever its lines end.
TEST_F(ReadLinesTest, LineEndAcrossTwoPiecesIsOne) {
  for (const std::size_t length : {65'534, 65'535, 65'536, 65'537, 131'071, 200'000}) {
    const std::string line(length, 'x');
    EXPECT_EQ(LinesOf(line + "\r\n" + line + "\r\nend"),
              (std::vector<std::string>{line, line, "end"}))
        << length;
  }
}

TEST_F(ReadLinesTest, WhatTheHandlerThrowsEndsTheReading) {
  Write("lines.txt", "one\r\ntwo\r\n");
  int lines = 0;
  EXPECT_THROW(ReadLines(Path("lines.txt"),
                         [&](std::string_view) {
                           ++lines;
                           throw ConversionFailure("no date");
                         }),
               ConversionFailure);
  EXPECT_EQ(lines, 1);
}

TEST_F(ReadLinesTest, FileThatIsNotThereIsAFailure) {
  EXPECT_THROW(ReadLines(Path("missing.txt"), [](std::string_view) {}), FileFailure);
  EXPECT_THROW(SyncFile(Path("missing.txt")), FileFailure);
}

TEST_F(FilesTest, TouchMakesAnEmptyFileAndKeepsAnother) {
  TouchFile(Path("new.htm"));
  EXPECT_EQ(std::filesystem::file_size(Path("new.htm")), 0u);
  Write("old.htm", "content");
  TouchFile(Path("old.htm"));
  EXPECT_EQ(ReadFileBytes(Path("old.htm")), "content");
}

TEST_F(FilesTest, MoveGivesTheFileItsNewName) {
  const std::string bytes("event\r\n\0\xFF", 9);
  Write("AppEventWeb.txt", bytes);
  MoveFile(Path("AppEventWeb.txt"), Path("AppEventWeb.bak"));
  EXPECT_EQ(List(), Names{"AppEventWeb.bak"});
  EXPECT_EQ(ReadFileBytes(Path("AppEventWeb.bak")), bytes);
}

TEST_F(FilesTest, MoveToANameThatIsTakenFailsAndLeavesBothFiles) {
  Write("AppEventWeb.txt", "new");
  for (const std::string old : {"old", ""}) {
    Write("AppEventWeb.bak", old);
    EXPECT_THROW(MoveFile(Path("AppEventWeb.txt"), Path("AppEventWeb.bak")), FileFailure);
    EXPECT_EQ(ReadFileBytes(Path("AppEventWeb.txt")), "new");
    EXPECT_EQ(ReadFileBytes(Path("AppEventWeb.bak")), old);
  }
}

TEST_F(FilesTest, MoveOntoAFolderOrIntoOneThatIsMissingLeavesTheFile) {
  Write("AppEventWeb.txt", "event");
  std::filesystem::create_directory(Path("subfolder"));
  for (const std::string target : {"subfolder", "missing/AppEventWeb.bak"}) {
    EXPECT_THROW(MoveFile(Path("AppEventWeb.txt"), Path(target)), FileFailure) << target;
    EXPECT_EQ(List(), (Names{"AppEventWeb.txt", "subfolder"})) << target;
    EXPECT_EQ(ReadFileBytes(Path("AppEventWeb.txt")), "event") << target;
  }
}

TEST_F(FilesTest, DeleteTakesThatFileAlone) {
  for (const char* name : {"AppEventWeb.bak", "AppEventWeb.txt", "*"}) Write(name, "event");
  DeleteFile(Path("AppEventWeb.bak"));
  EXPECT_EQ(List(), (Names{"*", "AppEventWeb.txt"}));
  DeleteFile(Path("*"));
  EXPECT_EQ(List(), Names{"AppEventWeb.txt"});
}

TEST_F(FilesTest, FolderIsNoFileToDelete) {
  std::filesystem::create_directory(Path("subfolder"));
  EXPECT_THROW(DeleteFile(Path("subfolder")), FileFailure);
  EXPECT_EQ(List(), Names{"subfolder"});
}

TEST_F(FilesTest, DeleteMatchingTakesTheNamesOfThePattern) {
  struct Case {
    std::string pattern;
    Names left;
  };
  const Names names = {"WebConnection-1.txt",
                       "WebConnections.txt",
                       "WebSql.txt",
                       "WebSqlTop10.txt",
                       "WebSqlTop10.txt.bak",
                       "qws.css",
                       "qwsxcss"};
  const Case cases[] = {
      {"WebConnection*.txt", {names[2], names[3], names[4], names[5], names[6]}},
      {"WebSql*.txt", {names[0], names[1], names[4], names[5], names[6]}},
      {"qws.css", {names[0], names[1], names[2], names[3], names[4], names[6]}},
      {"*Top*t*", {names[0], names[1], names[2], names[5], names[6]}},
      {"qws?css", names},
      {"websql*.txt", names},
      {"*.htm", names},
      {"", names},
      {"*", {}},
  };
  for (const Case& row : cases) {
    for (const std::string& name : names) Write(name, "x");
    DeleteMatching(folder, row.pattern);
    EXPECT_EQ(List(), row.left) << row.pattern;
  }
}

TEST_F(FilesTest, DeleteMatchingLeavesFoldersAlone) {
  std::filesystem::create_directory(Path("old.htm"));
  Write("new.htm", "x");
  DeleteMatching(folder, "*.htm");
  EXPECT_EQ(List(), Names{"old.htm"});
}

TEST_F(FilesTest, DeleteMatchingInAMissingFolderDoesNothing) {
  EXPECT_NO_THROW(DeleteMatching(folder + "/missing", "*.htm"));
}

TEST_F(FilesTest, FolderThatCannotBeListedIsAFailure) {
  std::filesystem::create_symlink(Path("round"), Path("round"));
  EXPECT_THROW(DeleteMatching(Path("round"), "*.htm"), FileFailure);
}

TEST_F(FilesTest, DeleteMatchingBelowAFileDoesNothing) {
  Write("page.htm", "x");
  EXPECT_NO_THROW(DeleteMatching(Path("page.htm"), "*"));
  EXPECT_EQ(List(), Names{"page.htm"});
}

TEST_F(FilesTest, NoCharacterButTheStarIsSpecialInAPattern) {
  const Names names = {"[a].htm", "\\x.htm", "a.htm"};
  for (const std::string& pattern : {names[0], names[1]}) {
    for (const std::string& name : names) Write(name, "x");
    DeleteMatching(folder, pattern);
    EXPECT_FALSE(FileExists(Path(pattern))) << pattern;
    EXPECT_EQ(List().size(), names.size() - 1) << pattern;
  }
}

TEST_F(FilesTest, FailureQuotesALongNameByItsEnd) {
  const std::string name = std::string(40000, 'x') + "end.htm";
  try {
    ReadFileBytes("/nowhere/" + name);
    FAIL() << "read a file that is not there";
  } catch (const FileFailure& failure) {
    const std::string text = failure.what();
    EXPECT_LT(text.size(), 400u);
    EXPECT_NE(text.find("end.htm"), std::string::npos);
  }
}

}  // namespace
}  // namespace quillon
