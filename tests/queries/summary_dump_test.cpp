// The debug dumps of the two summaries, byte for byte. They share a file.
#include <filesystem>

#include "queries/chart_fixture.h"
#include "queries/dump_lines.h"
#include "queries/sums.h"

namespace quillon {
namespace {

const std::string kDumpFile = "Debug/WebSqlHist45d.txt";

const std::string kYesterdaysPorts =
    "2024-05-01\t6 M\t100\t5 M\t83\t4 W39\t100\t3 W39\t75\t2 W38\t100\t1 W38\t50\t"
    "20\t100\t10  (50%)\t50\r\n";
const std::string kYesterdaysStorages =
    "2024-05-01\t100 M\t100\t40 M\t40\t200 M\t100\t50 M\t25\t3 000 M\t100\t1 500 M\t50\t"
    "40 G\t100\t10 G\t25\r\n";

// Lines of days without a row, from the oldest one on.
std::string EmptyDays(int count) {
  std::string lines;
  for (int day = 0; day < count; ++day) {
    lines += DayText(MakeDateTime({2024, 3, 18}) + std::chrono::days(day));
    lines += DashFields(8) + "\r\n";
  }
  return lines;
}

// The dump of the ordinary access ports of yesterday.
std::string DumpOfPorts() {
  return "Exec Time=450 ms\r\n"
         "Report=W34\r\n" +
         PanelLines("Volume", 12, 22, 23, "6 M", "3 M") +
         PanelLines("Broadcast", 13, 24, 25, "4", "2") +
         PanelLines("Errors", 14, 26, 27, "2", "1") + PanelLines("Ports", 48, 49, 50, "20", "10") +
         "HistoryStart=2024-03-18\r\n"
         "HistoryEnd=2024-05-01\r\n" +
         EmptyDays(44) + kYesterdaysPorts + "\r\n";
}

// The dump of trunk ports without any day.
std::string DumpOfNoTrunkPorts() {
  return "Exec Time=450 ms\r\n"
         "Report=W35\r\n" +
         PanelLines("Volume", 12, 22, 23, "2 M", "1 M") +
         PanelLines("Broadcast", 13, 24, 25, "2", "1") +
         PanelLines("Errors", 14, 26, 27, "2", "1") + PanelLines("Ports", 48, 49, 50, "2", "1") +
         "HistoryStart=2024-03-18\r\n"
         "HistoryEnd=2024-05-01\r\n" +
         EmptyDays(45) + "\r\n";
}

// The dump of the ordinary storages of yesterday.
std::string DumpOfStorages() {
  return "Exec Time=450 ms\r\n"
         "PhysicalReport=W82\r\n" +
         PanelLines("Physical", 76, 69, 71, "100 M", "50 M") + "VirtualReport=W83\r\n" +
         PanelLines("Virtual", 77, 69, 71, "200 M", "100 M") + "WindowsReport=W84\r\n" +
         PanelLines("Windows", 78, 69, 71, "3 G", "1.5 G") + "UnixReport=W85\r\n" +
         PanelLines("Unix", 79, 69, 71, "40 G", "20 G") +
         "HistoryStart=2024-03-18\r\n"
         "HistoryEnd=2024-05-01\r\n" +
         EmptyDays(44) + kYesterdaysStorages + "\r\n";
}

class SummaryDumpTest : public ChartTest {
 protected:
  SummaryDumpTest() { house.settings.DebugMode = true; }

  // Ordinary sums of yesterday, differing in these columns.
  template <typename Sums>
  void AddYesterday(const Columns& differing = {}) const {
    History(InsertSums<Sums>("'2024-05-01 03:10:00'", differing));
  }
  void QueryPorts(bool isTrunk = false) { SqHist45dSwitchSum(house.queries, kSlot, isTrunk); }
  void QueryStorages() { SqlHist45dDiskSum(house.queries, kSlot); }

