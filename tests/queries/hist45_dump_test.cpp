// The debug dumps of the histories of port, memory and disk, byte for byte: one file for all.
#include <filesystem>

#include "queries/dump_lines.h"
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

class Hist45DumpTest : public Hist45Test {
 protected:
  Hist45DumpTest() { house.settings.DebugMode = true; }

  std::string Dump() const { return house.installation.Read("Debug/WebSqlHist45.txt"); }

  // So many missing days of a record that has never seen those days.
  static std::string FreshDays(int count, int series) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += "1899-12-30\t" + DashFields(series) + "\r\n";
    return lines;
  }

  const std::string kPortHead =
      "Device(recNo)=Core (7)\r\n"
      "Port(ifIndex)=Gi0/4 (4)\r\n";
};

TEST_F(Hist45DumpTest, OfAPortHoldsItsRecord) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "5000"},
                     {"OutHCOctetsMb24H", "-1"},
                     {"InBroadCastPpm24H", "61"},
                     {"OutErrorsTot24H", "1441"}});
  AddPortHistory(3);
  ReportPort();
  EXPECT_EQ(Dump(),
            "Exec Time=450 ms\r\n" + kPortHead + PanelLines("Volume", 12, 22, 23, "5 G", "2.5 G") +
                PanelLines("Broadcast", 13, 24, 25, "65", "33") +
                PanelLines("Errors", 14, 26, 27, "2 K", "1 K") +
                "Device=Core\r\n"
                "Port=Gi0/4\r\n"
                "HistoryStart=1899-12-30\r\n"
                "HistoryEnd=2024-05-01\r\n" +
                FreshDays(42, 6) +
                "2024-04-29\tVLAN_Day03\t6 M\t1\t5 M\t1\t4 W39\t6\t3 W39\t5\t2 W38\t1\t1 W38\t1\r\n"
                "2024-04-30\t" +
                DashFields(6) +
                "\r\n"
                "2024-05-01\tVLAN_Day01\t5 000 M  (463 W44)\t100\t-\t1\t61 W39<br>(1 W40)\t94\t"
                "3 W39\t5\t2 W38\t1\t1 441 W38<br>(1 W39)\t72\r\n"
                "\r\n");
  ExpectNoEvent();
}

TEST_F(Hist45DumpTest, OfAPortWithoutControlRowsShowsTheZeroDate) {
  ReportPort(true);
  EXPECT_EQ(Dump(), "Exec Time=450 ms\r\n" + kPortHead +
                        PanelLines("Volume", 12, 22, 23, "2 M", "1 M") +
                        PanelLines("Broadcast", 13, 24, 25, "2", "1") +
                        PanelLines("Errors", 14, 26, 27, "2", "1") +
                        "Device=Core\r\n"
                        "Port=Gi0/4\r\n"
                        "HistoryStart=1899-12-30\r\n"
                        "HistoryEnd=1899-12-30\r\n" +
                        FreshDays(45, 6) + "\r\n");
}

TEST_F(Hist45DumpTest, OfMemoryHoldsItsRecord) {
  AddDiskDay(1, "Disk_Day01");
  AddMemory("Disk_Day01", "Physical", {{"TotalM", "2048"}, {"UsedM", "512"}});
  AddDiskDay(2, "Disk_Day02");
  AddMemory("Disk_Day02", "Virtual");
  ReportMemory(true);
  EXPECT_EQ(Dump(),
            "Exec Time=490 ms\r\n"
            "Device(recNo)=Files (900)\r\n"
            "Storage=Memory\r\n" +
                PanelLines("Physical", 76, 69, 71, "2 G", "1 G") +
                PanelLines("Virtual", 77, 69, 71, "100 M", "50 M") +
                "Device=Files\r\n"
                "HistoryStart=1899-12-30\r\n"
                "HistoryEnd=2024-05-01\r\n" +
                FreshDays(43, 4) +
                "2024-04-30\tDisk_Day02\t-\t1\t-\t1\t100 M\t100\t40 M\t40\r\n"
                "2024-05-01\tDisk_Day01\t2 048 M\t102\t512 M\t26\t-\t1\t-\t1\r\n"
                "\r\n");
  ExpectNoEvent();
}

TEST_F(Hist45DumpTest, OfADiskHoldsItsRecord) {
  AddDiskHistory(1);
  AddDiskHistory(45);
  std::string blankDays;
  for (int age = 44; age >= 2; --age) blankDays += house.DayBefore(age) + "\t\t-\t1\t-\t1\r\n";
  ReportDisk();
  EXPECT_EQ(Dump(),
            "Exec Time=450 ms\r\n"
            "Device(recNo)=Files (900)\r\n"
            "Storage=C:\r\n" +
                PanelLines("Disk", 80, 69, 71, "100 M", "50 M") +
                "Device=Files\r\n"
                "HistoryStart=2024-03-18\r\n"
                "HistoryEnd=2024-05-01\r\n"
                "2024-03-18\tDisk_Day45\t100 M\t100\t40 M\t40\r\n" +
                blankDays +
                "2024-05-01\tDisk_Day01\t100 M\t100\t40 M\t40\r\n"
                "\r\n");
  ExpectNoEvent();
}

