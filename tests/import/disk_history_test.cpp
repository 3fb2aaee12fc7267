// The history of storages: what the copy of a day holds, which table it goes to, and what is
// taken out of the sums in time. Sums are in disk_sums_test.
#include "import/disk_history.h"

#include "import/disk_fixture.h"

namespace quillon {
namespace {

class DiskHistoryTest : public DiskImportTest {
 protected:
  // Copies into the table, and returns these columns of all its rows.
  Lines Copy(const std::string& columns = "*") {
    DiskStatsCopyToHist_(house.imports, kDay);
    return Table(columns);
  }
  Lines Table(const std::string& columns = "*") const {
    return History("SELECT " + columns + " FROM " + kDay + " ORDER BY rowid");
  }
  void EmptyBothSides() const {
    ReportsSql("DELETE FROM HostDiskInfo");
    HistorySql("DELETE FROM " + kDay);
  }
  std::string StorageDate(int row) const {
    return History("SELECT StorageDate FROM Disk_HistCtrl ORDER BY rowid")
        .at(static_cast<std::size_t>(row - 1));
  }
  // Stamps all control rows with that moment.
  void StampAll(const std::string& moment) const {
    HistorySql("UPDATE Disk_HistCtrl SET StorageDate = '" + moment + "'");
  }
};

TEST_F(DiskHistoryTest, CopyHoldsEachStorageOfTodayInStoredOrder) {
  AddStorage({{"StorDescr", "'D:'"}});
  AddStorage({{"RecNo", "7"},
              {"DevName", "'Mail'"},
              {"StorDescr", "'Physical'"},
              {"FreeRawM", "1000"},
              {"UsedRawM", "3000"},
              {"UsedProc", "75"},
              {"UsedProc14Trend", "1"},
              {"UsedProc30Trend", "-2"}});
  AddStorage();
  EXPECT_EQ(Copy(), (Lines{"900|Files|D:|30|100|40|60|40|77|88",
                           "7|Mail|Physical|10|4000|3000|1000|75|1|-2",
                           "900|Files|C:|30|100|40|60|40|77|88"}));
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, ClassComesFromTheName) {
  struct Case {
    std::string storDescr;
    std::string type;
  };
  const Case cases[] = {
      {"'Physical'", "10"},  {"'Virtual'", "20"},
      {"'physical'", "40"},  {"'VIRTUAL'", "40"},
      {"'virtual'", "40"},   {"'Physical '", "40"},
      {"' Physical'", "40"}, {"'Physical Memory'", "40"},
      {"'Virtua'", "40"},    {"'C:'", "30"},
      {"'c:'", "30"},        {"'C:\\ Label:System  Serial Number 1234'", "30"},
      {"'/:'", "30"},        {"'::'", "30"},
      {"' :'", "30"},        {"'V:irtual'", "30"},
      {"'é:'", "30"},  // characters count, not bytes
      {"'日:'", "30"},       {"':'", "40"},
      {"':C'", "40"},        {"'CD:'", "40"},
      {"'é'", "40"},         {"'éa:'", "40"},
      {"'/'", "40"},         {"'C'", "40"},
      {"'/home'", "40"},     {"''", "40"},
      {"NULL", "40"},
  };
  for (const Case& row : cases) {
    EmptyBothSides();
    AddStorage({{"StorDescr", row.storDescr}});
    EXPECT_EQ(Copy("Type"), Lines{row.type}) << row.storDescr;
  }
  ExpectNoEvent();
}

// 123456789 lies between the singles 123456784 and 123456792; 16777217 is the first whole number
// that no single holds, and its tie goes to 16777216.
TEST_F(DiskHistoryTest, SizesAreSinglesAndSoIsTheirSum) {
  struct Case {
    std::string freeRawM;
    std::string usedRawM;
    std::string sizes;  // total, used, free
  };
  const Case cases[] = {
      {"0.1", "0.2", "0.300000011920929|0.200000002980232|0.100000001490116"},
      {"0.25", "0.5", "0.75|0.5|0.25"},
      {"123456789", "1", "123456792|1|123456792"},
      {"16777216", "1", "16777216|1|16777216"},
      {"16777217", "1", "16777216|1|16777216"},
      {"1", "16777219", "16777220|16777220|1"},
      {"1234567.891", "0", "1234567.875|0|1234567.875"},
      {"'60'", "'40'", "100|40|60"},
      {"0", "1", "1|1|0"},
      {"1", "0", "1|0|1"},
      {"-1", "3", "2|3|-1"},
      {"3", "-1", "2|-1|3"},
      {"0.001", "0", "0.00100000004749745|0|0.00100000004749745"},
  };
  for (const Case& row : cases) {
    EmptyBothSides();
    AddStorage({{"FreeRawM", row.freeRawM}, {"UsedRawM", row.usedRawM}});
    EXPECT_EQ(Copy("TotalM, UsedM, FreeM"), Lines{row.sizes})
        << row.freeRawM << " and " << row.usedRawM;
  }
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, StorageWithoutASizeIsLeftOut) {
  struct Case {
    std::string freeRawM;
    std::string usedRawM;
  };
  const Case cases[] = {{"0", "0"},
                        {"0.0", "0"},
                        {"-1", "1"},
                        {"1", "-1"},
                        {"-1", "0"},
                        {"0", "-1"},
                        {"3", "-4"},
                        {"-0.5", "0.25"},
                        {"0.1", "-0.1"},
                        {"-1", "-1"},
                        {"16777217", "-16777216"}};  // nothing is left as singles
  AddStorage({{"RecNo", "1"}});
  for (const Case& row : cases) {
    AddStorage({{"RecNo", "2"}, {"FreeRawM", row.freeRawM}, {"UsedRawM", row.usedRawM}});
  }
  AddStorage({{"RecNo", "3"}});
  EXPECT_EQ(Copy("RecNo, TotalM"), (Lines{"1|100", "3|100"}));
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, OtherFieldsGoOverUnchanged) {
  struct Case {
    std::string source;
    std::string column;
    std::string value;
    std::string copied;
  };
  const Case cases[] = {
      {"UsedProc", "UsedProc", "40.123456789", "40.123456789"},
      {"UsedProc", "UsedProc", "-1", "-1"},
      {"UsedProc", "UsedProc", "NULL", "NULL"},
      {"UsedProc14Trend", "Trend14d", "-3.75", "-3.75"},
      {"UsedProc14Trend", "Trend14d", "NULL", "NULL"},
      {"UsedProc30Trend", "Trend30d", "100000", "100000"},
      {"UsedProc30Trend", "Trend30d", "NULL", "NULL"},
      {"DevName", "DevName", "'Zürich Ω'", "Zürich Ω"},
      {"DevName", "DevName", "'it''s \"it\"'", "it's \"it\""},
      {"DevName", "DevName", "NULL", "NULL"},
      {"StorDescr", "StorDescr", "' /srv/日本 '", " /srv/日本 "},
      {"StorDescr", "StorDescr", "NULL", "NULL"},
      {"RecNo", "RecNo", "2147483647", "2147483647"},
      {"RecNo", "RecNo", "-5", "-5"},
  };
  for (const Case& row : cases) {
    EmptyBothSides();
    AddStorage({{row.source, row.value}});
    EXPECT_EQ(Copy(row.column), Lines{row.copied}) << row.source << " " << row.value;
  }
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, OnlyRowsOfTodayAreCopied) {
  AddStorage({{"RecNo", "1"}, {"LastUpdate", "'2024-05-02 00:00:00'"}});
  AddStorage({{"RecNo", "2"}, {"LastUpdate", "'2024-05-02 23:59:59'"}});
  AddStorage({{"RecNo", "3"}, {"LastUpdate", "'2024-05-01 23:59:59'"}});
  AddStorage({{"RecNo", "4"}, {"LastUpdate", "'2024-05-03 00:00:00'"}});
  AddStorage({{"RecNo", "5"}, {"LastUpdate", "'2023-05-02 03:10:00'"}});
  AddStorage({{"RecNo", "6"}, {"LastUpdate", "NULL"}});
  EXPECT_EQ(Copy("RecNo"), (Lines{"1", "2"}));
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, OverriddenReportDateIsTheDayOfTheCopy) {
  AddStorage({{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}, {"LastUpdate", "'2014-11-07 03:10:00'"}});
  OverrideReportDate("2014-11-07");
  EXPECT_EQ(Copy("RecNo"), Lines{"2"});
}

TEST_F(DiskHistoryTest, CopyGoesBehindWhatTheTableHolds) {
  AddDayRow(kDay, {{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}});
  EXPECT_EQ(Copy("RecNo"), (Lines{"1", "2"}));
}

TEST_F(DiskHistoryTest, CopyPausesAfterMoreThanAHundredRows) {
  struct Case {
    int storages;
    int pausedMs;
  };
  const Case cases[] = {{0, 0}, {1, 0}, {100, 0}, {101, 10}, {201, 10}, {202, 20}, {303, 30}};
  for (const Case& row : cases) {
    EmptyBothSides();
    AddStorages(row.storages, 1);
    const std::int64_t before = SleptMs();
    EXPECT_EQ(Copy("RecNo").size(), static_cast<std::size_t>(row.storages));
    EXPECT_EQ(SleptMs() - before, row.pausedMs) << row.storages;
  }
}

TEST_F(DiskHistoryTest, StoragesLeftOutCountForThePause) {
  AddStorages(60, 0);
  AddStorages(40, 1);
  Copy();
  EXPECT_EQ(SleptMs(), 0);
  AddStorages(1, 0);
  HistorySql("DELETE FROM " + kDay);
  EXPECT_EQ(Copy("RecNo").size(), 40u);
  EXPECT_EQ(SleptMs(), 10);
}

TEST_F(DiskHistoryTest, StoragesOfAnotherDayDoNotCountForThePause) {
  AddStorages(300, 1);
  ReportsSql("UPDATE HostDiskInfo SET LastUpdate = '2024-05-01 03:10:00' WHERE RecNo > 100");
  EXPECT_EQ(Copy("RecNo").size(), 100u);
  EXPECT_EQ(SleptMs(), 0);
}

TEST_F(DiskHistoryTest, RowsBeforeAPauseStandInTheTableAndNothingIsLocked) {
  AddStorages(150, 1);
  VisitNextWait("SELECT count(*), max(RecNo) FROM " + kDay);
  EXPECT_EQ(Copy("count(*)"), Lines{"150"});
  EXPECT_EQ(seenInWait, Lines{"101|101"});
  EXPECT_TRUE(OtherProgramWrote());
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, NullSizeEndsTheCopyAndKeepsTheRowsBefore) {
  for (const std::string column : {"FreeRawM", "UsedRawM"}) {
    EmptyBothSides();
    house.ForgetEvents();
    AddStorage({{"RecNo", "1"}});
    AddStorage({{"RecNo", "2"}, {column, "NULL"}});
    AddStorage({{"RecNo", "3"}});
    AddStorage({{"RecNo", "4"}, {column, "NULL"}});
    EXPECT_EQ(Copy("RecNo"), Lines{"1"}) << column;
    EXPECT_EQ(house.Events(), Lines{"1\tmodImport_DiskStatsCopyToHist_" + kDay + "\tfield " +
                                    column + " holds null and not a number"});
  }
}

TEST_F(DiskHistoryTest, NullSizeFailsAlsoBesideASizeOfNothing) {
  AddStorage({{"FreeRawM", "0"}, {"UsedRawM", "NULL"}});
  EXPECT_EQ(Copy("RecNo"), Lines{});
  ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay, "field UsedRawM holds null");
}

TEST_F(DiskHistoryTest, SizeThatIsNoNumberEndsTheCopy) {
  AddStorage({{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}, {"FreeRawM", "'much'"}});
  EXPECT_EQ(Copy("RecNo"), Lines{"1"});
  ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay,
                "field FreeRawM holds \"much\" and not a number");
}

