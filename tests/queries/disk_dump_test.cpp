// The debug dumps of the two queries of disks, byte for byte.
#include <filesystem>

#include "queries/disk_fixture.h"
#include "queries/switch_top10.h"

namespace quillon {
namespace {

constexpr const char* kNames =
    "recNo\tdevice\tstorDescr\ttotalM\tfreeM\tusedM\tusedProc\ttrend14d\ttrend30d\r\n";
// A row that no report has filled yet.
constexpr const char* kEmptyRow = "0\t\t\t\t\t\t\t\t\r\n";
constexpr const char* kPeriod =
    "ReportStart=2024-05-01&nbsp;&nbsp03:00\r\n"
    "ReportEnd=2024-05-02&nbsp;&nbsp03:00\r\n";

class DiskDumpTest : public DiskTest {
 protected:
  DiskDumpTest() {
    house.settings.DebugMode = true;
    house.period.ReportStart = "2024-05-01&nbsp;&nbsp03:00";
    house.period.ReportEnd = "2024-05-02&nbsp;&nbsp03:00";
  }

  static std::string File(Query query) {
    return query == Query::kTop10 ? "WebSqlTop10.txt" : "WebSqlSearchDeviceDisk.txt";
  }
  std::string Dump(Query query) const { return house.installation.Read("Debug/" + File(query)); }

  static std::string EmptyRows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i) rows += kEmptyRow;
    return rows;
  }
};

TEST_F(DiskDumpTest, OfAListHoldsTheHeadAndTenRowsByteForByte) {
  AddDisk({{"RecNo", "7"}, {"DevName", "'Büro <1>'"}, {"StorDescr", "'O''Neil'"}});
  AddDisk({{"RecNo", "8"},
           {"DevName", "' '"},
           {"TotalM", "12500"},
           {"Trend14d", "-0.5"},
           {"Trend30d", "0"}});
  Top10("TotalM", "DESC");
  EXPECT_EQ(Dump(Query::kTop10), std::string("Exec Time=0 ms\r\n"
                                             "Top10 Field=TotalM\r\n"
                                             "DiskType=30\r\n"
                                             "SortOrder=DESC\r\n"
                                             "TableHead=W57\r\n"
                                             "TableReport=W88\r\n"
                                             "TableCriteria=2 (2)\r\n") +
                                     kPeriod + kNames +
                                     "8\t \tC:\t13 G\t60 M\t40 M\t40 %\t-0.5 %\t0 %\r\n"
                                     "7\tB\xFCro <1>\tO'Neil\t100 M\t60 M\t40 M\t40 %\t+77 %"
                                     "\t+88 %\r\n" +
                                     EmptyRows(8) + "\r\n");
  EXPECT_EQ(house.installation.List("Debug"), Lines{File(Query::kTop10)});
}

TEST_F(DiskDumpTest, OfASearchHoldsTheHeadAndTenRowsByteForByte) {
  AddDisk({{"RecNo", "7"}, {"DevName", "'Büro'"}, {"StorDescr", "'C:'"}});
  AddDisk({{"RecNo", "8"}, {"StorDescr", "'C:'"}});
  AddDisk({{"RecNo", "9"}, {"DevName", "'Büro'"}, {"StorDescr", "'D:'"}});
  Search("usedpercent-asc", "b\xFC*", "[a-c]:");
  EXPECT_EQ(Dump(Query::kSearch), std::string("Exec Time=0 ms\r\n"
                                              "Top10 Field=UsedProc\r\n"
                                              "Disk=[a-c]:\r\n"
                                              "SortOrder=ASC\r\n"
                                              "TableHead=W62\r\n"
                                              "TableReport=W55\r\n"
                                              "TableCriteria=1 (3)\r\n") +
                                      kPeriod + kNames +
                                      "7\tB\xFCro\tC:\t100 M\t60 M\t40 M\t40 %\t+77 %\t+88 %\r\n" +
                                      EmptyRows(9) + "\r\n");
  EXPECT_EQ(house.installation.List("Debug"), Lines{File(Query::kSearch)});
}