TEST_F(Hist45DumpTest, DumpsOfAllReportsStandOneBehindTheOther) {
  AddPortHistory(1);
  AddDiskHistory(1);
  ReportPort();
  const std::string port = Dump();
  house.installation.Remove("Debug/WebSqlHist45.txt");
  ReportMemory();
  const std::string memory = Dump();
  house.installation.Remove("Debug/WebSqlHist45.txt");
  ReportDisk();
  const std::string disk = Dump();
  ReportMemory();
  ReportPort();
  ReportDisk();
  EXPECT_EQ(Dump(), disk + memory + port + disk);
  EXPECT_EQ(port.substr(18, 27), "Device(recNo)=Core (7)\r\nPor");
  EXPECT_NE(memory.find("\r\nStorage=Memory\r\n"), std::string::npos);
  EXPECT_NE(disk.find("\r\nStorage=C:\r\n"), std::string::npos);
}

TEST_F(Hist45DumpTest, TimeIsThatOfTheWholeReport) {
  AddPortDay(1, "VLAN_Gone");
  AddPortHistory(2);
  house.clock.SetTick(123);
  house.loop.Post([&] { house.clock.Advance(std::chrono::milliseconds(7)); });
  ReportPort(true);
  // 45 days, two of them with a table, the event of the one that failed, and what ran inside.
  EXPECT_EQ(Dump().substr(0, Dump().find("\r\n")), "Exec Time=997 ms");
}

TEST_F(Hist45DumpTest, HoldsNamesAsBytesOfThePagesCharset) {
  AddPortHistory(1, {{"RecNo", "-7"}, {"IfIndex", "-4"}, {"InErrorsTot24H", "'müßig'"}});
  SqHist45SwitchControl(house.queries, kSlot, -7, -4, "Zürich", "Genève", false);
  SqlHist45MemControl(house.queries, kSlot, 900, "Mémoire", false);
  SqlHist45DiskControl(house.queries, kSlot, 900, "Büro", "/Möwe", false);
  const std::string dump = Dump();
  for (const std::string lines :
       {"\r\nDevice(recNo)=Z\xFCrich (-7)\r\nPort(ifIndex)=Gen\xE8ve (-4)\r\nVolumeHead=",
        "\r\nDevice=Z\xFCrich\r\nPort=Gen\xE8ve\r\nHistoryStart=", "\tm\xFC\xDFig\t1\t",
        "\r\nDevice(recNo)=M\xE9moire (900)\r\nStorage=Memory\r\n",
        "\r\nDevice=M\xE9moire\r\nHistoryStart=",
        "\r\nDevice(recNo)=B\xFCro (900)\r\nStorage=/M\xF6we\r\nDiskHead=",
        "\r\nDevice=B\xFCro\r\nHistoryStart="}) {
    EXPECT_NE(dump.find(lines), std::string::npos) << lines;
  }
}

TEST_F(Hist45DumpTest, HoldsTableNamesAsBytesOfThePagesCharset) {
  History("CREATE TABLE Tag_ü AS SELECT * FROM VLAN_Day01");
  AddPortDay(1, "Tag_ü");
  AddDiskDay(1, "Tag_ü");
  ReportPort();
  EXPECT_NE(Dump().find("\r\n2024-05-01\tTag_\xFC\t-\t1\t"), std::string::npos);
  house.installation.Remove("Debug/WebSqlHist45.txt");
  ReportDisk();
  EXPECT_NE(Dump().find("\r\n2024-05-01\tTag_\xFC\t"), std::string::npos);
}

TEST_F(Hist45DumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  AddPortHistory(1);
  AddDiskHistory(1);
  ReportPort();
  ReportMemory();
  ReportDisk();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(Hist45DumpTest, IsWrittenThoughADayFailed) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "NULL"}});
  ReportPort();
  EXPECT_EQ(Failures("modSelectSql_SqlHist45SwitchStats").size(), 1u);
  EXPECT_NE(Dump().find("\r\n2024-05-01\tVLAN_Day01\t\t1\t\t1\t\t1\t\t1\t\t1\t\t1\r\n\r\n"),
            std::string::npos);
}

TEST_F(Hist45DumpTest, IsNotWrittenAfterAFailureOfTheReport) {
  History("DROP TABLE VLAN_HistCtrl; DROP TABLE Disk_HistCtrl;");
  ReportPort();
  ReportMemory();
  ReportDisk();
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
  EXPECT_EQ(house.Events().size(), 3u);
}

TEST_F(Hist45DumpTest, ThatCannotBeWrittenIsAFailureOfTheReport) {
  AddPortHistory(1);
  AddDiskHistory(1);
  std::filesystem::create_directory(house.installation.path() + "/Debug/WebSqlHist45.txt");
  ReportPort();
  ReportMemory();
  ReportDisk();
  const Lines events = house.Events();
  ASSERT_EQ(events.size(), 3u);
  const std::string procedures[] = {"SqHist45SwitchControl", "SqlHist45MemControl",
                                    "SqlHist45DiskControl"};
  for (std::size_t i = 0; i < events.size(); ++i) {
    EXPECT_EQ(events[i].rfind("1\tmodSelectSql_" + procedures[i] + "\t", 0), 0u) << events[i];
    EXPECT_NE(events[i].find("WebSqlHist45.txt"), std::string::npos) << events[i];
  }
  EXPECT_EQ(Figures(kNewest)[0], "6 M");
  EXPECT_EQ(DiskRecord().Disk.Proc[kNewest], " (40%)");
}

}  // namespace
}  // namespace quillon
