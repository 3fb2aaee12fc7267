// One old table into one new table: columns, rows, and what is lost.
#include <gtest/gtest.h>

#include <sstream>

#include "quillondb/jet/jet_target.h"
#include "quillondb/jet/table_copy.h"
#include "support/installation.h"
#include "tools/jet_made_up.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

class JetTableCopy : public testing::Test {
 protected:
  // Copies the old table of that name into the one of the database.
  std::int64_t Copy(const std::string& file, const std::string& table) {
    const SqliteFile database = SqliteFile::Open(installation_.path() + "/" + file);
    const SqliteFile reference = NewInstallationOf(file, installation_.path());
    const TableShape shape{table, ColumnsOf(database, table)};
    for (const JetTable& old : source_.Tables()) {
      if (!SameName(old.name, table)) continue;
      return CopyTable(source_, old, {database, reference, losses_, progress_}, shape, table);
    }
    return -1;
  }

  MadeUpSource source_ = EmptyOld("Reports.mdb");
  Installation installation_;
  JetLosses losses_;
  std::ostringstream progress_;
};

TEST_F(JetTableCopy, RowsComeOverInOrderWithAllTheirFields) {
  source_.AddRow("MAC", {{"RecNo", std::int64_t{7}},
                         {"IfIndex", std::int64_t{4}},
                         {"MacAddr", std::string("02 1B 2C 3D 4E 5F")},
                         {"IpAddr", std::string("10.1.0.9")},
                         {"LastSeen", JetDateOf("2024-05-01 12:30:00")}});
  source_.AddRow("MAC", {{"RecNo", std::int64_t{3}}});
  EXPECT_EQ(Copy("Reports.mdb", "MAC"), 2);
  EXPECT_EQ(
      installation_.Select("Reports.mdb", "SELECT * FROM MAC ORDER BY rowid"),
      (Lines{"7|4|02 1B 2C 3D 4E 5F|10.1.0.9|2024-05-01 12:30:00", "3|0|||2024-05-01 03:00:00"}));
  EXPECT_TRUE(losses_.empty());
  EXPECT_EQ(progress_.str(), "MAC: 2 of 2 rows\n");
}

TEST_F(JetTableCopy, WhatTheNewTableHeldGoes) {
  installation_.Sql("Reports.mdb", "INSERT INTO MAC (RecNo) VALUES (99)");
  EXPECT_EQ(Copy("Reports.mdb", "MAC"), 0);
  EXPECT_EQ(installation_.Select("Reports.mdb", "SELECT COUNT(*) FROM MAC"), Lines{"0"});
}

TEST_F(JetTableCopy, ColumnsMeetWithoutRegardToCase) {
  source_.RenameColumn("MAC", "RecNo", "RECNO");
  source_.AddRow("MAC", {{"RecNo", std::int64_t{7}}});
  Copy("Reports.mdb", "MAC");
  EXPECT_EQ(installation_.Select("Reports.mdb", "SELECT RecNo FROM MAC"), Lines{"7"});
  EXPECT_TRUE(losses_.empty());
}

TEST_F(JetTableCopy, AMissingColumnIsEmptyAndAnUnknownOneIsTold) {
  source_.RenameColumn("VLAN", "IfAlias", "Nickname");
  source_.RemoveColumn("VLAN", "VlanID");
  source_.AddRow("VLAN", {{"RecNo", std::int64_t{7}}, {"IfAlias", std::string("lost")}});
  EXPECT_EQ(Copy("Reports.mdb", "VLAN"), 1);
  EXPECT_EQ(installation_.Select("Reports.mdb", "SELECT RecNo, VlanID, IfAlias FROM VLAN"),
            Lines{"7|0|"});
  EXPECT_EQ(losses_.Lines(),
            (Lines{"VLAN: the column VlanID is missing; it gets what a new installation has",
                   "VLAN: the column IfAlias is missing; it gets what a new installation has",
                   "VLAN: the column Nickname has no place here"}));
}

