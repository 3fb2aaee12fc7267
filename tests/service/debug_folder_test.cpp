// Cleaning the debug folder.
#include "service/debug_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_size_limit.h"
#include "support/house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

TEST(DebugFolder, ClearingTakesTheDebugFilesAndKeepsTheEvents) {
  House house;
  for (const char* name :
       {"WebConnection-1.txt", "WebConnection-20.txt", "WebConnections.txt", "WebConnection.txt",
        "WebServices.txt", "Language.ini", "HelpText.txt", "qws.css", "WebSqlTop10.txt",
        "WebSqlSearchMacIp.txt", "WebSqlSearchDevicePort.txt", "WebSqlSearchDeviceDisk.txt",
        "WebSqlHist45.txt", "WebSqlHist45d.txt", "WebSqlFixTrend.txt", "WebSql.txt",
        "SendMailSMTP.txt", "~new.txt"}) {
    house.installation.Write(std::string("Debug/") + name, "text");
  }
  const Lines kept = {"AppEventWeb.bak",     "AppEventWeb.txt",    "Language.ini.txt",
                      "MyWebSqlTop10.txt",   "Other.ini",          "SendMailSMTP.txt.old",
                      "WebConnection-1.log", "WebServices-1.txt",  "WebSqlTop10.txt.bak",
                      "notes.txt",           "oldWebServices.txt", "qws.css.txt"};
  for (const std::string& name : kept) house.installation.Write("Debug/" + name, "text");
  ClearDebugDir(house.diagnostics);
  EXPECT_EQ(house.installation.List("Debug"), kept);
  EXPECT_EQ(house.installation.Read("Debug/AppEventWeb.txt"), "text");
}

TEST(DebugFolder, ClearingLeavesFoldersAndOtherPlacesAlone) {
  House house;
  std::filesystem::create_directory(house.installation.path() + "/Debug/WebSqlOld.txt");
  house.installation.Write("WebReports/qws.css", "text");
  house.installation.Write("WebReports/Language.ini", "text");
  house.installation.Write("WebServices.txt", "text");
  ClearDebugDir(house.diagnostics);
  EXPECT_EQ(house.installation.List("Debug"), Lines{"WebSqlOld.txt"});
  EXPECT_TRUE(house.installation.Exists("WebReports/qws.css"));
  EXPECT_TRUE(house.installation.Exists("WebReports/Language.ini"));
  EXPECT_TRUE(house.installation.Exists("WebServices.txt"));
}

TEST(DebugFolder, MissingFolderIsNoFailure) {
  House house;
  house.settings.AppPath += "/nowhere";
  ClearDebugDir(house.diagnostics);
  ClearDebugDir_AEW(house.diagnostics);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

// The event file, aged on 2024-05-02.
class EventFileTest : public testing::Test {
 protected:
  // The file after a run over these bytes.
  std::string Aged(const std::string& bytes) {
    Write(bytes);
    Age();
    return EventFile();
  }
  void Write(const std::string& bytes) const {
    house.installation.Write("Debug/AppEventWeb.txt", bytes);
  }
  void Age() const { ClearDebugDir_AEW(house.diagnostics); }
  std::string EventFile() const { return house.installation.Read("Debug/AppEventWeb.txt"); }
  std::string OldFile() const { return house.installation.Read("Debug/AppEventWeb.bak"); }

  // A line of the event file so many days ago.
  std::string Line(int daysAgo, const std::string& text = "text") const {
    const DateTime then = house.clock.Now() - std::chrono::days(daysAgo);
    return DateTimeText(then) + "\t1\tmodHtml_ReadCssText\t" + text + "\r\n";
  }

  // The file holds `copied` and behind it the event of a run that failed.
  void ExpectFailedBehind(const std::string& copied) const {
    const std::string file = EventFile();
    const std::string event = "2024-05-02 12:00:00\t1\tmodQuillonWeb_ClearDebugDir_AEW\t";
    ASSERT_TRUE(file.starts_with(copied + event)) << file;
    EXPECT_GT(file.size(), copied.size() + event.size() + 2);
    EXPECT_EQ(file.find("\r\n", copied.size()), file.size() - 2) << file;
  }

  House house;
};

TEST_F(EventFileTest, LinesOfFewerThanSixtyDaysStay) {
  for (const DateTimeParts& now :
       {DateTimeParts{2024, 5, 2, 0, 0, 0}, DateTimeParts{2024, 5, 2, 23, 59, 59}}) {
    house.clock.Set(MakeDateTime(now));
    const std::string kept = Line(59) + Line(1) + Line(0);
    EXPECT_EQ(Aged(Line(400) + Line(61) + Line(60) + kept), kept) << now.hour;
  }
}

TEST_F(EventFileTest, DaysAreThoseOfTheCalendarAndNotHours) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 0, 0, 10}));
  const std::string late = "2024-03-03 23:59:59\tof 60 days ago\r\n";
  const std::string early = "2024-03-04 00:00:00\tof 59 days ago\r\n";
  EXPECT_EQ(Aged(late + early), early);
  house.clock.Set(MakeDateTime({2024, 5, 2, 23, 59, 50}));
  EXPECT_EQ(Aged(late + early), early);
}

TEST_F(EventFileTest, LinesOfTheFutureStay) {
  const std::string lines = Line(-1) + Line(-4000);
  EXPECT_EQ(Aged(lines), lines);
}

TEST_F(EventFileTest, EveryLineIsJudgedByItself) {
  EXPECT_EQ(Aged(Line(3, "a") + Line(99, "b") + Line(2, "c") + Line(99, "d") + Line(1, "e")),
            Line(3, "a") + Line(2, "c") + Line(1, "e"));
}