TEST_F(DiskDumpTest, OfAListWithoutARowShowsTenEmptyOnes) {
  Top10("Trend30d", "ASC", 20);
  EXPECT_EQ(Dump(Query::kTop10), std::string("Exec Time=0 ms\r\n"
                                             "Top10 Field=Trend30d\r\n"
                                             "DiskType=20\r\n"
                                             "SortOrder=ASC\r\n"
                                             "TableHead=W66\r\n"
                                             "TableReport=W53\r\n"
                                             "TableCriteria=0 (0)\r\n") +
                                     kPeriod + kNames + EmptyRows(10) + "\r\n");
}

TEST_F(DiskDumpTest, OfASearchWithoutARowShowsTheStarOfAnEmptyPattern) {
  Search("trend14d-", "", "");
  EXPECT_EQ(Dump(Query::kSearch), std::string("Exec Time=0 ms\r\n"
                                              "Top10 Field=Trend14d\r\n"
                                              "Disk=*\r\n"
                                              "SortOrder=\r\n"
                                              "TableHead=W65\r\n"
                                              "TableReport=W55\r\n"
                                              "TableCriteria=0 (0)\r\n") +
                                      kPeriod + kNames + EmptyRows(10) + "\r\n");
}

TEST_F(DiskDumpTest, ShowsThePatternOfTheDiskAsItCame) {
  AddDisk();
  const std::string patterns[] = {"\xC4\xE4*", " <b>&'\"? ", std::string(300, '#')};
  for (const std::string& pattern : patterns) {
    house.installation.Write("Debug/" + File(Query::kSearch), "");
    Search("totalbytes-desc", "*", pattern);
    EXPECT_NE(Dump(Query::kSearch).find("\r\nDisk=" + pattern + "\r\nSortOrder=DESC\r\n"),
              std::string::npos)
        << pattern;
  }
}

TEST_F(DiskDumpTest, ShowsWhatAnEarlierReportLeftInTheOtherRows) {
  AddDisk();
  for (const Query query : kBoth) {
    FillRecord();
    Run(query);
    std::string rows = "900\tFiles\tC:\t100 M\t60 M\t40 M\t40 %\t+77 %\t+88 %\r\n";
    for (int n = 2; n <= 10; ++n) {
      rows += "0";
      for (int text = 0; text < 8; ++text) rows += std::string("\t") + kBefore;
      rows += "\r\n";
    }
    const std::string dump = Dump(query);
    EXPECT_EQ(dump.substr(dump.find(kNames)), kNames + rows + "\r\n") << Procedure(query);
  }
}

TEST_F(DiskDumpTest, TellsTheMillisecondsOfTheQuery) {
  AddDisk({{"TotalM", "'unknown'"}, {"UsedM", "'unknown'"}});
  for (const Query query : kBoth) {
    Run(query);
    // Two events of the conversion, which wait half a second each.
    EXPECT_EQ(Dump(query).rfind("Exec Time=1000 ms\r\n", 0), 0u) << Dump(query);
  }
}

TEST_F(DiskDumpTest, IsAppendedToTheOneBefore) {
  AddDisk();
  for (const Query query : kBoth) {
    Run(query);
    const std::string first = Dump(query);
    EXPECT_FALSE(first.empty());
    Run(query);
    EXPECT_EQ(Dump(query), first + first);
  }
}

TEST_F(DiskDumpTest, OfAListSharesItsFileWithThatOfPorts) {
  SqlTop10SwitchStats(house.queries, kSlot, "InHCOctetsMb24H", false);
  const std::string ports = Dump(Query::kTop10);
  Top10();
  const std::string both = Dump(Query::kTop10);
  EXPECT_EQ(both.rfind(ports + "Exec Time=0 ms\r\nTop10 Field=TotalM\r\nDiskType=30\r\n", 0), 0u)
      << both;
}

TEST_F(DiskDumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  AddDisk();
  for (const Query query : kBoth) Run(query);
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(DiskDumpTest, IsNotWrittenAfterAFailure) {
  AddDisk({{"Trend30d", "NULL"}});
  for (const Query query : kBoth) Run(query);
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(DiskDumpTest, ThatCannotBeWrittenIsAFailureOfTheQuery) {
  AddDisk();
  for (const Query query : kBoth) {
    house.ForgetEvents();
    std::filesystem::create_directory(house.installation.path() + "/Debug/" + File(query));
    Run(query);
    ExpectFailure(Procedure(query), File(query));
    EXPECT_EQ(Record().rows[1].device, "Files");
    EXPECT_EQ(Record().TableCriteria, "1 (1)");
  }
}

}  // namespace
}  // namespace quillon
