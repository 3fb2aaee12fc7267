// The ten first disks of a class: of which day, which disks, in which order, under which heads. The
// texts of the columns are in disk_values_test, failures in disk_failure_test, the dumps in
// disk_dump_test.
#include <algorithm>

#include "queries/disk_fixture.h"

namespace quillon {
namespace {

using DiskTop10Test = DiskTest;

// Both queries take the same day.
class DiskReportDayTest : public DiskTest {
 protected:
  DiskReportDayTest() { ClearControl(); }

  // The day table of that number holds the disks of that moment, an SQL literal: one of the device
  // of the same number.
  void AddDayOf(const std::string& moment, int number) const {
    const std::string table = DayTable("Disk_Day", number);
    History(InsertStorageControl(moment, "'" + table + "'"));
    AddStorage(table, {{"RecNo", std::to_string(number)}});
  }

  // Expects that both queries take the day table of that number, of none for 0.
  void ExpectDay(int number, const std::string& context) {
    for (const Query query : kBoth) {
      Run(query);
      EXPECT_EQ(RecNos(), number == 0 ? std::vector<int>{} : std::vector<int>{number})
          << Procedure(query) << " " << context;
    }
  }
};

TEST_F(DiskReportDayTest, IsYesterdayUntilElevenInTheEveningAndThenToday) {
  struct Case {
    std::string now;
    int number;
  };
  const Case cases[] = {
      {"2024-05-02 00:00:00", 1}, {"2024-05-02 12:00:00", 1}, {"2024-05-02 22:59:59", 1},
      {"2024-05-02 23:00:00", 2}, {"2024-05-02 23:59:59", 2}, {"2024-05-03 00:00:00", 2},
      {"2024-05-03 22:59:59", 2}, {"2024-03-01 10:00:00", 3}, {"2024-01-01 10:00:00", 4},
      {"2024-04-30 12:00:00", 0},
  };
  AddDayOf("'2023-12-31 03:10:00'", 4);
  AddDayOf("'2024-02-29 03:10:00'", 3);
  AddDayOf("'2024-05-02 03:10:00'", 2);
  AddDayOf("'2024-05-01 03:10:00'", 1);
  for (const Case& row : cases) {
    house.clock.Set(row.now);
    ExpectDay(row.number, row.now);
  }
  ExpectNoEvent();
}

TEST_F(DiskReportDayTest, IsComparedWithoutTheTime) {
  for (const std::string moment :
       {"'2024-05-01 00:00:00'", "'2024-05-01 23:59:59'", "'2024-05-01'"}) {
    ClearControl();
    History("DELETE FROM Disk_Day07");
    AddDayOf(moment, 7);
    ExpectDay(7, moment);
  }
  ExpectNoEvent();
}

TEST_F(DiskReportDayTest, FirstOfItsControlRowsInStoredOrderWins) {
  AddDayOf("'2024-04-30 23:59:59'", 9);
  AddDayOf("'2024-05-01 12:00:00'", 5);
  AddDayOf("'2024-05-01 03:00:00'", 2);
  AddDayOf("'2024-05-01 21:00:00'", 8);
  ExpectDay(5, "of three");
  History("DELETE FROM Disk_HistCtrl WHERE HistTable = 'Disk_Day05'");
  ExpectDay(2, "of two");
}

TEST_F(DiskReportDayTest, IsNoneOfAControlRowWithoutADate) {
  AddDayOf("NULL", 3);
  AddDayOf("'soon'", 4);
  ExpectDay(0, "no date");
  AddDayOf("'2024-05-01 03:10:00'", 1);
  ExpectDay(1, "behind rows without a date");
  ExpectNoEvent();
}

TEST_F(DiskReportDayTest, IsNamedByTheMatchingRowAlone) {
  History(InsertStorageControl("'2024-04-30 03:10:00'", "NULL"));
  AddDayOf("'2024-05-01 03:10:00'", 1);
  History(InsertStorageControl("'2024-05-01 03:10:00'", "NULL"));
  ExpectDay(1, "between rows that name no table");
  ExpectNoEvent();
}

TEST_F(DiskReportDayTest, OfAnOverriddenDateIsTheOneBeforeIt) {
  AddDayOf("'2024-05-01 03:10:00'", 1);
  AddDayOf("'2014-11-07 03:10:00'", 7);
  AddDayOf("'2014-11-06 03:10:00'", 6);
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  ExpectDay(6, "2014-11-07 less 23 hours");
  house.settings.RepDateOverride = false;
  ExpectDay(1, "not overridden");
}

TEST_F(DiskReportDayTest, WithoutATableLeavesTheRecordAndWritesNoDump) {
  AddDayOf("'2024-05-01 03:10:00'", 1);
  house.clock.Set("2024-05-02 23:30:00");
  house.settings.DebugMode = true;
  FillRecord();
  for (const Query query : kBoth) {
    Run(query);
    ExpectRecordOfBefore();
  }
  ClearControl();
  for (const Query query : kBoth) {
    Run(query);
    ExpectRecordOfBefore();
  }
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(DiskTop10Test, HeadIsTheWordOfFieldAndDirection) {
  for (const DiskOrder& order : kDiskOrders) {
    EXPECT_EQ(Top10(order.column, "ASC").TableHead, order.headAscending) << order.column;
    EXPECT_EQ(Top10(order.column, "DESC").TableHead, order.headDescending) << order.column;
  }
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, ReportIsTheWordOfTheClass) {
  EXPECT_EQ(Top10("TotalM", "ASC", 10).TableReport, "W52");
  EXPECT_EQ(Top10("TotalM", "ASC", 20).TableReport, "W53");
  EXPECT_EQ(Top10("TotalM", "ASC", 30).TableReport, "W88");
  EXPECT_EQ(Top10("TotalM", "ASC", 40).TableReport, "W51");
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, UnknownClassKeepsTheReportOfBeforeAndListsItsDisks) {
  AddDisk({{"RecNo", "1"}});
  AddDisk({{"RecNo", "2"}, {"Type", "50"}});
  FillRecord();
  Top10("FreeM", "DESC", 50);
  EXPECT_EQ(Heads(), (Lines{"W59", kBefore, "1 (1)"}));
  EXPECT_EQ(RecNos(), std::vector<int>{2});
  for (const int diskType : {0, 31, -30, 32767}) {
    Top10("FreeM", "DESC", diskType);
    EXPECT_EQ(Heads(), (Lines{"W59", kBefore, "0 (0)"})) << diskType;
    EXPECT_EQ(RecNos(), std::vector<int>{}) << diskType;
  }
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, CriteriaTellsShownAndAllDisks) {
  struct Case {
    int disks;
    std::string criteria;
  };
  const Case cases[] = {{0, "0 (0)"},    {1, "1 (1)"},    {3, "3 (3)"},     {9, "9 (9)"},
                        {10, "10 (10)"}, {11, "10 (11)"}, {214, "10 (214)"}};
  for (const Case& row : cases) {
    ClearDisks();
    AddDisks(row.disks);
    EXPECT_EQ(Top10().TableCriteria, row.criteria) << row.disks << " disks";
    EXPECT_EQ(RecNos().size(), static_cast<std::size_t>(std::min(row.disks, 10))) << row.disks;
  }
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, RowsComeByTheFieldInItsDirection) {
  for (const DiskOrder& order : kDiskOrders) {
    ClearDisks();
    AddDisksOrderedBy(order.column);
    Top10(order.column, "ASC");
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 5, 2, 4, 3})) << order.column;
    Top10(order.column, "DESC");
    EXPECT_EQ(RecNos(), (std::vector<int>{3, 4, 2, 5, 1})) << order.column;
  }
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, TenFirstOfManyAreTaken) {
  AddDisks(30);
  History("UPDATE Disk_Day01 SET UsedProc = RecNo");
  Top10("UsedProc", "DESC");
  EXPECT_EQ(RecNos(), (std::vector<int>{30, 29, 28, 27, 26, 25, 24, 23, 22, 21}));
  Top10("UsedProc", "ASC");
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST_F(DiskTop10Test, EqualValuesKeepTheStoredOrder) {
  for (const char* recNo : {"5", "2", "9", "1", "7", "3"}) AddDisk({{"RecNo", recNo}});
  AddDisk({{"RecNo", "8"}, {"TotalM", "200"}});
  AddDisk({{"RecNo", "4"}, {"TotalM", "50"}});
  Top10("TotalM", "DESC");
  EXPECT_EQ(RecNos(), (std::vector<int>{8, 5, 2, 9, 1, 7, 3, 4}));
  Top10("TotalM", "ASC");
  EXPECT_EQ(RecNos(), (std::vector<int>{4, 5, 2, 9, 1, 7, 3, 8}));
}

TEST_F(DiskTop10Test, OnlyDisksOfTheClassAreListed) {
  int recNo = 0;
  for (const char* type : {"10", "20", "30", "40", "50", "0", "NULL", "30", "10", "3", "300"}) {
    AddDisk({{"RecNo", std::to_string(++recNo)}, {"Type", type}});
  }
  struct Case {
    int diskType;
    std::vector<int> recNos;
    std::string criteria;
  };
  const Case cases[] = {
      {10, {1, 9}, "2 (2)"}, {20, {2}, "1 (1)"}, {30, {3, 8}, "2 (2)"}, {40, {4}, "1 (1)"}};
  for (const Case& row : cases) {
    EXPECT_EQ(Top10("TotalM", "DESC", row.diskType).TableCriteria, row.criteria) << row.diskType;
    EXPECT_EQ(RecNos(), row.recNos) << row.diskType;
  }
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, NoDiskOfTheClassGivesAnEmptyTable) {
  AddDisk();
  FillRecord();
  Top10("Trend30d", "DESC", 40);
  EXPECT_EQ(Heads(), (Lines{"W67", "W51", "0 (0)"}));
  EXPECT_EQ(RecNos(), std::vector<int>{});
  EXPECT_EQ(Record().rows[1].device, kBefore);
  ExpectNoEvent();
}

TEST_F(DiskTop10Test, RowsThatAreNotFoundKeepTheirTexts) {
  AddDisk();
  FillRecord();
  Top10();
  EXPECT_EQ(RecNos(), std::vector<int>{900});
  EXPECT_EQ(Texts(Record().rows[1])[0], "Files");
  for (int n = 2; n <= 10; ++n) {
    EXPECT_EQ(Texts(Record().rows[n]), Lines(DiskColumnsInOrder().size(), kBefore)) << n;
  }
}

TEST_F(DiskTop10Test, OnlyTheSlotAskedForIsWritten) {
  AddDisk();
  for (const int slot : {1, 15, 20}) {
    EXPECT_EQ(Top10("TotalM", "ASC", 30, static_cast<ConnectionId>(slot)).rows[1].device, "Files")
        << slot;
  }
  for (const int slot : {2, 14, 16, 19}) {
    EXPECT_EQ(house.records.DiskTableRep[slot].TableCriteria, "") << slot;
    EXPECT_EQ(house.records.DiskTableRep[slot].rows[1].device, "") << slot;
  }
}

TEST_F(DiskTop10Test, RunsNoEventInside) {
  AddDisks(120);
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  for (const Query query : kBoth) Run(query);
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
