// The cache folder and the mail folder: what a name reaches and what a file holds.
#include "web/page_cache.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/file_size_limit.h"
#include "support/house.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

const Names kBadNames = {
    "",
    ".",
    "..",
    "/",
    "a/b.htm",
    "/a.htm",
    "../a.htm",
    "../../Quillon.mdb",
    "folder/../a.htm",
    "\\",
    "a\\b.htm",
    "..\\a.htm",
    std::string("a.htm\0", 6),
    std::string("\0a.htm", 6),
    std::string("a\0/../../b.htm", 14),
    std::string(256, 'a'),
    std::string(10000, 'a'),
};

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

class PageCache : public testing::Test {
 protected:
  bool Cached(const std::string& name) const { return IsCached(house.settings, name); }

  // What the text holds after the read, "before" having been in it.
  std::string ReadOver(const std::string& name) const {
    std::string text = "before";
    ReadFromCache(house.diagnostics, memory, 1, name, text);
    return text;
  }

  void Save(const std::string& name, const std::string& text) const {
    SaveToCache(house.diagnostics, 1, name, text);
  }
  void SaveMail(const std::string& name, const std::string& text) const {
    SaveForMail(house.diagnostics, 1, name, text);
  }

  Names CacheFiles() const { return house.installation.List("WebReports/Cache"); }
  Names MailFiles() const { return house.installation.List("WebReports/Mail"); }

  // The events since the last call, which are `count` failures of that procedure.
  void ExpectFailures(std::size_t count, const std::string& procedure) {
    const Names events = house.Events();
    ASSERT_EQ(events.size(), seenEvents_ + count);
    const std::string start = "1\tmodHtml_" + procedure + "\t";
    for (; seenEvents_ < events.size(); ++seenEvents_) {
      EXPECT_EQ(events[seenEvents_].substr(0, start.size()), start);
      EXPECT_GT(events[seenEvents_].size(), start.size()) << "no description";
    }
  }

  House house;
  mutable PageMemory memory;  // reading a page is no change of the test

 private:
  std::size_t seenEvents_ = 0;
};

TEST_F(PageCache, AFileThatIsThereIsCached) {
  EXPECT_FALSE(Cached("a.htm"));
  house.installation.Write("WebReports/Cache/a.htm", "page");
  EXPECT_TRUE(Cached("a.htm"));
  EXPECT_FALSE(Cached("A.htm"));
  EXPECT_FALSE(Cached("a.ht"));
  EXPECT_FALSE(Cached("a.htm "));
}

TEST_F(PageCache, PageThatWasReadIsTakenUntilItsFileIsReplacedOrRemoved) {
  std::string text = "before";
  Save("a.htm", "first");
  Save("b.htm", "b");
  sleep(3);  // what has just been written is not remembered
  EXPECT_FALSE(TakeRemembered(house.settings, memory, "a.htm", text));
  ReadOver("a.htm");
  ReadOver("b.htm");
  EXPECT_TRUE(TakeRemembered(house.settings, memory, "a.htm", text));
  EXPECT_EQ(text, "first");
  Save("a.htm", "other");
  std::filesystem::remove(house.installation.path() + "/WebReports/Cache/b.htm");
  EXPECT_FALSE(TakeRemembered(house.settings, memory, "a.htm", text));
  EXPECT_FALSE(TakeRemembered(house.settings, memory, "b.htm", text));
  EXPECT_FALSE(TakeRemembered(house.settings, memory, "", text));
  EXPECT_EQ(text, "first");
}

TEST_F(PageCache, NothingElseIsCached) {
  std::filesystem::create_directory(house.installation.path() + "/WebReports/Cache/folder");
  house.installation.Write("WebReports/Cache/a.htm", "page");
  house.installation.Write("WebReports/a.htm", "page");
  EXPECT_FALSE(Cached("folder"));
  for (const std::string& name : kBadNames) EXPECT_FALSE(Cached(name)) << name;
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, ASavedTextComesBackByteForByte) {
  for (const std::string& text : Names{"page", "", "no line end", "\r\n", "a\nb", AllBytes()}) {
    Save("a.htm", text);
    EXPECT_EQ(house.installation.Read("WebReports/Cache/a.htm"), text);
    EXPECT_EQ(ReadOver("a.htm"), text);
  }
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, ASecondSaveLeavesNothingOfTheFirst) {
  Save("a.htm", std::string(100000, 'x'));
  Save("a.htm", "short");
  EXPECT_EQ(ReadOver("a.htm"), "short");
}

TEST_F(PageCache, SavingLeavesNoFileButItsOwn) {
  Save("a.htm", "one");
  Save("no-ending", "two");
  Save("a.htm", "three");
  EXPECT_EQ(CacheFiles(), (Names{"a.htm", "no-ending"}));
  EXPECT_TRUE(MailFiles().empty());
}