TEST_F(EventFileTest, LinesOfTenCharactersAndFewerAreDropped) {
  struct Case {
    std::string line;
    bool stays;
  };
  const Case cases[] = {
      {"", false},           {" ", false},          {"abc", false},        {"no date 10", false},
      {"2024-05-02", false}, {"2024-05-02 ", true}, {"2024-05-02x", true}, {"2024-05-021", true},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Aged(Line(1) + row.line + "\r\n" + Line(0)),
              Line(1) + (row.stays ? row.line + "\r\n" : "") + Line(0))
        << row.line;
  }
  EXPECT_EQ(house.clock.slept().count(), 0);
}

TEST_F(EventFileTest, SuccessLeavesTheEventFileAlone) {
  Aged(Line(99) + Line(0));
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(EventFileTest, FileOfOldLinesOnlyAndEmptyFileAreEmptyAfterwards) {
  for (const std::string& bytes : {std::string(), Line(60), std::string("\r\n\r\n")}) {
    EXPECT_EQ(Aged(bytes), "");
    EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
  }
}

TEST_F(EventFileTest, MissingFileIsNoFailure) {
  Age();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
  EXPECT_EQ(house.clock.slept().count(), 0);
}

TEST_F(EventFileTest, MissingFileBesideALeftOverStaysMissing) {
  house.installation.Write("Debug/AppEventWeb.bak", Line(99));
  Age();
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.bak"});
  EXPECT_EQ(OldFile(), Line(99));
}

TEST_F(EventFileTest, LineWithoutADateEndsTheRun) {
  for (const std::string line :
       {"no date at all", "2024-02-30 10:00:00\ttext", "2024-13-01 10:00:00\ttext",
        " 2024-05-02 10:00:00\ttext", "2024-05-0x 10:00:00\ttext", "           "}) {
    std::filesystem::remove(house.installation.path() + "/Debug/AppEventWeb.bak");
    house.clock.Set(MakeDateTime({2024, 5, 2, 12, 0, 0}));
    const std::string before = Line(2, "a") + Line(99) + Line(1, "b");
    const std::string whole = before + line + "\r\n" + Line(0, "behind");
    Write(whole);
    Age();
    house.clock.Set(MakeDateTime({2024, 5, 2, 12, 0, 0}));
    ExpectFailedBehind(Line(2, "a") + Line(1, "b"));
    EXPECT_EQ(OldFile(), whole) << line;
    EXPECT_EQ(house.installation.List("Debug"), (Lines{"AppEventWeb.bak", "AppEventWeb.txt"}));
  }
}

TEST_F(EventFileTest, LeftOverFileKeepsTheNextRunsFromTheirWork) {
  house.installation.Write("Debug/AppEventWeb.bak", "left over");
  const std::string whole = Line(99) + Line(0);
  Write(whole);
  Age();
  ExpectFailedBehind(whole);
  Age();
  EXPECT_EQ(house.Events().size(), 4u);
  EXPECT_EQ(OldFile(), "left over");
  EXPECT_TRUE(EventFile().starts_with(whole));
}

TEST_F(EventFileTest, RunsWorkAgainOnceTheLeftOverIsGone) {
  Aged("a line without a date\r\n");
  std::filesystem::remove(house.installation.path() + "/Debug/AppEventWeb.bak");
  const std::string event = EventFile();
  EXPECT_EQ(Aged(event + Line(60)), event);
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(EventFileTest, FailureRaisesOneEventAndItsHalfSecond) {
  Aged("a line without a date\r\n");
  EXPECT_EQ(house.Events().size(), 1u);
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(500));
}

TEST_F(EventFileTest, LastLineWithoutALineEndCountsAndGetsOne) {
  EXPECT_EQ(Aged(Line(99) + "2024-05-01 10:00:00\ttext"), "2024-05-01 10:00:00\ttext\r\n");
  EXPECT_EQ(Aged("2024-01-01 10:00:00\ttext"), "");
}

TEST_F(EventFileTest, LineFeedAloneEndsALine) {
  EXPECT_EQ(Aged("2024-05-01 10:00:00\ta\n2024-01-01 10:00:00\tb\n\n2024-05-01 10:00:00\tc\n"),
            "2024-05-01 10:00:00\ta\r\n2024-05-01 10:00:00\tc\r\n");
}

TEST_F(EventFileTest, BytesOutsideAsciiAreKept) {
  std::string bytes;
  for (int byte = 0x80; byte <= 0xFF; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(Aged(Line(99, bytes) + Line(1, bytes)), Line(1, bytes));
}

TEST_F(EventFileTest, LongLinesAndManyLinesAreKept) {
  std::string whole;
  std::string kept;
  for (int i = 0; i < 10'000; ++i) {
    const std::string text = "event " + std::to_string(i);
    whole += Line(60 + i % 30, text) + Line(i % 60, text);
    kept += Line(i % 60, text);
  }
  const std::string longest = Line(5, std::string(1'000'000, 'x'));
  EXPECT_TRUE(Aged(whole + longest) == kept + longest);
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(EventFileTest, DiskWithoutRoomLosesNoLine) {
  std::string whole;
  for (int i = 0; i < 1000; ++i) whole += Line(1);
  Write(whole);
  {
    const FileSizeLimit disk(1000);
    Age();
  }
  EXPECT_TRUE(OldFile() == whole);
}

TEST_F(EventFileTest, FolderOfTheLeftOversNameIsInTheWayToo) {
  std::filesystem::create_directory(house.installation.path() + "/Debug/AppEventWeb.bak");
  Write(Line(99));
  Age();
  ExpectFailedBehind(Line(99));
}

}  // namespace
}  // namespace quillon
