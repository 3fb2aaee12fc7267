// The search for disks and memories: what an order asks for, which names a pattern finds, what is
// counted. The day is in disk_top10_test, the texts of the columns in disk_values_test, failures in
// disk_failure_test, the dump in disk_dump_test.
#include "queries/disk_fixture.h"

namespace quillon {
namespace {

class DiskSearchTest : public DiskTest {
 protected:
  // What the two patterns find, in stored order.
  std::vector<int> Found(const std::string& devPattern, const std::string& diskPattern) {
    Search("totalbytes-asc", devPattern, diskPattern);
    return RecNos();
  }

  struct PatternCase {
    std::string pattern;
    std::vector<int> recNos;
  };
  // Expects what patterns find among the storages, and among the devices of the same names.
  void ExpectFound(const Lines& names, const std::vector<PatternCase>& cases) {
    AddDisksNamed(names);
    for (const PatternCase& row : cases) {
      EXPECT_EQ(Found("*", row.pattern), row.recNos) << "disk " << row.pattern;
    }
    History("UPDATE Disk_Day01 SET DevName = StorDescr, StorDescr = 'C:'");
    for (const PatternCase& row : cases) {
      EXPECT_EQ(Found(row.pattern, "*"), row.recNos) << "device " << row.pattern;
    }
    ExpectNoEvent();
  }
};

TEST_F(DiskSearchTest, RowsComeByTheWordOfTheOrderInItsDirection) {
  for (const DiskOrder& order : kDiskOrders) {
    ClearDisks();
    AddDisksOrderedBy(order.column);
    for (const std::string direction : {"asc", "ASC", "Asc"}) {
      EXPECT_EQ(Search(order.word + "-" + direction).TableHead, order.headAscending);
      EXPECT_EQ(RecNos(), (std::vector<int>{1, 5, 2, 4, 3})) << order.word << " " << direction;
    }
    for (const std::string direction : {"desc", "DESC", "desC"}) {
      EXPECT_EQ(Search(order.word + "-" + direction).TableHead, order.headDescending);
      EXPECT_EQ(RecNos(), (std::vector<int>{3, 4, 2, 5, 1})) << order.word << " " << direction;
    }
  }
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, EmptyDirectionAscendsUnderTheHeadOfTheOtherOne) {
  AddDisk({{"RecNo", "1"}, {"FreeM", "70"}});
  AddDisk({{"RecNo", "2"}, {"FreeM", "9"}});
  EXPECT_EQ(Search("freebytes-").TableHead, "W59");
  EXPECT_EQ(RecNos(), (std::vector<int>{2, 1}));
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, EqualValuesKeepTheStoredOrder) {
  for (const char* recNo : {"5", "2", "9", "1", "7"}) AddDisk({{"RecNo", recNo}});
  AddDisk({{"RecNo", "8"}, {"UsedM", "200"}});
  AddDisk({{"RecNo", "4"}, {"UsedM", "1"}});
  Search("usedbytes-desc");
  EXPECT_EQ(RecNos(), (std::vector<int>{8, 5, 2, 9, 1, 7, 4}));
  Search("usedbytes-asc");
  EXPECT_EQ(RecNos(), (std::vector<int>{4, 5, 2, 9, 1, 7, 8}));
}

TEST_F(DiskSearchTest, ReportIsAlwaysTheOneOfSearches) {
  for (const char* type : {"10", "20", "30", "40"}) {
    ClearDisks();
    AddDisk({{"Type", type}});
    FillRecord();
    EXPECT_EQ(Search().TableReport, "W55") << type;
  }
}

TEST_F(DiskSearchTest, EmptyPatternsBecomeAStarInTheCallersVariable) {
  AddDisksNamed({"'C:'", "''", "'/var'"});
  std::string devPattern;
  std::string diskPattern;
  SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, "totalbytes-asc");
  EXPECT_EQ(devPattern, "*");
  EXPECT_EQ(diskPattern, "*");
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3}));
  devPattern = "FILES";
  diskPattern = "";
  SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, "totalbytes-asc");
  EXPECT_EQ(devPattern, "FILES");
  EXPECT_EQ(diskPattern, "*");
  devPattern = "";
  diskPattern = " ";  // not empty
  Search("totalbytes-asc", devPattern, diskPattern);
  EXPECT_EQ(RecNos(), std::vector<int>{});
  SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, "totalbytes-asc");
  EXPECT_EQ(devPattern, "*");
  EXPECT_EQ(diskPattern, " ");
}