TEST_F(DiskHistoryTest, SizeOrTotalBeyondASingleEndsTheCopy) {
  struct Case {
    std::string freeRawM;
    std::string usedRawM;
  };
  const Case cases[] = {{"1e39", "0"}, {"0", "1e39"}, {"3e38", "3e38"}};
  for (const Case& row : cases) {
    EmptyBothSides();
    house.ForgetEvents();
    AddStorage({{"RecNo", "1"}, {"FreeRawM", "3e38"}});
    AddStorage({{"RecNo", "2"}, {"FreeRawM", row.freeRawM}, {"UsedRawM", row.usedRawM}});
    EXPECT_EQ(Copy("RecNo"), Lines{"1"}) << row.freeRawM;
    ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay, "");
  }
}

TEST_F(DiskHistoryTest, NullSizeOfAnotherDayIsNotReached) {
  AddStorage({{"FreeRawM", "NULL"}, {"LastUpdate", "'2024-05-01 03:10:00'"}});
  AddStorage({{"RecNo", "2"}});
  EXPECT_EQ(Copy("RecNo"), Lines{"2"});
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, NothingIsLockedWhileAFailureIsReported) {
  AddStorage({{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}, {"FreeRawM", "NULL"}});
  VisitNextWait("SELECT RecNo FROM " + kDay);
  Copy();
  EXPECT_EQ(seenInWait, Lines{"1"});
  EXPECT_TRUE(OtherProgramWrote());
  EXPECT_EQ(SleptMs(), 500);
}

