// What the columns of the input tables are called and take.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "quillondb/csv/columns.h"
#include "quillondb/csv/values.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

TEST(CsvColumns, TheTablesAreThoseOfTheStatistics) {
  EXPECT_EQ(InputTableNames(), (Names{"VLAN", "MAC", "HostDiskInfo"}));
}

TEST(CsvColumns, ATableIsFoundWithoutRegardToCase) {
  EXPECT_EQ(FindInputTable("hostdiskinfo").name, "HostDiskInfo");
}

TEST(CsvColumns, AnUnknownTableIsToldWithThoseThatThereAre) {
  try {
    FindInputTable("VLAN_Day01");
    ADD_FAILURE() << "the table was found";
  } catch (const DatabaseFailure& failure) {
    EXPECT_STREQ(failure.what(),
                 "Reports.mdb: no table of statistics is called VLAN_Day01; there are VLAN, MAC,"
                 " HostDiskInfo");
  }
}

// What an empty field becomes, as messages show it.
std::string WhenEmpty(const InputColumn& column) {
  return column.ifEmpty ? ShownValue(*column.ifEmpty) : "wrong";
}

TEST(CsvColumns, AnEmptyFieldBecomesWhatReadersTake) {
  const std::map<std::string, Names> kExpected = {
      {"VLAN",
       {"wrong", "''", "''", "-1", "wrong", "''", "''", "''", "''", "''", "wrong", "null", "null",
        "-1", "-1", "wrong", "-1", "wrong", "wrong"}},
      {"MAC", {"wrong", "wrong", "''", "''", "wrong"}},
      {"HostDiskInfo", {"wrong", "''", "''", "wrong", "wrong", "wrong", "0", "0", "null"}}};
  for (const auto& [table, expected] : kExpected) {
    Names found;
    for (const InputColumn& column : FindInputTable(table).columns) {
      found.push_back(WhenEmpty(column));
    }
    EXPECT_EQ(found, expected) << table;
  }
}

TEST(CsvColumns, RowsAreCountedWithTheTablesOwnName) {
  EXPECT_EQ(RowsText(0, "VLAN"), "0 rows of VLAN");
  EXPECT_EQ(RowsText(1, "mac"), "1 row of MAC");
  EXPECT_EQ(RowsText(2, "hostDISKinfo"), "2 rows of HostDiskInfo");
}

}  // namespace
}  // namespace quillon
