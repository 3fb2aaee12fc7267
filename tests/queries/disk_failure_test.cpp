// The ways in which the queries of disks fail, and what their record holds then.
#include "queries/disk_fixture.h"

namespace quillon {
namespace {

class DiskFailureTest : public DiskTest {
 protected:
  using ChartTest::ExpectFailure;
  void ExpectFailure(Query query, const std::string& words) const {
    ExpectFailure(Procedure(query), words);
  }

  // Two disks of which the second one has the value in the column, in an order that leaves them as
  // they are stored. Each case has its own events.
  void RunWithSecondDisk(Query query, const std::string& column, const std::string& value) {
    ClearDisks();
    house.ForgetEvents();
    FillRecord();
    AddDisk({{"RecNo", "1"}});
    AddDisk(With({{"RecNo", "2"}}, {{column, value}}));
    Run(query, kDiskOrders[column == "TotalM" ? 1 : 0]);
  }

  // Searches with patterns of its own and tells what became of them.
  Lines PatternsAfterSearch(const std::string& orderBy) {
    std::string devPattern;
    std::string diskPattern;
    SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, orderBy);
    return {devPattern, diskPattern};
  }

  // Expects that texts of a row are filled up to this column, and the others as before.
  void ExpectFilledUpTo(const DiskTableRow& row, const std::string& column) {
    bool filled = true;
    for (const DiskColumn& each : DiskColumnsInOrder()) {
      if (each.name == column) filled = false;
      EXPECT_EQ(row.*each.text != kBefore, filled) << each.name;
    }
  }

  const Lines kWholeRow = {"Files", "C:", "100 M", "60 M", "40 M", "40 %", "+77 %", "+88 %"};
  const Lines kRowOfBefore = Lines(8, kBefore);
};

TEST_F(DiskFailureTest, NullEndsTheFillAtItsColumn) {
  for (const DiskColumn& broken : DiskColumnsInOrder()) {
    SCOPED_TRACE(broken.name);
    RunWithSecondDisk(Query::kTop10, broken.name, "NULL");
    ExpectFailure(Query::kTop10, broken.name);
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2}));
    EXPECT_EQ(Texts(Record().rows[1]), kWholeRow);
    ExpectFilledUpTo(Record().rows[2], broken.name);
    EXPECT_EQ(Record().TableReport, "W88");
    EXPECT_EQ(Record().TableCriteria, "2 (2)");
  }
}

TEST_F(DiskFailureTest, NullEndsASearchAtItsColumnBeforeTheCount) {
  for (const DiskColumn& broken : DiskColumnsInOrder()) {
    SCOPED_TRACE(broken.name);
    RunWithSecondDisk(Query::kSearch, broken.name, "NULL");
    ExpectFailure(Query::kSearch, broken.name);
    EXPECT_EQ(Texts(Record().rows[1]), kWholeRow);
    EXPECT_EQ(Record().TableReport, "W55");
    EXPECT_EQ(Record().TableCriteria, kBefore);
    // A name is read before it is known whether the row is taken at all.
    if (broken.name == "DevName" || broken.name == "StorDescr") {
      EXPECT_EQ(RecNos(), std::vector<int>{1});
      EXPECT_EQ(Texts(Record().rows[2]), kRowOfBefore);
    } else {
      EXPECT_EQ(RecNos(), (std::vector<int>{1, 2}));
      ExpectFilledUpTo(Record().rows[2], broken.name);
    }
  }
}

TEST_F(DiskFailureTest, DeviceThatIsNoNumberLeavesItsRow) {
  for (const Query query : kBoth) {
    for (const std::string value : {"NULL", "'abc'", "2147483648"}) {
      SCOPED_TRACE(Procedure(query) + value);
      RunWithSecondDisk(query, "RecNo", value);
      ExpectFailure(query, "RecNo");
      EXPECT_EQ(RecNos(), std::vector<int>{1});
      EXPECT_EQ(Texts(Record().rows[1]), kWholeRow);
      EXPECT_EQ(Texts(Record().rows[2]), kRowOfBefore);
    }
  }
}

TEST_F(DiskFailureTest, DiskWithoutADeviceIsNotCounted) {
  RunWithSecondDisk(Query::kTop10, "RecNo", "NULL");
  EXPECT_EQ(Heads(), (Lines{"W56", "W88", "1 (1)"}));
}

