// The debug dump of the query of the ten worst switch ports, byte for byte.
#include <filesystem>

#include "queries/dump_lines.h"
#include "queries/switch_top10_fixture.h"

namespace quillon {
namespace {

// The names end in a tab here, and in this dump alone.
const std::string kNames = kSwitchRowNames + "\t\r\n";

class SwitchTop10DumpTest : public SwitchTop10Test {
 protected:
  SwitchTop10DumpTest() {
    house.settings.DebugMode = true;
    house.period.ReportStart = "2024-05-01&nbsp;&nbsp03:00";
    house.period.ReportEnd = "2024-05-02&nbsp;&nbsp03:00";
  }

  std::string Dump() const { return house.installation.Read("Debug/WebSqlTop10.txt"); }
};

TEST_F(SwitchTop10DumpTest, HoldsTheHeadAndTenRowsByteForByte) {
  AddPort({{"IfIndex", "9"}, {"InErrorsTot24H", "1441"}});
  AddAddress(7, 9, "'02 00 00 00 00 99', '10.0.0.99', '2024-04-01 10:00:00'");
  Query("InErrorsTot24H");
  EXPECT_EQ(Dump(),
            "Exec Time=0 ms\r\n"
            "Top10 Field=InErrorsTot24H\r\n"
            "Trunk=False\r\n"
            "TableHead=W10\r\n"
            "TableReport=W2\r\n"
            "TableCriteria=1 (1)\r\n"
            "ReportStart=2024-05-01&nbsp;&nbsp03:00\r\n"
            "ReportEnd=2024-05-02&nbsp;&nbsp03:00\r\n" +
                kNames +
                "7\tCore\t10.0.0.7\t12\t9\tGi0/1\t1000000000\tUplink\tup\tdown\t"
                "5 M\t5 M\t4 M\t4 M\t3\t3 W39\t2\t2 W39\t1 441\t1 441 W38  (1 W39)\t0\t0 W38\t"
                "02 00 00 00 00 99\t10.0.0.99\t2024-04-01\r\n" +
                EmptySwitchRows(9) + "\r\n");
  ExpectNoEvent();
}

TEST_F(SwitchTop10DumpTest, OfTrunkPortsWithoutARowShowsTenEmptyOnes) {
  Query("OutHCOctetsMb24H", true);
  EXPECT_EQ(Dump(),
            "Exec Time=0 ms\r\n"
            "Top10 Field=OutHCOctetsMb24H\r\n"
            "Trunk=True\r\n"
            "TableHead=W7\r\n"
            "TableReport=W3\r\n"
            "TableCriteria=0 (0)\r\n"
            "ReportStart=2024-05-01&nbsp;&nbsp03:00\r\n"
            "ReportEnd=2024-05-02&nbsp;&nbsp03:00\r\n" +
                kNames + EmptySwitchRows(10) + "\r\n");
}

TEST_F(SwitchTop10DumpTest, IsAppendedToTheOneBefore) {
  Query("InHCOctetsMb24H", false);
  const std::string first = Dump();
  Query("InHCOctetsMb24H", false);
  EXPECT_EQ(Dump(), first + first);
  EXPECT_FALSE(first.empty());
}

TEST_F(SwitchTop10DumpTest, ShowsTheTextsAsBytesOfThePagesCharset) {
  AddPort({{"DevName", "'Zürich'"}});
  Query();
  EXPECT_NE(Dump().find("7\tZ\xFCrich\t10.0.0.7"), std::string::npos);
}

TEST_F(SwitchTop10DumpTest, IsNotWrittenWithoutDebugMode) {
  house.settings.DebugMode = false;
  AddPort();
  Query();
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

TEST_F(SwitchTop10DumpTest, IsNotWrittenAfterAFailure) {
  AddPort({{"DevName", "NULL"}});
  Query();
  EXPECT_EQ(house.installation.List("Debug"), Lines{"AppEventWeb.txt"});
}

TEST_F(SwitchTop10DumpTest, ThatCannotBeWrittenIsAFailureOfTheQuery) {
  AddPort();
  std::filesystem::create_directory(house.installation.path() + "/Debug/WebSqlTop10.txt");
  Query();
  ExpectFailure("WebSqlTop10.txt");
  EXPECT_EQ(Record().rows[1].device, "Core");
}

}  // namespace
}  // namespace quillon