TEST_F(DiskHistoryTest, MissingTableIsReportedUnderTheNameOfTheCopyAndItsTable) {
  ReportsSql("DROP TABLE HostDiskInfo");
  Copy();
  EXPECT_EQ(house.Events(), Lines{"1\tmodImport_DiskStatsCopyToHist_" + kDay +
                                  "\tReports.mdb: no such table: HostDiskInfo"});
  house.ForgetEvents();
  DiskStatsCopyToHist_(house.imports, "Disk_Day99");
  EXPECT_EQ(house.Events(), Lines{"1\tmodImport_DiskStatsCopyToHist_Disk_Day99\t"
                                  "History.mdb: no such table: Disk_Day99"});
}

TEST_F(DiskHistoryTest, MissingDatabaseIsReported) {
  house.installation.Remove("Reports.mdb");
  Copy();
  ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay, "Reports.mdb");
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_F(DiskHistoryTest, FirstFreeTableIsEmptiedFilledAndStamped) {
  StampDisk(1, "2024-05-01 13:00:00");
  StampDisk(2, "2024-03-18 13:00:00");  // 45 days
  StampDisk(3, "2024-03-17 13:00:00");  // 46 days
  const Lines rows = History("SELECT * FROM Disk_HistCtrl WHERE HistTable <> 'Disk_Day03'");
  const Lines switches = History("SELECT * FROM VLAN_HistCtrl");
  for (const std::string table : {"Disk_Day02", "Disk_Day03", "Disk_Day04"}) {
    AddDayRow(table, {{"RecNo", "1"}});
  }
  AddStorage({{"RecNo", "2"}});
  DiskStatsToHist(house.imports);
  EXPECT_EQ(History("SELECT RecNo FROM Disk_Day03"), Lines{"2"});
  EXPECT_EQ(StorageDate(3), "2024-05-01 13:00:00");
  EXPECT_EQ(History("SELECT * FROM Disk_HistCtrl WHERE HistTable <> 'Disk_Day03'"), rows);
  EXPECT_EQ(History("SELECT RecNo FROM Disk_Day02"), Lines{"1"});
  EXPECT_EQ(History("SELECT RecNo FROM Disk_Day04"), Lines{"1"});
  EXPECT_EQ(History("SELECT * FROM VLAN_HistCtrl"), switches);
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, StampIsThePresentLess23Hours) {
  struct Case {
    DateTimeParts now;
    std::string stamp;
  };
  const Case cases[] = {
      {{2024, 5, 2, 0, 30, 15}, "2024-05-01 01:30:15"},
      {{2024, 5, 2, 22, 59, 0}, "2024-05-01 23:59:00"},
      {{2024, 5, 2, 23, 0, 0}, "2024-05-02 00:00:00"},
      {{2024, 5, 2, 23, 30, 0}, "2024-05-02 00:30:00"},
      {{2024, 3, 1, 3, 0, 0}, "2024-02-29 04:00:00"},
  };
  for (const Case& row : cases) {
    StampAll("2000-01-01 00:00:00");
    house.clock.Set(MakeDateTime(row.now));
    DiskStatsToHist(house.imports);
    EXPECT_EQ(StorageDate(1), row.stamp);
    EXPECT_EQ(StorageDate(2), "2000-01-01 00:00:00") << row.stamp;
  }
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, DayWithoutStoragesStillEmptiesAndStampsItsTable) {
  AddDayRow(kDay);
  AddStorage({{"LastUpdate", "'2024-05-01 03:10:00'"}});
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Table(), Lines{});
  EXPECT_EQ(StorageDate(1), "2024-05-01 13:00:00");
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, WithoutAFreeTableTheDayStaysOutSilently) {
  StampAll("2024-03-18 00:00:00");
  AddDayRow(kDay, {{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}});
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Table("RecNo"), Lines{"1"});
  EXPECT_EQ(History("SELECT DISTINCT StorageDate FROM Disk_HistCtrl"),
            Lines{"2024-03-18 00:00:00"});
  EXPECT_EQ(SleptMs(), 0);
  ExpectNoEvent();
}