TEST_F(PageCache, AReadOfANameThatIsAbsentMakesItCachedAndEmpty) {
  EXPECT_EQ(ReadOver("a.htm"), "");
  EXPECT_EQ(CacheFiles(), Names{"a.htm"});
  EXPECT_EQ(house.installation.Read("WebReports/Cache/a.htm"), "");
  EXPECT_TRUE(Cached("a.htm"));
  EXPECT_EQ(ReadOver("a.htm"), "");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, ABadNameFailsToBeReadAndTheTextStays) {
  for (const std::string& name : kBadNames) {
    SCOPED_TRACE(name.substr(0, 40));
    EXPECT_EQ(ReadOver(name), "before");
    ExpectFailures(1, "ReadFromCache");
  }
  EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(PageCache, ABadNameFailsToBeSaved) {
  for (const std::string& name : kBadNames) {
    SCOPED_TRACE(name.substr(0, 40));
    Save(name, "page");
    ExpectFailures(1, "SaveToCache");
    SaveMail(name, "page");
    ExpectFailures(1, "SaveForMail");
  }
  EXPECT_TRUE(CacheFiles().empty());
  EXPECT_TRUE(MailFiles().empty());
  EXPECT_EQ(house.installation.List("WebReports"), (Names{"Cache", "Mail"}));
}

TEST_F(PageCache, ANameMayHave255Bytes) {
  const std::string name = std::string(251, 'a') + ".htm";
  Save(name, "page");
  SaveMail(name, "copy");
  EXPECT_TRUE(Cached(name));
  EXPECT_EQ(ReadOver(name), "page");
  EXPECT_EQ(MailFiles(), Names{name});
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, StarsQuestionMarksAndDotsAreOrdinaryCharacters) {
  house.installation.Write("WebReports/Cache/abc.htm", "abc");
  for (const std::string name : {"*.htm", "a?c.htm", "*", "[a]bc.htm", "...", "..a", "~", "%2e%2e",
                                 " ", "\xE4.htm", "a:b", "\"", "-"}) {
    EXPECT_FALSE(Cached(name)) << name;
    Save(name, "text of " + name);
    EXPECT_TRUE(Cached(name)) << name;
    EXPECT_EQ(ReadOver(name), "text of " + name);
  }
  EXPECT_EQ(ReadOver("abc.htm"), "abc");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, AFolderOfTheNameFailsTheReadAndTheSave) {
  std::filesystem::create_directory(house.installation.path() + "/WebReports/Cache/folder");
  EXPECT_EQ(ReadOver("folder"), "before");
  ExpectFailures(1, "ReadFromCache");
  Save("folder", "page");
  ExpectFailures(1, "SaveToCache");
  EXPECT_EQ(CacheFiles(), Names{"folder"});
}

TEST_F(PageCache, WithoutItsFolderEveryProcedureFailsUnderItsOwnName) {
  std::filesystem::remove(house.installation.path() + "/WebReports/Cache");
  std::filesystem::remove(house.installation.path() + "/WebReports/Mail");
  EXPECT_FALSE(Cached("a.htm"));
  EXPECT_EQ(ReadOver("a.htm"), "before");
  ExpectFailures(1, "ReadFromCache");
  Save("a.htm", "page");
  ExpectFailures(1, "SaveToCache");
  SaveMail("a.htm", "page");
  ExpectFailures(1, "SaveForMail");
}

TEST_F(PageCache, AFailedSaveLeavesNeitherTheOldFileNorANewOne) {
  Save("a.htm", "old");
  SaveMail("a.htm", "old");
  {
    const FileSizeLimit limit(8192);  // room for the events
    Save("a.htm", std::string(20000, 'x'));
    SaveMail("a.htm", std::string(20000, 'x'));
  }
  const Names events = house.Events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].find("1\tmodHtml_SaveToCache\t"), 0u) << events[0];
  EXPECT_EQ(events[1].find("1\tmodHtml_SaveForMail\t"), 0u) << events[1];
  EXPECT_TRUE(CacheFiles().empty());
  EXPECT_TRUE(MailFiles().empty());
}

TEST_F(PageCache, AMailCopyIsApartFromTheCache) {
  Save("a.htm", "page");
  SaveMail("a.htm", std::string(1000, 'x'));
  SaveMail("a.htm", AllBytes());
  SaveMail("b.htm", "copy");
  EXPECT_EQ(house.installation.Read("WebReports/Mail/a.htm"), AllBytes());
  EXPECT_EQ(MailFiles(), (Names{"a.htm", "b.htm"}));
  EXPECT_EQ(ReadOver("a.htm"), "page");
  EXPECT_FALSE(Cached("b.htm"));
}

TEST_F(PageCache, TheConnectionIdIsNotUsed) {
  for (const int id : {-1, 0, 21, 32767}) {
    SaveToCache(house.diagnostics, static_cast<ConnectionId>(id), "a.htm", "page");
    std::string text;
    ReadFromCache(house.diagnostics, memory, static_cast<ConnectionId>(id), "a.htm", text);
    EXPECT_EQ(text, "page") << id;
  }
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(PageCache, AFailureHasItsHalfSecond) {
  ReadOver("../a.htm");
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(500));
  Save("a.htm", "page");
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(500));
}

}  // namespace
}  // namespace quillon