TEST_F(DiskSearchTest, EmptyPatternsTakeTheFirstTenOfAllClasses) {
  AddDisks(12);
  History(
      "UPDATE Disk_Day01 SET TotalM = 100 - RecNo, Type = 10 * (1 + RecNo % 4);"
      "UPDATE Disk_Day01 SET Type = NULL WHERE RecNo = 12;"
      "UPDATE Disk_Day01 SET Type = 'none' WHERE RecNo = 11;");
  EXPECT_EQ(Search("totalbytes-asc", "", "").TableCriteria, "10 (12)");
  EXPECT_EQ(RecNos(), (std::vector<int>{12, 11, 10, 9, 8, 7, 6, 5, 4, 3}));
  Search("totalbytes-desc", "", "");
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, WithoutATableOfTheDayPatternsStayAsTheyAre) {
  ClearControl();
  FillRecord();
  std::string devPattern;
  std::string diskPattern;
  SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, "totalbytes-asc");
  EXPECT_EQ(devPattern, "");
  EXPECT_EQ(diskPattern, "");
  ExpectRecordOfBefore();
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, FirstTenOfTheMatchesAreTakenInTheirOrder) {
  AddDisks(40);
  // Every second one matches; the larger the number the smaller the disk.
  History(
      "UPDATE Disk_Day01 SET TotalM = 1000 - RecNo;"
      "UPDATE Disk_Day01 SET DevName = 'Mail' WHERE RecNo % 2 = 0;");
  EXPECT_EQ(Search("totalbytes-asc", "mail").TableCriteria, "10 (40)");
  EXPECT_EQ(RecNos(), (std::vector<int>{40, 38, 36, 34, 32, 30, 28, 26, 24, 22}));
  EXPECT_EQ(Search("totalbytes-desc", "mail").TableCriteria, "10 (40)");
  EXPECT_EQ(RecNos(), (std::vector<int>{2, 4, 6, 8, 10, 12, 14, 16, 18, 20}));
}

TEST_F(DiskSearchTest, CriteriaTellsTheShownOnesAndTheWholeTable) {
  struct Case {
    int disks;
    int matching;
    std::string criteria;
  };
  const Case cases[] = {{1, 0, "0 (1)"},     {1, 1, "1 (1)"},     {9, 9, "9 (9)"},
                        {10, 10, "10 (10)"}, {11, 11, "10 (11)"}, {11, 10, "10 (11)"},
                        {11, 9, "9 (11)"},   {150, 3, "3 (150)"}, {150, 150, "10 (150)"}};
  for (const Case& row : cases) {
    ClearDisks();
    AddDisks(row.disks);
    History("UPDATE Disk_Day01 SET StorDescr = 'D:' WHERE RecNo > " + std::to_string(row.matching));
    EXPECT_EQ(Search("totalbytes-asc", "*", "c:").TableCriteria, row.criteria)
        << row.matching << " of " << row.disks;
  }
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, WithoutAMatchTheTableIsEmpty) {
  AddDisks(3);
  FillRecord();
  Search("trend14d-desc", "Files", "E:");
  EXPECT_EQ(Heads(), (Lines{"W65", "W55", "0 (3)"}));
  EXPECT_EQ(RecNos(), std::vector<int>{});
  EXPECT_EQ(Record().rows[1].device, kBefore);
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, EmptyDayTableSkipsTheSort) {
  for (const std::string orderBy :
       {"usedbytes-desc", "usedbytes-sideways", "usedbytes-desc, DevName"}) {
    FillRecord();
    Search(orderBy);
    EXPECT_EQ(Heads(), (Lines{"W61", "W55", "0 (0)"})) << orderBy;
  }
  FillRecord();
  Search("colour-asc");
  EXPECT_EQ(Heads(), (Lines{kBefore, "W55", "0 (0)"}));
  EXPECT_EQ(Record().rows[1].device, kBefore);
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, BothNamesHaveToMatch) {
  AddDisk({{"RecNo", "1"}, {"DevName", "'Mail'"}, {"StorDescr", "'C:'"}});
  AddDisk({{"RecNo", "2"}, {"DevName", "'Mail'"}, {"StorDescr", "'D:'"}});
  AddDisk({{"RecNo", "3"}, {"DevName", "'Web'"}, {"StorDescr", "'C:'"}});
  AddDisk({{"RecNo", "4"}, {"DevName", "'C:'"}, {"StorDescr", "'Mail'"}});
  EXPECT_EQ(Found("mail", "c:"), std::vector<int>{1});
  EXPECT_EQ(Found("mail", "*"), (std::vector<int>{1, 2}));
  EXPECT_EQ(Found("*", "c:"), (std::vector<int>{1, 3}));
  EXPECT_EQ(Found("web", "d:"), std::vector<int>{});
  EXPECT_EQ(Found("*:", "*"), std::vector<int>{4});
}