TEST_F(DiskHistoryTest, TableOfAFailedCopyIsStampedAllTheSame) {
  AddDayRow(kDay, {{"RecNo", "9"}});
  AddStorage({{"RecNo", "1"}});
  AddStorage({{"RecNo", "2"}, {"UsedRawM", "NULL"}});
  AddStorage({{"RecNo", "3"}});
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Table("RecNo"), Lines{"1"});
  EXPECT_EQ(StorageDate(1), "2024-05-01 13:00:00");
  EXPECT_EQ(StorageDate(2), "2000-01-01 00:00:00");
  ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay, "UsedRawM");
}

TEST_F(DiskHistoryTest, TableIsStampedAlsoWithoutASourceAndWhenItIsMissingItself) {
  ReportsSql("DROP TABLE HostDiskInfo");
  RenameInControl("Disk_Day02", "Disk_Day99");
  AddDayRow(kDay);
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Table(), Lines{});
  ExpectFailure("modImport_DiskStatsCopyToHist_" + kDay, "HostDiskInfo");
  EXPECT_EQ(StorageDate(1), "2024-05-01 13:00:00");
  house.ForgetEvents();
  DiskStatsToHist(house.imports);
  EXPECT_EQ(StorageDate(2), "2024-05-01 13:00:01");  // after the half seconds of three events
  EXPECT_EQ(StorageDate(3), "2000-01-01 00:00:00");
  EXPECT_EQ(house.Events(),
            (Lines{"1\tmodImport_ClearTable_Disk_Day99\tHistory.mdb: no such table: Disk_Day99",
                   "1\tmodImport_DiskStatsCopyToHist_Disk_Day99\t"
                   "History.mdb: no such table: Disk_Day99"}));
}