TEST_F(JetTableCopy, ARowWithAFieldThatDoesNotFitIsLeftOutAndTold) {
  for (const JetValue& recNo : {JetValue(std::int64_t{1}), JetValue(std::string("x")),
                                JetValue(3e9), JetValue(std::int64_t{4})}) {
    source_.AddRow("MAC", {{"RecNo", recNo}});
  }
  EXPECT_EQ(Copy("Reports.mdb", "MAC"), 2);
  EXPECT_EQ(installation_.Select("Reports.mdb", "SELECT RecNo FROM MAC ORDER BY rowid"),
            (Lines{"1", "4"}));
  EXPECT_EQ(losses_.Lines(),
            (Lines{"MAC, row 2, RecNo: \"x\" is no number; the row is left out",
                   "MAC, row 3, RecNo: number out of range: 3000000000; the row is left out"}));
}

TEST_F(JetTableCopy, ASettingThatIsMissingOrDoesNotFitIsThatOfANewInstallation) {
  source_ = EmptyOld("Quillon.mdb");
  source_.RemoveColumn("Settings_WebServer", "CharSet");
  source_.AddRow("Settings_WebServer", {{"IpAddr", std::string("10.1.0.5")},
                                        {"TcpPort", std::string("http")},
                                        {"Enabled", JetNull{}}});
  EXPECT_EQ(Copy("Quillon.mdb", "Settings_WebServer"), 1);
  EXPECT_EQ(installation_.Select(
                "Quillon.mdb", "SELECT IpAddr, TcpPort, Enabled, CharSet FROM Settings_WebServer"),
            Lines{"10.1.0.5|8080|1|ISO-8859-1"});
  EXPECT_EQ(losses_.Lines().size(), 3u);
}

TEST_F(JetTableCopy, ATableOfOneRowHasOneRowAfterwards) {
  for (const int rows : {0, 1, 2}) {
    source_ = EmptyOld("Quillon.mdb");
    for (int row = 1; row <= rows; ++row) {
      source_.AddRow("Settings_SnmpAgent", {{"TrapComm", "row " + std::to_string(row)}});
    }
    losses_ = {};
    Copy("Quillon.mdb", "Settings_SnmpAgent");
    EXPECT_EQ(installation_.Select("Quillon.mdb", "SELECT TrapComm FROM Settings_SnmpAgent"),
              Lines{rows == 0 ? "public" : "row 1"})
        << rows;
    EXPECT_EQ(losses_.empty(), rows == 1) << rows;
  }
}

TEST_F(JetTableCopy, AFolderOfAnotherSystemDoesNotReplaceTheOneThatIsSet) {
  const std::pair<const char*, std::string> kCases[] = {
      {"C:\\Morvane", installation_.path()}, {"", installation_.path()}, {"/opt/old", "/opt/old"}};
  for (const auto& [old, expected] : kCases) {
    source_ = EmptyOld("Quillon.mdb");
    source_.AddRow("Settings_General", {{"SnmpcDir", std::string(old)}});
    losses_ = {};
    Copy("Quillon.mdb", "Settings_General");
    EXPECT_EQ(installation_.Select("Quillon.mdb", "SELECT SnmpcDir FROM Settings_General"),
              Lines{expected})
        << old;
    EXPECT_EQ(losses_.empty(), expected == old) << old;
  }
}

TEST_F(JetTableCopy, ALargeTableTellsHowFarItIs) {
  for (int row = 0; row < 100'000; ++row) source_.AddRow("MAC", {});
  installation_.Sql("Reports.mdb", "PRAGMA synchronous = OFF");
  const SqliteFile database = SqliteFile::InMemory();
  database.RunScript("CREATE TABLE MAC (RecNo INTEGER)");
  CopyTable(source_, source_.Tables()[1], {database, database, losses_, progress_},
            {"MAC", ColumnsOf(database, "MAC")}, "MAC");
  EXPECT_EQ(progress_.str(), "MAC: 100000 of 100000 rows ...\nMAC: 100000 of 100000 rows\n");
}

}  // namespace
}  // namespace quillon