TEST_F(DiskFailureTest, NullInTheSortedColumnComesAsTheSmallest) {
  for (const Query query : kBoth) {
    for (const DiskOrder& order : kDiskOrders) {
      SCOPED_TRACE(Procedure(query) + order.column);
      ClearDisks();
      AddDisk({{"RecNo", "1"}, {order.column, "-5"}});
      AddDisk({{"RecNo", "2"}, {order.column, "NULL"}});
      AddDisk({{"RecNo", "3"}});
      house.ForgetEvents();
      Run(query, order, "ASC");
      ExpectFailure(query, order.column);
      EXPECT_EQ(RecNos(), std::vector<int>{2});
      house.ForgetEvents();
      Run(query, order, "DESC");
      ExpectFailure(query, order.column);
      EXPECT_EQ(RecNos(), (std::vector<int>{3, 1, 2}));
    }
  }
}

TEST_F(DiskFailureTest, NullBehindTheTenthRowOfAListIsNotReached) {
  for (const DiskColumn& column : DiskColumnsInOrder()) {
    if (column.name == "UsedM") continue;
    ClearDisks();
    AddDisks(10);
    AddDisk(With({{"UsedM", "50"}}, {{column.name, "NULL"}}));
    EXPECT_EQ(Top10("UsedM", "ASC").TableCriteria, "10 (11)") << column.name;
    EXPECT_EQ(RecNos().size(), 10u) << column.name;
  }
  ExpectNoEvent();
}

TEST_F(DiskFailureTest, NullOfAnotherClassIsNotReached) {
  AddDisk();
  AddDisk({{"Type", "40"}, {"DevName", "NULL"}, {"StorDescr", "NULL"}, {"RecNo", "NULL"}});
  EXPECT_EQ(Top10().TableCriteria, "1 (1)");
  EXPECT_EQ(RecNos(), std::vector<int>{900});
  ExpectNoEvent();
}

TEST_F(DiskFailureTest, NullNameFailsASearchAlsoBehindTenRows) {
  for (const std::string column : {"DevName", "StorDescr"}) {
    SCOPED_TRACE(column);
    ClearDisks();
    house.ForgetEvents();
    FillRecord();
    AddDisks(12);
    AddDisk(With({{"UsedM", "50"}}, {{column, "NULL"}}));
    Search("usedbytes-asc");
    ExpectFailure(Query::kSearch, column);
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(Heads(), (Lines{"W60", "W55", kBefore}));
  }
}

TEST_F(DiskFailureTest, NullNameFailsASearchAlsoWhereTheOtherNameDoesNotMatch) {
  for (const std::string column : {"DevName", "StorDescr"}) {
    SCOPED_TRACE(column);
    ClearDisks();
    house.ForgetEvents();
    FillRecord();
    AddDisk(Columns{{column, "NULL"}});
    Search("usedbytes-asc", "nobody", "nothing");
    ExpectFailure(Query::kSearch, column);
    EXPECT_EQ(Heads(), (Lines{"W60", "W55", kBefore}));
  }
}

TEST_F(DiskFailureTest, NullFigureOfARowThatIsNotTakenIsNotRead) {
  const Columns nothing = {{"RecNo", "NULL"},    {"TotalM", "NULL"},   {"FreeM", "NULL"},
                           {"UsedProc", "NULL"}, {"Trend14d", "NULL"}, {"Trend30d", "NULL"},
                           {"Type", "NULL"}};
  AddDisks(10);
  AddDisk(With({{"UsedM", "50"}}, nothing));                              // the eleventh
  AddDisk(With({{"UsedM", "1"}, {"DevName", "'Unheard of'"}}, nothing));  // no match
  EXPECT_EQ(Search("usedbytes-asc", "files").TableCriteria, "10 (12)");
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  ExpectNoEvent();
}

