// The sums of a day over all storages: which table they are of, what is added up and counted,
// and when there is no row.
#include "import/disk_fixture.h"
#include "import/disk_history.h"

namespace quillon {
namespace {

class DiskSumsTest : public DiskImportTest {
 protected:
  DiskSumsTest() { StampDisk(1, "2024-05-01 13:00:00"); }

  // Adds up, and returns these columns of all rows of sums.
  Lines Sum(const std::string& columns = "*") {
    DiskStatsSum(house.imports);
    return History("SELECT " + columns + " FROM Disk_HistSum ORDER BY rowid");
  }
  // The same for a day of which there is no row of sums yet.
  Lines SumAnew(const std::string& columns = "*") {
    HistorySql("DELETE FROM Disk_HistSum");
    return Sum(columns);
  }
  void AddSizes(const std::string& type, const std::string& totalM,
                const std::string& usedM) const {
    AddDayRow(kDay, {{"Type", type}, {"TotalM", totalM}, {"UsedM", usedM}});
  }
};

TEST_F(DiskSumsTest, EachClassHasItsOwnSumsAndCount) {
  AddSizes("30", "100", "40");
  AddSizes("10", "7", "3");
  AddSizes("40", "1000", "500");
  AddSizes("20", "20", "11");
  AddSizes("40", "2000", "600");
  AddSizes("30", "200", "2");
  AddSizes("40", "3000", "700");
  AddSizes("20", "21", "12");
  AddSizes("20", "22", "13");
  AddSizes("20", "23", "14");
  EXPECT_EQ(Sum("StorageDate, TotalMWindows, UsedMWindows, TotalMUnix, UsedMUnix,"
                " TotalMPhysical, UsedMPhysical, TotalMVirtual, UsedMVirtual,"
                " NumWindows, NumUnix, NumPhysical, NumVirtual"),
            Lines{"2024-05-01 12:00:00|300|42|6000|1800|7|3|86|50|2|3|1|4"});
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, EmptyDayHasARowOfZeros) {
  EXPECT_EQ(Sum(), Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|0|0|0|0|0"});
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, DayOnWhichNoServerReportedHasARowOfZeros) {
  StampDisk(1, "2000-01-01 00:00:00");
  AddDayRow(kDay);
  AddStorage({{"LastUpdate", "'2024-05-01 03:10:00'"}});
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Sum(), Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|0|0|0|0|0"});
}

TEST_F(DiskSumsTest, SumsAreOfTheDaysCopy) {
  StampDisk(1, "2000-01-01 00:00:00");
  AddStorage({{"FreeRawM", "0.1"}, {"UsedRawM", "0.2"}});
  AddStorage({{"StorDescr", "'Physical'"}});
  AddStorage({{"StorDescr", "'/'"}, {"FreeRawM", "0"}, {"UsedRawM", "0"}});
  AddStorage({{"StorDescr", "'/tmp'"}, {"LastUpdate", "'2024-05-01 03:10:00'"}});
  DiskStatsToHist(house.imports);
  ReportsSql("DELETE FROM HostDiskInfo");
  EXPECT_EQ(Sum(), Lines{"2024-05-01 12:00:00|0.300000011920929|0.200000002980232|0|0|100|40|0|0"
                         "|1|0|1|0"});
}

TEST_F(DiskSumsTest, EachSumOfADayIsARowOfItsOwn) {
  Sum();
  house.clock.Advance(std::chrono::hours(1));
  EXPECT_EQ(Sum("StorageDate"), (Lines{"2024-05-01 12:00:00", "2024-05-01 13:00:00"}));
}

TEST_F(DiskSumsTest, OtherTypesArePassedOver) {
  for (const char* type :
       {"0", "1", "11", "-30", "50", "300", "40000", "30.5", "'x'", "''", "NULL"}) {
    AddDayRow(kDay, {{"Type", type}, {"TotalM", "NULL"}, {"UsedM", "NULL"}});
  }
  AddSizes("30", "5", "4");
  EXPECT_EQ(Sum(), Lines{"2024-05-01 12:00:00|5|4|0|0|0|0|0|0|1|0|0|0"});
  ExpectNoEvent();
}

// A single holds 24 bits: 2^24 + 1 is a tie that goes to 2^24, and 0.1 ten times is a bit above 1.
TEST_F(DiskSumsTest, SumsAreSinglesAtEachStep) {
  struct Case {
    Lines sizes;
    std::string sum;
  };
  const Case cases[] = {
      {{"16777216", "1", "1"}, "16777216"},
      {{"1", "1", "16777216"}, "16777218"},
      {{"16777216", "3"}, "16777220"},
      {{"16777217"}, "16777216"},
      {{"0.1", "0.1", "0.1", "0.1", "0.1", "0.1", "0.1", "0.1", "0.1", "0.1"}, "1.00000011920929"},
      {{"0.1", "0.2"}, "0.300000011920929"},
      {{"99999999"}, "100000000"},
      {{"123456789", "123456789"}, "246913584"},  // 123456792 twice
      {{"50", "-70"}, "-20"},
  };
  struct Class {
    std::string type;
    std::string name;
  };
  const Class classes[] = {
      {"10", "Physical"}, {"20", "Virtual"}, {"30", "Windows"}, {"40", "Unix"}};
  for (const Case& row : cases) {
    for (const Class& each : classes) {
      HistorySql("DELETE FROM " + kDay);
      for (const std::string& size : row.sizes) AddSizes(each.type, size, size);
      EXPECT_EQ(SumAnew("TotalM" + each.name + ", UsedM" + each.name),
                Lines{row.sum + "|" + row.sum})
          << each.name;
    }
  }
}

TEST_F(DiskSumsTest, DayIsThatOf23HoursBeforeAndItsRowThatOf24Hours) {
  struct Case {
    DateTimeParts now;
    std::string storageDate;  // of the control row
    Lines sums;
  };
  const Case cases[] = {
      {{2024, 5, 2, 12}, "2024-05-01 00:00:00", {"2024-05-01 12:00:00"}},
      {{2024, 5, 2, 12}, "2024-05-01 23:59:59", {"2024-05-01 12:00:00"}},
      {{2024, 5, 2, 12}, "2024-04-30 23:59:59", {}},
      {{2024, 5, 2, 12}, "2024-05-02 00:00:00", {}},
      {{2024, 5, 2, 12}, "2023-05-01 13:00:00", {}},
      {{2024, 5, 2, 0, 0, 0}, "2024-05-01 13:00:00", {"2024-05-01 00:00:00"}},
      {{2024, 5, 2, 22, 59, 59}, "2024-05-01 13:00:00", {"2024-05-01 22:59:59"}},
      {{2024, 5, 2, 22, 59, 59}, "2024-05-02 13:00:00", {}},
      {{2024, 5, 2, 23, 0, 0}, "2024-05-01 13:00:00", {}},
      {{2024, 5, 2, 23, 0, 0}, "2024-05-02 13:00:00", {"2024-05-01 23:00:00"}},
      {{2024, 3, 1, 12}, "2024-02-29 13:00:00", {"2024-02-29 12:00:00"}},
      {{2024, 5, 2, 12}, "2014-11-07 13:00:00", {}},
  };
  for (const Case& row : cases) {
    house.clock.Set(MakeDateTime(row.now));
    StampDisk(1, row.storageDate);
    EXPECT_EQ(SumAnew("StorageDate"), row.sums) << row.storageDate;
  }
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, OverriddenReportDateIsTheDay) {
  OverrideReportDate("2014-11-07");
  EXPECT_EQ(Sum(), Lines{});
  StampDisk(7, "2014-11-06 13:00:00");
  AddDayRow("Disk_Day07");
  EXPECT_EQ(Sum("StorageDate, NumWindows"), Lines{"2014-11-06 00:00:00|1"});
}

TEST_F(DiskSumsTest, WithoutTheDaysTableThereIsNoRow) {
  StampDisk(1, "2000-01-01 00:00:00");
  AddDayRow(kDay);
  EXPECT_EQ(Sum(), Lines{});
  HistorySql("UPDATE Disk_HistCtrl SET StorageDate = NULL");
  EXPECT_EQ(Sum(), Lines{});
  HistorySql("DELETE FROM Disk_HistCtrl");
  EXPECT_EQ(Sum(), Lines{});
  EXPECT_EQ(SleptMs(), 0);
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, FirstOfTwoTablesOfTheDayCounts) {
  HistorySql("UPDATE Disk_HistCtrl SET StorageDate = NULL");
  StampDisk(3, "2024-05-01 20:00:00");
  StampDisk(5, "2024-05-01 13:00:00");
  AddSizes("30", "1", "1");
  AddDayRow("Disk_Day03", {{"TotalM", "3"}});
  AddDayRow("Disk_Day05", {{"TotalM", "5"}});
  EXPECT_EQ(Sum("TotalMWindows, NumWindows"), Lines{"3|1"});
}

TEST_F(DiskSumsTest, ControlRowsBehindTheDayAreNotRead) {
  HistorySql("UPDATE Disk_HistCtrl SET HistTable = NULL WHERE HistTable > 'Disk_Day01'");
  StampDisk(2, "2024-05-01 13:00:00");
  EXPECT_EQ(Sum("NumWindows"), Lines{"0"});
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, PausesAfterMoreThanAHundredRowsOfAnyType) {
  struct Case {
    int disks;
    int others;
    int pausedMs;
  };
  const Case cases[] = {{0, 0, 0},    {100, 0, 0},  {101, 0, 10}, {40, 60, 0},
                        {40, 61, 10}, {201, 0, 10}, {202, 0, 20}, {2, 200, 20}};
  for (const Case& row : cases) {
    HistorySql("DELETE FROM " + kDay);
    AddDayRows(kDay, row.disks);
    AddDayRows(kDay, row.others, 50);
    const std::int64_t before = SleptMs();
    EXPECT_EQ(SumAnew("NumWindows"), Lines{std::to_string(row.disks)});
    EXPECT_EQ(SleptMs() - before, row.pausedMs) << row.disks << " and " << row.others;
  }
}

TEST_F(DiskSumsTest, NothingIsLockedInAPauseAndTheRowComesAtTheEnd) {
  AddDayRows(kDay, 150);
  VisitNextWait("SELECT count(*) FROM Disk_HistSum");
  EXPECT_EQ(Sum("TotalMWindows, UsedMWindows, NumWindows"), Lines{"300|150|150"});
  EXPECT_EQ(seenInWait, Lines{"0"});
  EXPECT_TRUE(OtherProgramWrote());
}

TEST_F(DiskSumsTest, CountsReachTheLargest16BitNumber) {
  AddDayRows(kDay, 32767, 10);
  AddDayRows(kDay, 32767, 40);
  EXPECT_EQ(Sum("NumPhysical, NumUnix, TotalMPhysical, UsedMUnix"),
            Lines{"32767|32767|65534|32767"});
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, CountBeyond16BitsIsAFailureAndThereIsNoRow) {
  for (const int type : {10, 20, 30, 40}) {
    HistorySql("DELETE FROM " + kDay);
    house.ForgetEvents();
    AddDayRows(kDay, 32768, type);
    EXPECT_EQ(Sum(), Lines{}) << type;
    ExpectFailure("modImport_DiskStatsSum", "number out of range: 32768");
  }
}

TEST_F(DiskSumsTest, RowsOfOtherTypesHaveNoCountThatEnds) {
  AddDayRows(kDay, 40000, 50);
  AddSizes("30", "5", "4");
  EXPECT_EQ(Sum("TotalMWindows, NumWindows"), Lines{"5|1"});
  ExpectNoEvent();
}

TEST_F(DiskSumsTest, NullInASizeIsAFailureAndThereIsNoRow) {
  for (const std::string column : {"TotalM", "UsedM"}) {
    HistorySql("DELETE FROM " + kDay);
    house.ForgetEvents();
    AddDayRow(kDay);
    AddDayRow(kDay, {{column, "NULL"}});
    EXPECT_EQ(Sum(), Lines{}) << column;
    EXPECT_EQ(house.Events(),
              Lines{"1\tmodImport_DiskStatsSum\tfield " + column + " holds null and not a number"});
  }
}

TEST_F(DiskSumsTest, SumBeyondASingleIsAFailureAndThereIsNoRow) {
  AddSizes("40", "3e38", "1");
  EXPECT_EQ(SumAnew("UsedMUnix"), Lines{"1"});
  AddSizes("40", "3e38", "1");
  EXPECT_EQ(SumAnew(), Lines{});
  ExpectFailure("modImport_DiskStatsSum", "sum of TotalMUnix: number out of range");
}

TEST_F(DiskSumsTest, NothingIsLockedWhileAFailureIsReported) {
  AddDayRow(kDay, {{"TotalM", "NULL"}});
  VisitNextWait("SELECT count(*) FROM " + kDay);
  Sum();
  EXPECT_EQ(seenInWait, Lines{"1"});
  EXPECT_TRUE(OtherProgramWrote());
}

TEST_F(DiskSumsTest, MissingTableIsReportedAndThereIsNoRow) {
  RenameInControl(kDay, "Disk_Day99");
  EXPECT_EQ(Sum(), Lines{});
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskStatsSum\tHistory.mdb: no such table: Disk_Day99"});
  house.ForgetEvents();
  HistorySql("DROP TABLE Disk_HistCtrl");
  EXPECT_EQ(Sum(), Lines{});
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskStatsSum\tHistory.mdb: no such table: Disk_HistCtrl"});
}

TEST_F(DiskSumsTest, MissingTableOfTheSumsIsReported) {
  HistorySql("DROP TABLE Disk_HistSum");
  DiskStatsSum(house.imports);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskStatsSum\tHistory.mdb: no such table: Disk_HistSum"});
}

}  // namespace
}  // namespace quillon