  std::string Dump() const { return house.installation.Read(kDumpFile); }
};

TEST_F(SummaryDumpTest, OfPortsHoldsWordsAxesAndDaysByteForByte) {
  AddYesterday<PortSums>();
  QueryPorts();
  EXPECT_EQ(Dump(), DumpOfPorts());
  ExpectNoEvent();
}

TEST_F(SummaryDumpTest, OfTrunkPortsWithoutADayHoldsDashesByteForByte) {
  AddYesterday<PortSums>();
  QueryPorts(true);
  EXPECT_EQ(Dump(), DumpOfNoTrunkPorts());
}

TEST_F(SummaryDumpTest, OfStoragesHoldsWordsAxesAndDaysByteForByte) {
  AddYesterday<StorageSums>();
  QueryStorages();
  EXPECT_EQ(Dump(), DumpOfStorages());
  ExpectNoEvent();
}

TEST_F(SummaryDumpTest, StandsBehindThoseBeforeIt) {
  AddYesterday<PortSums>();
  AddYesterday<StorageSums>();
  QueryStorages();
  QueryPorts();
  QueryPorts(true);
  QueryStorages();
  EXPECT_EQ(Dump(), DumpOfStorages() + DumpOfPorts() + DumpOfNoTrunkPorts() + DumpOfStorages());
  EXPECT_EQ(house.installation.List("Debug"), Lines{"WebSqlHist45d.txt"});
}

TEST_F(SummaryDumpTest, ShowsTheTextsOfTheRecord) {
  AddYesterday<PortSums>(
      {{"InMultiCastPpm24H", "-1"}, {"InErrorsTot24H", "86401"}, {"OutErrorsTot24H", "'groß'"}});
  QueryPorts();
  EXPECT_NE(Dump().find("\t4 W39\t100\t-\t-25\t86 401 W38<br>(1 W40)\t99\tgro\xDF\t1\t20\t"),
            std::string::npos)
      << Dump();
}

TEST_F(SummaryDumpTest, HasTheDaysOfAnOverriddenReportDate) {
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  QueryPorts();
  QueryStorages();
  const std::string days = "HistoryStart=2014-09-23\r\nHistoryEnd=2014-11-06\r\n2014-09-23\t-\t1\t";
  const std::size_t first = Dump().find(days);
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(Dump().find(days, first + 1), std::string::npos);
}

TEST_F(SummaryDumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  QueryPorts();
  QueryStorages();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(SummaryDumpTest, IsNotWrittenBehindAFailure) {
  struct Case {
    std::string figure;
    std::size_t events;
  };
  const Case cases[] = {{"NULL", 2}, {"10000000000", 4}};  // in the walk; in the axes and the bars
  for (const Case& row : cases) {
    SCOPED_TRACE(row.figure);
    house.ForgetEvents();
    History("DELETE FROM VLAN_HistSum; DELETE FROM Disk_HistSum;");
    AddYesterday<PortSums>({{"InHCOctetsMb24H", row.figure}});
    AddYesterday<StorageSums>({{"TotalMUnix", row.figure}});
    QueryPorts();
    QueryStorages();
    EXPECT_EQ(house.Events().size(), row.events);
    EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
  }
}

TEST_F(SummaryDumpTest, ThatCannotBeWrittenIsAFailureOfTheReport) {
  AddYesterday<PortSums>();
  AddYesterday<StorageSums>();
  std::filesystem::create_directory(house.installation.path() + "/" + kDumpFile);
  QueryPorts();
  QueryStorages();
  const Lines events = house.Events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].rfind("1\tmodSelectSql_SqHist45dSwitchSum\t", 0), 0u) << events[0];
  EXPECT_EQ(events[1].rfind("1\tmodSelectSql_SqlHist45dDiskSum\t", 0), 0u) << events[1];
  for (const std::string& event : events) {
    EXPECT_NE(event.find("WebSqlHist45d.txt"), std::string::npos) << event;
  }
  EXPECT_EQ(house.records.Hist45dSwitchRep[kSlot].Ports.Right[45], "10  (50%)");
  EXPECT_EQ(house.records.Hist45dDiskRep[kSlot].Unix.Right[45], "10 G");
}

}  // namespace
}  // namespace quillon