TEST_F(DiskFailureTest, MissingDatabaseLeavesRecordAndPatterns) {
  house.installation.Remove("History.mdb");
  for (const Query query : kBoth) {
    house.ForgetEvents();
    FillRecord();
    Run(query);
    ExpectFailure(query, "History.mdb");
    ExpectRecordOfBefore();
  }
  EXPECT_EQ(PatternsAfterSearch("totalbytes-asc"), (Lines{"", ""}));
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(DiskFailureTest, MissingControlTableLeavesRecordAndPatterns) {
  History("DROP TABLE Disk_HistCtrl");
  for (const Query query : kBoth) {
    house.ForgetEvents();
    FillRecord();
    Run(query);
    EXPECT_EQ(Failures(Procedure(query)), Lines{"History.mdb: no such table: Disk_HistCtrl"});
    ExpectRecordOfBefore();
  }
  EXPECT_EQ(PatternsAfterSearch("totalbytes-asc"), (Lines{"", ""}));
}

TEST_F(DiskFailureTest, ControlRowThatNamesNoTableLeavesRecordAndPatterns) {
  History("UPDATE Disk_HistCtrl SET HistTable = NULL");
  for (const Query query : kBoth) {
    house.ForgetEvents();
    FillRecord();
    Run(query);
    ExpectFailure(query, "HistTable");
    ExpectRecordOfBefore();
  }
  EXPECT_EQ(PatternsAfterSearch("totalbytes-asc"), (Lines{"", ""}));
}

TEST_F(DiskFailureTest, MissingDayTableFailsUnderTheHeadsOfTheReport) {
  AddDisk();
  History("DROP TABLE Disk_Day01");
  FillRecord();
  Top10("FreeM", "DESC");
  EXPECT_EQ(Failures(kTop10Procedure), Lines{"History.mdb: no such table: Disk_Day01"});
  EXPECT_EQ(Heads(), (Lines{"W59", "W88", kBefore}));
  EXPECT_EQ(RecNos(), std::vector<int>{});
  house.ForgetEvents();
  FillRecord();
  Search("usedbytes-asc");
  EXPECT_EQ(Failures(kSearchProcedure), Lines{"History.mdb: no such table: Disk_Day01"});
  EXPECT_EQ(Heads(), (Lines{"W60", "W55", kBefore}));
  EXPECT_EQ(RecNos(), std::vector<int>{});
  EXPECT_EQ(PatternsAfterSearch("usedbytes-asc"), (Lines{"*", "*"}));
}

TEST_F(DiskFailureTest, NameThatIsNoTableFailsAndHarmsNothing) {
  AddDisk();
  for (const std::string histTable : {"", "Disk_Day77", "Disk_Day01; DELETE FROM Disk_Day01",
                                      "Disk_Day01 Disk_Day02 Disk_Day03", "O''Neil"}) {
    ClearControl();
    AddDiskDay(1, histTable);
    for (const Query query : kBoth) {
      SCOPED_TRACE(Procedure(query) + histTable);
      house.ForgetEvents();
      FillRecord();
      Run(query);
      ExpectFailure(query, "History.mdb");
      EXPECT_EQ(Record().TableHead, "W56");
      EXPECT_EQ(Record().TableCriteria, kBefore);
      EXPECT_EQ(RecNos(), std::vector<int>{});
    }
  }
  EXPECT_EQ(house.installation.Select("History.mdb", "SELECT RecNo FROM Disk_Day01"), Lines{"900"});
}

TEST_F(DiskFailureTest, NameOfTheTableGoesIntoTheListsSelectsAsItStands) {
  AddDisk();
  ClearControl();
  AddDiskDay(1, "[Disk_Day01]");
  EXPECT_EQ(Top10().TableCriteria, "1 (1)");
  EXPECT_EQ(RecNos(), std::vector<int>{900});
  ExpectNoEvent();
}

TEST_F(DiskFailureTest, OverriddenDateThatIsNoneFails) {
  AddDisk();
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "soon";
  for (const Query query : kBoth) {
    house.ForgetEvents();
    FillRecord();
    Run(query);
    ExpectFailure(query, "soon");
    ExpectRecordOfBefore();
  }
}

TEST_F(DiskFailureTest, UnknownFieldKeepsTheHeadAndFailsInTheSelect) {
  AddDisk();
  for (const std::string field : {"Colour", "totalbytes", "TotalM; DELETE FROM Disk_Day01"}) {
    SCOPED_TRACE(field);
    house.ForgetEvents();
    FillRecord();
    Top10(field, "ASC");
    ExpectFailure(Query::kTop10, "History.mdb");
    EXPECT_EQ(Heads(), (Lines{kBefore, "W88", "1 (1)"}));
    EXPECT_EQ(RecNos(), std::vector<int>{});
    EXPECT_EQ(Texts(Record().rows[1]), kRowOfBefore);
  }
  EXPECT_EQ(house.installation.Select("History.mdb", "SELECT RecNo FROM Disk_Day01"), Lines{"900"});
}

TEST_F(DiskFailureTest, UnknownSortOrderHasTheHeadOfTheOtherDirectionAndFails) {
  AddDisk();
  FillRecord();
  Top10("Trend14d", "SIDEWAYS");
  ExpectFailure(Query::kTop10, "History.mdb");
  EXPECT_EQ(Heads(), (Lines{"W65", "W88", "1 (1)"}));
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(DiskFailureTest, OrderWithoutAMinusFailsBeforeAnythingChanges) {
  AddDisk();
  for (const bool hasTable : {true, false}) {
    if (!hasTable) ClearControl();
    for (const std::string orderBy :
         {"", "totalbytes", "totalbytes asc", "totalbytes_asc", "asc"}) {
      SCOPED_TRACE(orderBy);
      house.ForgetEvents();
      FillRecord();
      Search(orderBy);
      ExpectFailure(Query::kSearch, "");
      ExpectRecordOfBefore();
      EXPECT_EQ(PatternsAfterSearch(orderBy), (Lines{"", ""}));
    }
  }
}

TEST_F(DiskFailureTest, UnknownWordOfAnOrderKeepsTheHeadAndFailsInTheSort) {
  AddDisk();
  for (const std::string orderBy : {"colour-asc", "colour-desc", "-asc", "-", "TotalM-asc",
                                    "TotalBytes-asc", " totalbytes-asc", "totalbytes -asc"}) {
    SCOPED_TRACE(orderBy);
    house.ForgetEvents();
    FillRecord();
    Search(orderBy);
    ExpectFailure(Query::kSearch, "");
    EXPECT_EQ(Heads(), (Lines{kBefore, "W55", kBefore}));
    EXPECT_EQ(RecNos(), std::vector<int>{});
    EXPECT_EQ(PatternsAfterSearch(orderBy), (Lines{"*", "*"}));
  }
}

// The text behind the minus reaches the sort; nothing but a direction is taken there.
TEST_F(DiskFailureTest, UnknownDirectionOfAnOrderFailsInTheSort) {
  AddDisk();
  for (const std::string orderBy :
       {"totalbytes-sideways", "totalbytes-asc-desc", "totalbytes--asc",
        "totalbytes-asc, DevName desc", "totalbytes-desc, DevName", "totalbytes-, DevName asc",
        "totalbytes-collate nocase asc", "totalbytes-asc; DELETE FROM Disk_Day01",
        "totalbytes-asc nulls last", "totalbytes-asc --"}) {
    SCOPED_TRACE(orderBy);
    house.ForgetEvents();
    FillRecord();
    Search(orderBy);
    ExpectFailure(Query::kSearch, "");
    EXPECT_EQ(Heads(), (Lines{"W57", "W55", kBefore}));
    EXPECT_EQ(RecNos(), std::vector<int>{});
    EXPECT_EQ(PatternsAfterSearch(orderBy), (Lines{"*", "*"}));
  }
  EXPECT_EQ(house.installation.Select("History.mdb", "SELECT RecNo FROM Disk_Day01"), Lines{"900"});
}

TEST_F(DiskFailureTest, SlotOutsideOneToTwentyFails) {
  AddDisk();
  for (const int slot : {0, 21, -1, 32767}) {
    const auto id = static_cast<ConnectionId>(slot);
    house.ForgetEvents();
    SqlTop10DiskStats(house.queries, id, 30, "TotalM", "ASC");
    ExpectFailure(Query::kTop10, std::to_string(slot));
    house.ForgetEvents();
    std::string devPattern;
    std::string diskPattern;
    SqlSearchDeviceDisk(house.queries, id, devPattern, diskPattern, "totalbytes-asc");
    ExpectFailure(Query::kSearch, std::to_string(slot));
  }
  for (const DiskTableRecord& record : house.records.DiskTableRep) {
    EXPECT_EQ(record.TableReport, "");
  }
}

TEST_F(DiskFailureTest, AnotherQueryMayRunInTheWaitOfTheEvent) {
  for (const Query query : kBoth) {
    ClearDisks();
    house.ForgetEvents();
    AddDisk({{"DevName", "NULL"}});
    house.loop.Post([&] {
      History("UPDATE Disk_Day01 SET DevName = 'Written meanwhile'");
      Search("usedpercent-desc", "*", "*", 5);
    });
    Run(query);
    EXPECT_EQ(house.records.DiskTableRep[5].rows[1].device, "Written meanwhile");
    EXPECT_EQ(house.records.DiskTableRep[5].TableHead, "W63");
    EXPECT_EQ(Record().TableHead, "W56");
    ExpectFailure(query, "DevName");
  }
}

}  // namespace
}  // namespace quillon
