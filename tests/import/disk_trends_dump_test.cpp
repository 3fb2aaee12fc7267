// The debug dump of the trends, byte for byte.
#include <filesystem>

#include "import/disk_trends_fixture.h"

namespace quillon {
namespace {

class DiskTrendsDumpTest : public DiskTrendsTest {
 protected:
  DiskTrendsDumpTest() { house.settings.DebugMode = true; }

  std::string Dump() const { return house.installation.Read(kFile); }
  // The dump of a run, without those before it.
  std::string FreshDump() {
    house.installation.Remove(kFile);
    FixTrends();
    return Dump();
  }

  static std::string DumpText(int execMs, const std::string& day, const std::string& day14,
                              const std::string& day30, int updates14, int updates30) {
    return "Exec Time=" + std::to_string(execMs) + " ms\r\nTableDate=" + day +
           "\r\nTableDate14d=" + day14 + "\r\nTableDate30d=" + day30 +
           "\r\nSqlUpdates14d=" + std::to_string(updates14) +
           "\r\nSqlUpdates30d=" + std::to_string(updates30) + "\r\n\r\n";
  }

  static constexpr const char* kFile = "Debug/WebSqlFixTrend.txt";
};

TEST_F(DiskTrendsDumpTest, TellsWhatWasCompared) {
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "3"}});
  FixTrends();
  EXPECT_EQ(Dump(),
            "Exec Time=0 ms\r\n"
            "TableDate=2024-05-01\r\n"
            "TableDate14d=2024-04-17\r\n"
            "TableDate30d=2024-04-01\r\n"
            "SqlUpdates14d=3\r\n"
            "SqlUpdates30d=3\r\n"
            "\r\n");
  ExpectNoEvent();
}

TEST_F(DiskTrendsDumpTest, LeavesOutTheDateOfADayWithoutATable) {
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "40", "35", "20");
  ForgetDay(kRow14);
  EXPECT_EQ(FreshDump(), DumpText(0, "2024-05-01", "", "2024-04-01", 0, 2));
  ForgetDay(kRow30);
  EXPECT_EQ(FreshDump(), DumpText(0, "2024-05-01", "", "", 0, 0));
}

TEST_F(DiskTrendsDumpTest, OfAnEmptyDayCountsNothing) {
  house.settings.DatumFormat = "MM/DD/YYYY";  // days stand as they are compared
  FixTrends();
  EXPECT_EQ(Dump(), DumpText(0, "2024-05-01", "2024-04-17", "2024-04-01", 0, 0));
}

TEST_F(DiskTrendsDumpTest, OfAnImportAfter23NamesTheDaysThatItLookedFor) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 23, 30, 0}));
  StampDisk(kRow, "2024-05-02 00:30:00");
  StampDisk(kRow14, "2024-04-18 00:30:00");
  StampDisk(kRow30, "2024-04-02 00:30:00");
  FixTrends();
  EXPECT_EQ(Dump(), DumpText(0, "2024-05-02", "2024-04-18", "2024-04-02", 0, 0));
}

TEST_F(DiskTrendsDumpTest, TellsTheTimeWithItsPauses) {
  AddDayRows(kDay, 202);
  FixTrends();
  EXPECT_EQ(Dump(), DumpText(100, "2024-05-01", "2024-04-17", "2024-04-01", 202, 202));
}

TEST_F(DiskTrendsDumpTest, CountsFailedReadsAndTheTimeOfTheirEvents) {
  RenameInControl(kDay30, "Disk_Day99");
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "40", "35", "20");
  FixTrends();
  EXPECT_EQ(Dump(), DumpText(1000, "2024-05-01", "2024-04-17", "2024-04-01", 2, 2));
  ExpectFailedReads(2, "Disk_Day99");
}

TEST_F(DiskTrendsDumpTest, IsAppendedToTheOneBefore) {
  AddDisk("1", "40", "35", "20");
  FixTrends();
  AddDisk("2", "40", "35", "20");
  FixTrends();
  EXPECT_EQ(Dump(), DumpText(0, "2024-05-01", "2024-04-17", "2024-04-01", 1, 1) +
                        DumpText(0, "2024-05-01", "2024-04-17", "2024-04-01", 2, 2));
}

TEST_F(DiskTrendsDumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  AddDisk("1", "40", "35", "20");
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(DiskTrendsDumpTest, IsNotWrittenWithoutATableOfTheDay) {
  ForgetDay(kRow);
  FixTrends();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(DiskTrendsDumpTest, IsNotWrittenAfterAFailure) {
  AddDayRow(kDay, {{"UsedProc", "NULL"}});
  FixTrends();
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(DiskTrendsDumpTest, ThatCannotBeWrittenIsAFailureAfterTheTrends) {
  AddDisk("1", "40", "35", "20");
  std::filesystem::create_directory(house.installation.path() + "/" + kFile);
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
  ExpectFailure("modImport_DiskFixTrendValues", "WebSqlFixTrend.txt");
}

TEST_F(DiskTrendsDumpTest, MissingFolderDoesNotKeepTheTrendsFromBeingSet) {
  AddDisk("1", "40", "35", "20");
  house.installation.Remove("Debug");
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
  EXPECT_FALSE(house.installation.Exists("Debug"));
  EXPECT_EQ(SleptMs(), 0);
}

}  // namespace
}  // namespace quillon
