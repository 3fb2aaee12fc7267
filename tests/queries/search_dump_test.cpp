// The debug dumps of the two searches of switch ports, byte for byte.
#include <filesystem>

#include "queries/dump_lines.h"
#include "queries/search_fixture.h"

namespace quillon {
namespace {

constexpr const char* kPortDump = "Debug/WebSqlSearchDevicePort.txt";
constexpr const char* kMacDump = "Debug/WebSqlSearchMacIp.txt";

// The values of an ordinary port up to its oper state, and its twelve metrics.
const std::string kOrdinaryPort = "7\tCore\t10.0.0.7\t12\t1\tGi0/1\t1000000000\tUplink\tup\tdown\t";
const std::string kMetrics = "5 M\t5 M\t4 M\t4 M\t3\t3 W39\t2\t2 W39\t1\t1 W38\t0\t0 W38\t";
const std::string kNoughts = "0\t0\t0\t0\t  0\t  0 W39\t  0\t  0 W39\t  0\t  0 W38\t  0\t  0 W38\t";

class SearchDumpTest : public SearchTest {
 protected:
  SearchDumpTest() {
    house.settings.DebugMode = true;
    house.period.ReportStart = "2024-05-01&nbsp;&nbsp03:00";
    house.period.ReportEnd = "2024-05-02&nbsp;&nbsp03:00";
  }

  std::string Dump(const char* file) const { return house.installation.Read(file); }

  static std::string Head(const std::string& report, const std::string& criteria) {
    return "Exec Time=0 ms\r\n"
           "TableHead=W47\r\n"
           "TableReport=" +
           report +
           "\r\n"
           "TableCriteria=" +
           criteria +
           "\r\n"
           "ReportStart=2024-05-01&nbsp;&nbsp03:00\r\n"
           "ReportEnd=2024-05-02&nbsp;&nbsp03:00\r\n" +
           kSwitchRowNames + "\r\n";
  }
};

TEST_F(SearchDumpTest, OfPortsHoldsTheHeadAndTenRowsByteForByte) {
  AddPort();
  AddPort({{"RecNo", "8"},
           {"DevName", "'O''Neil''s <\"rack\"> & Zürich '"},
           {"VlanID", "-1"},
           {"IfAlias", "''"},
           {"InOctetsDate", "'2024-05-01 03:10:00'"}});
  AddMac();
  SearchPorts("*", "Gi*");
  EXPECT_EQ(Dump(kPortDump), Head("W4", "2 (2)") + kOrdinaryPort + kMetrics +
                                 "02 00 00 00 00 01\t192.0.2.1\t2024-05-01\r\n" +
                                 "8\tO'Neil's <\"rack\"> & Z\xFCrich \t10.0.0.7\t-\t1\tGi0/1\t"
                                 "1000000000\t\tup\tdown\t" +
                                 kNoughts + "\t\t-\r\n" + EmptySwitchRows(8) + "\r\n");
  EXPECT_EQ(house.installation.List("Debug"), Lines{"WebSqlSearchDevicePort.txt"});
}

TEST_F(SearchDumpTest, OfAddressesHoldsTheHeadAndTenRowsByteForByte) {
  AddPort();
  AddPort({{"RecNo", "8"}, {"InOctetsDate", "NULL"}});
  AddMac();
  AddMac({{"RecNo", "8"},
          {"MacAddr", "'02 00 00 00 00 0F'"},
          {"IpAddr", "'ü €'"},
          {"LastSeen", "'2024-05-02 09:00:00'"}});
  AddMac({{"RecNo", "9"}});
  SearchMac();
  EXPECT_EQ(Dump(kMacDump),
            Head("W5", "2 (3)") +
                "8\tCore\t10.0.0.7\t12\t1\tGi0/1\t1000000000\tUplink\tup\tdown\t" + kNoughts +
                "02 00 00 00 00 0F\t\xFC ?\t2024-05-02\r\n" + kOrdinaryPort + kMetrics +
                "02 00 00 00 00 01\t192.0.2.1\t2024-05-01\r\n" + EmptySwitchRows(8) + "\r\n");
  EXPECT_EQ(house.installation.List("Debug"), Lines{"WebSqlSearchMacIp.txt"});
}

TEST_F(SearchDumpTest, WithoutAHitShowsTenEmptyRows) {
  SearchPorts();
  EXPECT_EQ(Dump(kPortDump), Head("W4", "0 (0)") + EmptySwitchRows(10) + "\r\n");
  SearchMac();
  EXPECT_EQ(Dump(kMacDump), Head("W5", "0 (0)") + EmptySwitchRows(10) + "\r\n");
}

TEST_F(SearchDumpTest, OfTenRowsHasNoEmptyOne) {
  AddPorts(10);
  SearchPorts("*", "*", "IfAlias");
  std::string rows;
  for (const char* recNo : {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}) {
    rows += recNo + kOrdinaryPort.substr(1) + kMetrics + "\t\t-\r\n";
  }
  EXPECT_EQ(Dump(kPortDump), Head("W4", "10 (10)") + rows + "\r\n");
}

TEST_F(SearchDumpTest, ShowsWhatAnEarlierReportLeftInItsEmptyRows) {
  AddPort();
  SearchPorts();
  SearchPorts("nothing");
  const std::string second = Dump(kPortDump).substr(
      (Head("W4", "1 (1)") + kOrdinaryPort + kMetrics + "\t\t-\r\n" + EmptySwitchRows(9) + "\r\n")
          .size());
  EXPECT_EQ(second, Head("W4", "0 (0)") + "0" + kOrdinaryPort.substr(1) + kMetrics + "\t\t-\r\n" +
                        EmptySwitchRows(9) + "\r\n");
}

TEST_F(SearchDumpTest, IsAppendedToTheOneBefore) {
  SearchPorts();
  SearchMac();
  const std::string firstOfPorts = Dump(kPortDump);
  const std::string firstOfAddresses = Dump(kMacDump);
  SearchPorts();
  SearchMac();
  EXPECT_EQ(Dump(kPortDump), firstOfPorts + firstOfPorts);
  EXPECT_EQ(Dump(kMacDump), firstOfAddresses + firstOfAddresses);
  EXPECT_FALSE(firstOfPorts.empty());
  EXPECT_FALSE(firstOfAddresses.empty());
}

TEST_F(SearchDumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  AddPort();
  AddMac();
  SearchPorts();
  SearchMac();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(SearchDumpTest, IsNotWrittenAfterAFailure) {
  AddPort({{"DevName", "NULL"}});
  AddMac();
  SearchPorts("10.*");
  SearchMac();
  SearchPorts("O'Neil");
  SearchMac("O'Neil");
  EXPECT_EQ(house.Events().size(), 4u);
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(SearchDumpTest, ThatCannotBeWrittenIsAFailureOfTheSearch) {
  AddPort();
  AddMac();
  for (const char* file : {kPortDump, kMacDump}) {
    std::filesystem::create_directory(house.installation.path() + "/" + file);
  }
  SearchPorts();
  ExpectFailureOf(kPortSearch, "WebSqlSearchDevicePort.txt");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  EXPECT_EQ(Record().rows[1].device, "Core");
  house.ForgetEvents();
  SearchMac();
  ExpectFailureOf(kMacSearch, "WebSqlSearchMacIp.txt");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  EXPECT_EQ(Record().rows[1].device, "Core");
}

}  // namespace
}  // namespace quillon
