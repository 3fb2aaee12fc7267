// quillondb sync-jet: the nightly hand-over of the statistics.
#include <gtest/gtest.h>

#include <sstream>

#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "quillondb/jet/sync_jet.h"
#include "support/installation.h"
#include "tools/jet_old_installation.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

class QuillondbSyncJet : public testing::Test {
 protected:
  std::string Sync(bool dryRun = false) {
    std::ostringstream out;
    SyncJet({installation_.path(), dryRun}, old_.reports, now_, out);
    return out.str();
  }

  std::string FailureOfSync() {
    try {
      Sync();
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return "no failure";
  }

  Lines Devices() const {
    return installation_.Select("Reports.mdb", "SELECT RecNo FROM VLAN ORDER BY rowid");
  }

  Lines Marks() const {
    return installation_.Select("History.mdb",
                                "SELECT LastReport, LastImport, ReportEnd FROM General_Info");
  }

  DateTime now_ = ParseDateTime("2024-05-02 04:10:00").value();
  OldInstallation old_{"2024-05-02 03:00:00"};
  Installation installation_;
  const Lines kNoMarks = {"2000-01-01 00:00:00|2000-01-01 00:00:00|"};
};

TEST_F(QuillondbSyncJet, PutsTheStatisticsInPlaceAndMarksTheReportAsDone) {
  installation_.Sql("Reports.mdb", "INSERT INTO VLAN (RecNo) VALUES (1), (2)");
  const std::string said = Sync();
  EXPECT_EQ(Devices(), Lines{"7"});
  EXPECT_EQ(Marks(), Lines{"2024-05-02 04:10:00|2000-01-01 00:00:00|2024-05-02&nbsp;&nbsp03:00"});
  EXPECT_NE(said.find("3 rows were taken over\n"), std::string::npos) << said;
}

TEST_F(QuillondbSyncJet, TakesNothingWhereTheMarksCannotBeSet) {
  installation_.Sql("Reports.mdb", "INSERT INTO VLAN (RecNo) VALUES (1)");
  installation_.Sql("History.mdb", "DELETE FROM General_Info");
  EXPECT_NE(FailureOfSync().find("General_Info has no row"), std::string::npos);
  EXPECT_EQ(Devices(), Lines{"1"});
}

TEST_F(QuillondbSyncJet, CanBeRepeated) {
  Sync();
  Sync();
  EXPECT_EQ(Devices(), Lines{"7"});
}

TEST_F(QuillondbSyncJet, LeavesHistoryAndSettingsAlone) {
  installation_.Sql("History.mdb", "INSERT INTO VLAN_Day01 (RecNo) VALUES (5)");
  installation_.Sql("Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 81");
  Sync();
  EXPECT_EQ(installation_.Select("History.mdb", "SELECT RecNo FROM VLAN_Day01"), Lines{"5"});
  EXPECT_EQ(installation_.Select("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"),
            Lines{"81"});
}

TEST_F(QuillondbSyncJet, AReportOfAnotherDayIsNotTaken) {
  old_ = OldInstallation("2024-05-01 23:59:59");
  installation_.Sql("Reports.mdb", "INSERT INTO VLAN (RecNo) VALUES (1)");
  EXPECT_NE(FailureOfSync().find("old.mdb has no statistics of 2024-05-02"), std::string::npos)
      << FailureOfSync();
  EXPECT_EQ(Devices(), Lines{"1"});
  EXPECT_EQ(Marks(), kNoMarks);
}

TEST_F(QuillondbSyncJet, StoragesOfTheDayAreEnough) {
  old_.reports.RemoveTable("VLAN");
  old_.reports.AddTable("VLAN", ExpectedTables("Reports.mdb").front().columns);
  Sync();
  EXPECT_NE(Marks(), kNoMarks);
}

TEST_F(QuillondbSyncJet, WhatFailsHalfWayLeavesStatisticsAndMarksAsTheyWere) {
  installation_.Sql("Reports.mdb", "INSERT INTO VLAN (RecNo) VALUES (1)");
  old_.reports.Damage("HostDiskInfo");
  EXPECT_EQ(FailureOfSync(), "cannot be read to its end");
  EXPECT_EQ(Devices(), Lines{"1"});
  EXPECT_EQ(Marks(), kNoMarks);
}

TEST_F(QuillondbSyncJet, ADryRunWritesNeitherRowsNorMarks) {
  const std::string said = Sync(true);
  EXPECT_EQ(Devices(), Lines{});
  EXPECT_EQ(Marks(), kNoMarks);
  EXPECT_NE(said.find("3 rows would be taken over"), std::string::npos) << said;
}

TEST_F(QuillondbSyncJet, WorksWhileTheServiceRuns) {
  const InstanceLock service(installation_.path());
  EXPECT_NO_THROW(Sync());
}

TEST_F(QuillondbSyncJet, AFileThatIsNoneIsNamed) {
  installation_.Write("old.mdb", "");
  std::ostringstream out;
  const std::string old = installation_.path() + "/old.mdb";
  EXPECT_THROW(SyncJetFile({installation_.path()}, old, now_, out), FileFailure);
  EXPECT_EQ(Marks(), kNoMarks);
}

}  // namespace
}  // namespace quillon