TEST_F(DiskSearchTest, WildcardsFindNames) {
  const Lines names = {"'C:'",      "'D:'",     "'/var'",    "'/var/log'", "'Disk #7'",
                       "'disk 12'", "'[data]'", "' spare '", "''"};
  const std::vector<PatternCase> cases = {
      {"*", {1, 2, 3, 4, 5, 6, 7, 8, 9}},
      {"**", {1, 2, 3, 4, 5, 6, 7, 8, 9}},
      {"?*", {1, 2, 3, 4, 5, 6, 7, 8}},
      {"?:", {1, 2}},
      {"??", {1, 2}},
      {"/var", {3}},
      {"/var*", {3, 4}},
      {"/var/*", {4}},
      {"*a*", {3, 4, 7, 8}},
      {"*#", {5, 6}},
      {"disk ##", {6}},
      {"disk #", {}},
      {"disk [#]#", {5}},
      {"[c-f]:", {1, 2}},
      {"[cx]:", {1}},
      {"[!c]:", {2}},
      {"[!c-d]:", {}},
      {"*[!a-z]", {1, 2, 5, 6, 7, 8}},
      {"[[]data]", {7}},
      {"[[]*", {7}},
      {"[data]", {}},
      {"spare", {}},
      {" spare ", {8}},
      {"*spare*", {8}},
      {" *", {8}},
      {"[]", {9}},
      {"%", {}},
      {"/var_log", {}},
      {"C", {}},
      {":", {}},
  };
  ExpectFound(names, cases);
}

TEST_F(DiskSearchTest, CaseDoesNotCountOnEitherSide) {
  const std::vector<PatternCase> cases = {
      {"c:", {1, 2}},
      {"C:", {1, 2}},
      {"[a-c]:", {1, 2}},
      {"[A-C]:", {1, 2}},
      {"[!C]:", {}},
      {"/VAR", {3, 4}},
      {"/vAr", {3, 4}},
      {"*R", {3, 4, 5, 6}},
      {"\xFC"
       "ber",
       {5, 6}},
      {"\xDC*", {5, 6}},
      {"[\xE4\xF6\xFC]BER", {5, 6}},
      {"[!\xDC]ber", {}},
      {"?ber", {5, 6}},
  };
  ExpectFound({"'c:'", "'C:'", "'/var'", "'/VAR'", "'über'", "'ÜBER'"}, cases);
}

