// The debug dumps of the two summaries, byte for byte. They share a file.
#include <filesystem>

#include "queries/summary_fixture.h"

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
    for (int series = 0; series < 8; ++series) lines += "\t-\t1";
    lines += "\r\n";
  }
  return lines;
}

// The dump of the ordinary access ports of yesterday.
std::string DumpOfPorts() {
  return "Exec Time=450 ms\r\n"
         "Report=W34\r\n"
         "VolumeHead=W12\r\n"
         "VolumeNameLeft=W22\r\n"
         "VolumeNameRight=W23\r\n"
         "VolumeYaxisMax=6 M\r\n"
         "VolumeYaxisHalf=3 M\r\n"
         "BroadcastHead=W13\r\n"
         "BroadcastNameLeft=W24\r\n"
         "BroadcastNameRight=W25\r\n"
         "BroadcastYaxisMax=4\r\n"
         "BroadcastYaxisHalf=2\r\n"
         "ErrorsHead=W14\r\n"
         "ErrorsNameLeft=W26\r\n"
         "ErrorsNameRight=W27\r\n"
         "ErrorsYaxisMax=2\r\n"
         "ErrorsYaxisHalf=1\r\n"
         "PortsHead=W48\r\n"
         "PortsNameLeft=W49\r\n"
         "PortsNameRight=W50\r\n"
         "PortsYaxisMax=20\r\n"
         "PortsYaxisHalf=10\r\n"
         "HistoryStart=2024-03-18\r\n"
         "HistoryEnd=2024-05-01\r\n" +
         EmptyDays(44) + kYesterdaysPorts + "\r\n";
}

// The dump of trunk ports without any day.
std::string DumpOfNoTrunkPorts() {
  return "Exec Time=450 ms\r\n"
         "Report=W35\r\n"
         "VolumeHead=W12\r\n"
         "VolumeNameLeft=W22\r\n"
         "VolumeNameRight=W23\r\n"
         "VolumeYaxisMax=2 M\r\n"
         "VolumeYaxisHalf=1 M\r\n"
         "BroadcastHead=W13\r\n"
         "BroadcastNameLeft=W24\r\n"
         "BroadcastNameRight=W25\r\n"
         "BroadcastYaxisMax=2\r\n"
         "BroadcastYaxisHalf=1\r\n"
         "ErrorsHead=W14\r\n"
         "ErrorsNameLeft=W26\r\n"
         "ErrorsNameRight=W27\r\n"
         "ErrorsYaxisMax=2\r\n"
         "ErrorsYaxisHalf=1\r\n"
         "PortsHead=W48\r\n"
         "PortsNameLeft=W49\r\n"
         "PortsNameRight=W50\r\n"
         "PortsYaxisMax=2\r\n"
         "PortsYaxisHalf=1\r\n"
         "HistoryStart=2024-03-18\r\n"
         "HistoryEnd=2024-05-01\r\n" +
         EmptyDays(45) + "\r\n";
}

// The dump of the ordinary storages of yesterday.
std::string DumpOfStorages() {
  return "Exec Time=450 ms\r\n"
         "PhysicalReport=W82\r\n"
         "PhysicalHead=W76\r\n"
         "PhysicalNameLeft=W69\r\n"
         "PhysicalNameRight=W71\r\n"
         "PhysicalYaxisMax=100 M\r\n"
         "PhysicalYaxisHalf=50 M\r\n"
         "VirtualReport=W83\r\n"
         "VirtualHead=W77\r\n"
         "VirtualNameLeft=W69\r\n"
         "VirtualNameRight=W71\r\n"
         "VirtualYaxisMax=200 M\r\n"
         "VirtualYaxisHalf=100 M\r\n"
         "WindowsReport=W84\r\n"
         "WindowsHead=W78\r\n"
         "WindowsNameLeft=W69\r\n"
         "WindowsNameRight=W71\r\n"
         "WindowsYaxisMax=3 G\r\n"
         "WindowsYaxisHalf=1.5 G\r\n"
         "UnixReport=W85\r\n"
         "UnixHead=W79\r\n"
         "UnixNameLeft=W69\r\n"
         "UnixNameRight=W71\r\n"
         "UnixYaxisMax=40 G\r\n"
         "UnixYaxisHalf=20 G\r\n"
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