TEST_F(DiskHistoryTest, MissingRotationIsReported) {
  HistorySql("DROP TABLE Disk_HistCtrl");
  DiskStatsToHist(house.imports);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskStatsToHist\tHistory.mdb: no such table: Disk_HistCtrl"});
}

TEST_F(DiskHistoryTest, RotationFollowsTheOverriddenReportDate) {
  StampDisk(1, "2014-09-23 00:00:00");  // 45 days before
  StampDisk(2, "2014-09-22 23:59:59");  // 46 days before
  OverrideReportDate("2014-11-07");
  DiskStatsToHist(house.imports);
  EXPECT_EQ(StorageDate(1), "2014-09-23 00:00:00");
  EXPECT_EQ(StorageDate(2), "2014-11-06 01:00:00");
  ExpectNoEvent();
}

class DiskSumAgeTest : public DiskHistoryTest {
 protected:
  void AddSum(const std::string& storageDate) const {
    HistorySql(InsertRow("Disk_HistSum", {{"StorageDate", storageDate}, {"NumUnix", "1"}}));
  }
  // Clears, and returns the dates that are left.
  Lines Clear() {
    ClearDiskHistSum(house.imports);
    return History("SELECT StorageDate FROM Disk_HistSum ORDER BY rowid");
  }
};