TEST_F(DiskSearchTest, PatternsAreBytesOfThePagesCharset) {
  struct Case {
    std::string charSet;
    std::string pattern;
    std::vector<int> recNos;
  };
  const Case cases[] = {
      {"ISO-8859-1", "z\xFCr*", {1}},
      {"ISO-8859-1", "zür*", {}},  // two other letters there
      {"UTF-8", "zür*", {1}},
      {"windows-1251", "\xEC\xEE\xF1*", {2}},
      {"UTF-8", "мос*", {2}},
      {"UTF-8", "[а-я]*", {2}},
      {"UTF-8", "??????", {1, 2}},
      {"ISO-8859-1", "??????", {1, 2}},  // what the charset cannot show is found all the same
      {"ISO-8859-1", "*\xE4*", {}},
  };
  AddDisksNamed({"'Zürich'", "'МОСКВА'"});
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    EXPECT_EQ(Found("*", row.pattern), row.recNos) << row.charSet << " " << row.pattern;
  }
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, PatternsStayAsTheyCame) {
  AddDisk();
  for (const std::string pattern : {"F\xCCLE*", " [A-f]* ", "O'Neil", "**", "?"}) {
    std::string devPattern = pattern;
    std::string diskPattern = pattern;
    SqlSearchDeviceDisk(house.queries, kSlot, devPattern, diskPattern, "totalbytes-asc");
    EXPECT_EQ(devPattern, pattern);
    EXPECT_EQ(diskPattern, pattern);
  }
}

TEST_F(DiskSearchTest, AwkwardNamesAreFound) {
  const std::string longName(300, 'x');
  const std::vector<PatternCase> cases = {
      {"O'Neil's \"c\"", {1}},
      {"o'*", {1}},
      {"<b>&amp;*", {2}},
      {"*<*>*", {2}},
      {"a\\b", {3}},
      {longName, {4}},
      {longName + "x", {}},
      {longName.substr(1) + "?", {4}},
      {std::string(300, '?'), {4}},
      {std::string(301, '?'), {}},
      {"'; DROP TABLE Disk_Day01; --", {}},
      {"x' OR '1'='1", {}},
  };
  ExpectFound({"'O''Neil''s \"c\"'", "'<b>&amp;</b>'", "'a\\b'", "'" + longName + "'"}, cases);
}

TEST_F(DiskSearchTest, MatchesAreFilledWithTheirTexts) {
  AddDisk({{"RecNo", "1"}, {"TotalM", "50"}});
  AddDisk({{"RecNo", "2"},
           {"DevName", "'Büro'"},
           {"StorDescr", "'Physical'"},
           {"Type", "10"},
           {"TotalM", "12500"},
           {"FreeM", "-1"},
           {"UsedM", "0"},
           {"UsedProc", "99.5"},
           {"Trend14d", "0"},
           {"Trend30d", "-0.5"}});
  const DiskTableRow& row = Search("totalbytes-asc", "b*").rows[1];
  EXPECT_EQ(row.recNo, 2);
  EXPECT_EQ(Texts(row),
            (Lines{"B\xFCro", "Physical", "13 G", "-", "0", "99.5 %", "0 %", "-0.5 %"}));
  EXPECT_EQ(RecNos(), std::vector<int>{2});
  ExpectNoEvent();
}

TEST_F(DiskSearchTest, RowsThatAreNotFoundKeepTheirTexts) {
  AddDisks(3);
  FillRecord();
  Search();
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3}));
  for (int n = 4; n <= 10; ++n) {
    EXPECT_EQ(Texts(Record().rows[n]), Lines(DiskColumnsInOrder().size(), kBefore)) << n;
  }
}

TEST_F(DiskSearchTest, OnlyTheSlotAskedForIsWritten) {
  AddDisk();
  for (const int slot : {1, 20}) {
    const auto id = static_cast<ConnectionId>(slot);
    EXPECT_EQ(Search("totalbytes-asc", "*", "*", id).rows[1].device, "Files") << slot;
  }
  for (const int slot : {2, 15, 19}) {
    EXPECT_EQ(house.records.DiskTableRep[slot].TableCriteria, "") << slot;
    EXPECT_EQ(house.records.DiskTableRep[slot].rows[1].device, "") << slot;
  }
}

}  // namespace
}  // namespace quillon
