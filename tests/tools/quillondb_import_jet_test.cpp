// quillondb import-jet: a whole old installation into a new one.
#include <gtest/gtest.h>

#include <sstream>

#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "quillondb/jet/import_jet.h"
#include "support/installation.h"
#include "tools/jet_old_installation.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

class QuillondbImportJet : public testing::Test {
 protected:
  // What the import says.
  std::string Import(bool replace = false, bool dryRun = false) {
    std::ostringstream out;
    ImportJet({installation_.path(), replace, dryRun},
              {{"Reports.mdb", old_.reports},
               {"History.mdb", old_.history},
               {"Quillon.mdb", old_.settings}},
              out);
    return out.str();
  }

  std::string FailureOfImport() {
    try {
      Import();
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return "no failure";
  }

  Lines Select(const std::string& file, const std::string& select) const {
    return installation_.Select(file, select);
  }

  // What tells whether anything was written.
  Lines Written() const {
    return {Select("Reports.mdb", "SELECT COUNT(*) FROM VLAN").at(0),
            Select("History.mdb", "SELECT LastImport FROM General_Info").at(0),
            Select("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer").at(0)};
  }

  OldInstallation old_;
  Installation installation_;
  const Lines kNothingWritten = {"0", "2000-01-01 00:00:00", "8080"};
};

TEST_F(QuillondbImportJet, EverythingIsThereAfterwards) {
  const std::string said = Import();
  EXPECT_EQ(Written(), (Lines{"1", "2024-05-01 04:00:00", "80"}));
  EXPECT_EQ(
      Select("Reports.mdb", "SELECT (SELECT RecNo FROM MAC), (SELECT RecNo FROM HostDiskInfo)"),
      Lines{"7|900"});
  EXPECT_EQ(Select("History.mdb", "SELECT Ports FROM VLAN_HistSum"), Lines{"400"});
  EXPECT_EQ(Select("Quillon.mdb", "SELECT DatumFormat, SnmpcDir FROM Settings_General"),
            Lines{"DD/MM/YYYY|/opt/old"});
  EXPECT_EQ(Select("Quillon.mdb", "SELECT Name FROM Settings_RepReceiver ORDER BY rowid"),
            (Lines{"Anna", "Bert"}));
  EXPECT_NE(said.find("14 rows were taken over\n"), std::string::npos) << said;
  EXPECT_NE(said.find("VLAN_Day01: 1 of 1 rows\n"), std::string::npos) << said;
}

TEST_F(QuillondbImportJet, TheRotationsNameTheNewTablesOfTheOldDays) {
  Import();
  const std::string kUsed = " WHERE TrafficDate > '2000-01-01 00:00:00' ORDER BY rowid";
  EXPECT_EQ(Select("History.mdb", "SELECT TrafficDate, HistTable FROM VLAN_HistCtrl" + kUsed),
            (Lines{"2024-04-30 05:00:00|VLAN_Day01", "2024-04-29 05:00:00|VLAN_Day02"}));
  EXPECT_EQ(Select("History.mdb",
                   "SELECT (SELECT RecNo FROM VLAN_Day01), (SELECT RecNo FROM VLAN_Day02),"
                   " (SELECT RecNo FROM Disk_Day01), (SELECT COUNT(*) FROM Disk_HistCtrl)"),
            Lines{"2|1|900|45"});
}

TEST_F(QuillondbImportJet, ADryRunSaysTheSameAndWritesNothing) {
  const std::string said = Import(false, true);
  EXPECT_EQ(Written(), kNothingWritten);
  EXPECT_NE(said.find("14 rows would be taken over; nothing was written\n"), std::string::npos)
      << said;
  EXPECT_NE(said.find("VLAN: 1 of 1 rows\n"), std::string::npos) << said;
}

TEST_F(QuillondbImportJet, RowsThatAreThereGoOnlyWhenTheyMay) {
  struct Case {
    const char* file;
    const char* change;
    const char* table;
  };
  const Case kCases[] = {
      {"Reports.mdb", "INSERT INTO MAC (RecNo) VALUES (1)", "MAC"},
      {"History.mdb", "INSERT INTO Disk_Day45 (RecNo) VALUES (1)", "Disk_Day45"},
      {"History.mdb", "UPDATE General_Info SET LastImport = '2024-05-01 00:00:00'", "General_Info"},
      {"History.mdb",
       "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-05-01 00:00:00'"
       " WHERE HistTable = 'VLAN_Day07'",
       "VLAN_HistCtrl"},
      {"Quillon.mdb", "UPDATE Settings_SnmpAgent SET TrapComm = 'mine'", "Settings_SnmpAgent"},
      {"Quillon.mdb", "INSERT INTO Settings_RepReceiver (Name) VALUES ('Carl')",
       "Settings_RepReceiver"},
  };
  for (const Case& each : kCases) {
    const Installation fresh;
    std::ostringstream out;
    fresh.Sql(each.file, each.change);
    const auto import = [&](bool replace) {
      ImportJet({fresh.path(), replace, false},
                {{"Reports.mdb", old_.reports},
                 {"History.mdb", old_.history},
                 {"Quillon.mdb", old_.settings}},
                out);
    };
    try {
      import(false);
      ADD_FAILURE() << each.table;
    } catch (const DatabaseFailure& failure) {
      const std::string said = failure.what();
      EXPECT_NE(said.find(std::string("the table ") + each.table + " holds rows"),
                std::string::npos)
          << said;
    }
    EXPECT_EQ(fresh.Select("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), Lines{"0"}) << each.table;
    EXPECT_NO_THROW(import(true)) << each.table;
    EXPECT_EQ(fresh.Select("Reports.mdb", "SELECT RecNo FROM MAC"), Lines{"7"}) << each.table;
    EXPECT_EQ(fresh.Select("History.mdb", "SELECT COUNT(*) FROM Disk_Day45"), Lines{"0"});
    EXPECT_EQ(fresh.Select("History.mdb",
                           "SELECT TrafficDate FROM VLAN_HistCtrl WHERE HistTable = 'VLAN_Day07'"),
              Lines{"2000-01-01 00:00:00"})
        << each.table;
  }
}

TEST_F(QuillondbImportJet, WhatTheServiceHasWrittenAtItsStartMayGo) {
  installation_.Sql("Quillon.mdb",
                    "UPDATE Settings_WebServer SET IpAddr = '127.0.0.1', Status = 'Started'");
  installation_.Sql("Quillon.mdb", "UPDATE Settings_SnmpAgent SET Status = 'Started'");
  EXPECT_NO_THROW(Import());
}

TEST_F(QuillondbImportJet, ASecondImportIsRefusedLikeAnyOtherRows) {
  Import();
  EXPECT_NE(FailureOfImport().find("--replace"), std::string::npos);
  EXPECT_NO_THROW(Import(true));
}

TEST_F(QuillondbImportJet, MissingTablesAreNamedAndNothingIsWritten) {
  old_.settings.RemoveTable("Settings_SmtpServer");
  old_.settings.RemoveTable("Settings_RepReceiver");
  EXPECT_NE(FailureOfImport().find("old.mdb cannot become Quillon.mdb: it lacks the tables "
                                   "Settings_RepReceiver, Settings_SmtpServer;"),
            std::string::npos)
      << FailureOfImport();
  EXPECT_EQ(Written(), kNothingWritten);
}

TEST_F(QuillondbImportJet, ADayTableThatAControlRowNamesHasToBeThere) {
  old_.history.RemoveTable("VLAN_T1");
  EXPECT_NE(FailureOfImport().find("it lacks the tables VLAN_T1;"), std::string::npos)
      << FailureOfImport();
  EXPECT_EQ(Written(), kNothingWritten);
}

TEST_F(QuillondbImportJet, AFileThatFailsHalfWayLeavesAllDatabasesAsTheyWere) {
  for (const char* table : {"Settings_General", "Settings_RepReceiver"}) {
    old_.settings.Damage(table);
    EXPECT_EQ(FailureOfImport(), "cannot be read to its end");
    EXPECT_EQ(Written(), kNothingWritten) << table;
  }
}

TEST_F(QuillondbImportJet, AnUnknownTableIsToldAndTablesMeetWithoutRegardToCase) {
  old_.reports.AddTable("Scratch", {{"x", "INTEGER"}});
  old_.reports.RenameTable("VLAN", "Vlan");
  const std::string said = Import();
  EXPECT_NE(said.find("  Scratch: the table has no place here\n"), std::string::npos) << said;
  EXPECT_EQ(said.find("Vlan:"), std::string::npos) << said;
  EXPECT_EQ(Written()[0], "1");
}

TEST_F(QuillondbImportJet, IsRefusedWhileTheServiceRuns) {
  const InstanceLock service(installation_.path());
  EXPECT_NE(FailureOfImport().find("the service is running"), std::string::npos);
}

TEST_F(QuillondbImportJet, NeedsCreatedDatabases) {
  installation_.Remove("History.mdb");
  EXPECT_NE(FailureOfImport().find("quillondb restore"), std::string::npos);
}

TEST_F(QuillondbImportJet, FilesThatAreNoneAreNamedBeforeAnythingElse) {
  installation_.Write("old.mdb", "SQLite format 3");
  std::ostringstream out;
  const std::string old = installation_.path() + "/old.mdb";
  try {
    ImportJetFiles({installation_.path()}, {old, old, old}, out);
    ADD_FAILURE();
  } catch (const FileFailure& failure) {
    EXPECT_EQ(failure.what(), old + " is no Jet database file");
  }
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace quillon