TEST_F(DiskSumAgeTest, RowsOlderThan1200DaysGo) {
  for (const char* date :
       {"'2021-01-17 23:59:59'", "'2021-01-18 00:00:00'", "'2000-01-01 00:00:00'",
        "'2024-05-01 12:00:00'", "NULL", "'2021-01-17 00:00:00'", "'2034-05-01 12:00:00'"}) {
    AddSum(date);
  }
  EXPECT_EQ(Clear(),
            (Lines{"2021-01-18 00:00:00", "2024-05-01 12:00:00", "NULL", "2034-05-01 12:00:00"}));
  ExpectNoEvent();
}

TEST_F(DiskSumAgeTest, DaysCountAndNotHours) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 0, 0, 1}));
  AddSum("'2021-01-17 23:59:59'");
  EXPECT_EQ(Clear(), Lines{});
  house.clock.Set(MakeDateTime({2024, 5, 2, 23, 59, 59}));
  AddSum("'2021-01-18 00:00:00'");
  EXPECT_EQ(Clear(), Lines{"2021-01-18 00:00:00"});
}

TEST_F(DiskSumAgeTest, RealClockCountsAlsoUnderAnOverriddenReportDate) {
  for (const char* date : {"2014-11-07", "2034-11-07", "no date"}) {
    OverrideReportDate(date);
    HistorySql("DELETE FROM Disk_HistSum");
    AddSum("'2021-01-17 12:00:00'");
    AddSum("'2021-01-18 12:00:00'");
    EXPECT_EQ(Clear(), Lines{"2021-01-18 12:00:00"}) << date;
  }
  ExpectNoEvent();
}

TEST_F(DiskSumAgeTest, ManyOldRowsGoAndNothingIsLockedInThePauses) {
  std::string sums;
  for (int i = 0; i < 120; ++i) {
    for (const char* date : {"'2020-01-01 12:00:00'", "'2020-01-02 12:00:00'", "'2024-01-01'"}) {
      sums += InsertRow("Disk_HistSum", {{"StorageDate", date}});
    }
  }
  HistorySql("BEGIN;" + sums + "COMMIT;");
  VisitNextWait("SELECT 1");
  EXPECT_EQ(Clear(), Lines(120, "2024-01-01"));
  EXPECT_TRUE(OtherProgramWrote());
  ExpectNoEvent();
}

TEST_F(DiskSumAgeTest, SumsOfTheSwitchesStay) {
  HistorySql(InsertRow("VLAN_HistSum", {{"TrafficDate", "'2000-01-01 00:00:00'"}}));
  Clear();
  EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistSum"), Lines{"2000-01-01 00:00:00"});
}

TEST_F(DiskSumAgeTest, MissingTableIsReported) {
  HistorySql("DROP TABLE Disk_HistSum");
  ClearDiskHistSum(house.imports);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_ClearDiskHistSum\tHistory.mdb: no such table: Disk_HistSum"});
}

}  // namespace
}  // namespace quillon
