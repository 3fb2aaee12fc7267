// Nights on which something is broken: a failing step costs its own work and no other's, the day
// counts as done, and the next day is imported as if nothing had been.
#include <chrono>

#include "import/night_fixture.h"
#include "support/file_size_limit.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using std::chrono::seconds;

class ImportFailuresTest : public ImportNightTest {
 protected:
  ImportFailuresTest() {
    AddPort();
    AddPort({{"IfIndex", "2"}, {"IsTrunk", "TRUE"}});
    AddStorage();
    AddStorage({{"StorDescr", "'/'"}});
  }

  // How many rows there are: "<switch day>|<access sums>|<trunk sums>|<disk day>|<disk sums>".
  // A table that is missing is a "-".
  std::string Counts(const std::string& number = "01") const {
    return Count("VLAN_Day" + number) + "|" + Count("VLAN_HistSum", "IsTrunk = 0") + "|" +
           Count("VLAN_HistSum", "IsTrunk = 1") + "|" + Count("Disk_Day" + number) + "|" +
           Count("Disk_HistSum");
  }
  bool IsMarkedAsDone() const { return Mark("date(LastImport)") == "2024-05-02"; }
  // How many control rows stand on yesterday: "<switches>|<disks>".
  std::string Stamped() const {
    return Count("VLAN_HistCtrl", "date(TrafficDate) = '2024-05-01'") + "|" +
           Count("Disk_HistCtrl", "date(StorageDate) = '2024-05-01'");
  }
  void ExpectSoundFiles() const {
    for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) {
      EXPECT_EQ(house.installation.Select(file, "PRAGMA integrity_check"), Lines{"ok"}) << file;
    }
  }

 private:
  std::string Count(const std::string& table, const std::string& condition = "TRUE") const {
    const bool isThere =
        History("SELECT name FROM sqlite_master WHERE name = '" + table + "'").size() == 1;
    return isThere ? History("SELECT COUNT(*) FROM " + table + " WHERE " + condition)[0] : "-";
  }
};

TEST_F(ImportFailuresTest, WithoutAFailureEveryStepLeavesItsRows) {
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Counts(), "2|1|1|2|1");
  EXPECT_EQ(Stamped(), "1|1");
  ExpectNoEvent();
}

// What the tables of one broken night hold, and which procedures told of it.
struct BrokenNight {
  std::string name;
  std::string file;
  std::string damage;
  std::vector<std::string> failures;
  std::string counts;   // as Counts
  std::string stamped;  // as Stamped
};

class BrokenNightTest : public ImportFailuresTest,
                        public testing::WithParamInterface<BrokenNight> {};

TEST_P(BrokenNightTest, OtherStepsRunAndTheDayIsDone) {
  const BrokenNight& night = GetParam();
  house.installation.Sql(night.file, night.damage);
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Failures(), night.failures);
  EXPECT_EQ(Mark("date(LastImport)"), "2024-05-02");
  EXPECT_EQ(Counts(), night.counts);
  EXPECT_EQ(Stamped(), night.stamped);

  house.clock.Set("2024-05-02 13:00:20");
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(Failures(), night.failures);
}

const BrokenNight kBrokenNights[] = {
    BrokenNight{"SwitchDayTableIsMissing",
                "History.mdb",
                "DROP TABLE VLAN_Day01",
                {"modImport_ClearTable_VLAN_Day01", "modImport_SwitchStatsCopyToHist_VLAN_Day01"},
                "-|1|1|2|1",
                "1|1"},
    BrokenNight{"DiskDayTableIsMissing",
                "History.mdb",
                "DROP TABLE Disk_Day01",
                {"modImport_ClearTable_Disk_Day01", "modImport_DiskStatsCopyToHist_Disk_Day01",
                 "modImport_DiskFixTrendValues", "modImport_DiskStatsSum"},
                "2|1|1|-|0",
                "1|1"},
    BrokenNight{"SwitchControlTableIsMissing",
                "History.mdb",
                "DROP TABLE VLAN_HistCtrl",
                {"modImport_SwitchStatsToHist"},
                "0|1|1|2|1",
                "-|1"},
    BrokenNight{
        "DiskControlTableIsMissing",
        "History.mdb",
        "DROP TABLE Disk_HistCtrl",
        {"modImport_DiskStatsToHist", "modImport_DiskFixTrendValues", "modImport_DiskStatsSum"},
        "2|1|1|0|0",
        "1|-"},
    BrokenNight{
        "SwitchSumsAreMissing",
        "History.mdb",
        "DROP TABLE VLAN_HistSum",
        {"modImport_ClearSwitchHistSum", "modImport_SwitchStatsSum", "modImport_SwitchStatsSum"},
        "2|-|-|2|1",
        "1|1"},
    BrokenNight{"DiskSumsAreMissing",
                "History.mdb",
                "DROP TABLE Disk_HistSum",
                {"modImport_ClearDiskHistSum", "modImport_DiskStatsSum"},
                "2|1|1|2|-",
                "1|1"},
    BrokenNight{"PortsAreMissing",
                "Reports.mdb",
                "DROP TABLE VLAN",
                {"modImport_SwitchStatsCopyToHist_VLAN_Day01", "modImport_SwitchStatsSum",
                 "modImport_SwitchStatsSum"},
                "0|0|0|2|1",
                "1|1"},
    BrokenNight{"StoragesAreMissing",
                "Reports.mdb",
                "DROP TABLE HostDiskInfo",
                {"modImport_DiskStatsCopyToHist_Disk_Day01"},
                "2|1|1|0|1",
                "1|1"},
    BrokenNight{"FreeSizeIsNull",
                "Reports.mdb",
                "UPDATE HostDiskInfo SET FreeRawM = NULL WHERE StorDescr = '/'",
                {"modImport_DiskStatsCopyToHist_Disk_Day01"},
                "2|1|1|1|1",
                "1|1"},
    BrokenNight{"UsedSizeIsNull",
                "Reports.mdb",
                "UPDATE HostDiskInfo SET UsedRawM = NULL WHERE StorDescr = 'C:'",
                {"modImport_DiskStatsCopyToHist_Disk_Day01"},
                "2|1|1|0|1",
                "1|1"},
    BrokenNight{"UsedShareIsNullAndNothingIsCompared",
                "Reports.mdb",
                "UPDATE HostDiskInfo SET UsedProc = NULL WHERE StorDescr = '/'",
                {},
                "2|1|1|2|1",
                "1|1"},
    BrokenNight{"AccessSumOverflows",
                "Reports.mdb",
                "UPDATE VLAN SET InHCOctetsMb24H = 2147483648 WHERE IsTrunk = 0",
                {"modImport_SwitchStatsSum"},
                "2|0|1|2|1",
                "1|1"},
    BrokenNight{"TrunkSumOverflows",
                "Reports.mdb",
                "UPDATE VLAN SET OutErrorsTot24H = -2147483649 WHERE IsTrunk = 1",
                {"modImport_SwitchStatsSum"},
                "2|1|0|2|1",
                "1|1"},
};

INSTANTIATE_TEST_SUITE_P(Import, BrokenNightTest, testing::ValuesIn(kBrokenNights),
                         [](const auto& night) { return night.param.name; });

TEST_F(ImportFailuresTest, UsedShareThatIsNullEndsTheTrendsAlone) {
  StampDisk(2, "2024-04-17 13:00:00");
  ReportsSql("UPDATE HostDiskInfo SET UsedProc = NULL WHERE StorDescr = 'C:'");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Failures(), Lines{"modImport_DiskFixTrendValues"});
  EXPECT_EQ(Counts(), "2|1|1|2|1");
  EXPECT_EQ(History("SELECT Trend14d, Trend30d FROM Disk_Day01"), (Lines{"77|88", "77|88"}));
}

TEST_F(ImportFailuresTest, NightWithoutReadableReportsStillCountsAsDone) {
  const Lines failures = {"modImport_SwitchStatsCopyToHist_VLAN_Day01", "modImport_SwitchStatsSum",
                          "modImport_SwitchStatsSum", "modImport_DiskStatsCopyToHist_Disk_Day01"};
  house.installation.Remove("Reports.mdb");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Failures(), failures);
  EXPECT_EQ(Counts(), "0|0|0|0|1");
  EXPECT_EQ(Stamped(), "1|1");
  EXPECT_TRUE(IsMarkedAsDone());
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));

  house.ForgetEvents();
  SetMark("LastImport", "'2024-05-01 04:00:00'");
  house.installation.Write("Reports.mdb", "This is a text and no database.");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Failures(),
            (Lines{"modImport_SwitchStatsCopyToHist_VLAN_Day02", "modImport_SwitchStatsSum",
                   "modImport_SwitchStatsSum", "modImport_DiskStatsCopyToHist_Disk_Day02"}));
}

TEST_F(ImportFailuresTest, NightBehindABrokenOneIsWhole) {
  ReportsSql("ALTER TABLE VLAN RENAME TO Hidden; ALTER TABLE HostDiskInfo RENAME TO HiddenDisks");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Counts(), "0|0|0|0|1");
  ReportsSql("ALTER TABLE Hidden RENAME TO VLAN; ALTER TABLE HiddenDisks RENAME TO HostDiskInfo");
  house.ForgetEvents();
  house.clock.Set("2024-05-03 04:00:20");
  Report();
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Counts("02"), "2|1|1|2|2");
  ExpectNoEvent();
}

TEST_F(ImportFailuresTest, EventOfAFailureLetsOthersWrite) {
  HistorySql("DROP TABLE VLAN_Day01; CREATE TABLE Notes (Note TEXT)");
  house.loop.OnTurn([this] {
    if (History("SELECT * FROM Notes").empty() && !house.Events().empty()) {
      HistorySql("INSERT INTO Notes VALUES ('in the wait')");
    }
  });
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT * FROM Notes"), Lines{"in the wait"});
  EXPECT_EQ(Failures(), (Lines{"modImport_ClearTable_VLAN_Day01",
                               "modImport_SwitchStatsCopyToHist_VLAN_Day01"}));
}

// A history that another program keeps locked, for so many seconds of the clock.
class LockedHistoryTest : public ImportFailuresTest {
 protected:
  bool ImportWhileLockedFor(seconds duration) {
    OtherWriter other(house.installation.path() + "/History.mdb");
    const DateTime end = house.clock.Now() + duration;
    house.loop.OnTurn([&, end] {
      house.loop.Post([this] { ++servedEvents; });
      if (house.clock.Now() >= end) other.End();
    });
    const bool result = RunImport();
    house.loop.OnTurn([] {});
    return result;
  }

  int servedEvents = 0;
};

TEST_F(LockedHistoryTest, LockOfFourSecondsIsWaitedOutWhileEventsRun) {
  EXPECT_TRUE(ImportWhileLockedFor(seconds(4)));
  EXPECT_EQ(Counts(), "2|1|1|2|1");
  EXPECT_EQ(Stamped(), "1|1");
  EXPECT_TRUE(IsMarkedAsDone());
  EXPECT_GE(house.clock.slept(), seconds(4));
  EXPECT_GE(servedEvents, 300);
  ExpectNoEvent();
}

// Each write is tried for five seconds, and each failure waits its half second: the copy, the
// control row and the sums of the access ports are over when the lock goes.
TEST_F(LockedHistoryTest, LockOfEighteenSecondsCostsTheStepsThatMeetIt) {
  EXPECT_TRUE(ImportWhileLockedFor(seconds(18)));
  EXPECT_EQ(Failures(), (Lines{"modImport_SwitchStatsCopyToHist_VLAN_Day01",
                               "modImport_SwitchStatsToHist", "modImport_SwitchStatsSum"}));
  EXPECT_EQ(Counts(), "0|0|1|2|1");
  EXPECT_EQ(Stamped(), "0|1");
  EXPECT_TRUE(IsMarkedAsDone());
}

TEST_F(LockedHistoryTest, LockOfAMinuteLeavesTheDayToTheNextPass) {
  const Lines before = WholeHistory();
  EXPECT_FALSE(ImportWhileLockedFor(seconds(60)));
  EXPECT_EQ(Failures(),
            (Lines{"modImport_SwitchStatsCopyToHist_VLAN_Day01", "modImport_SwitchStatsToHist",
                   "modImport_SwitchStatsSum", "modImport_SwitchStatsSum",
                   "modImport_DiskStatsCopyToHist_Disk_Day01", "modImport_DiskStatsToHist",
                   "modImport_Import"}));
  EXPECT_LT(house.clock.slept(), seconds(60));
  EXPECT_EQ(WholeHistory(), before);

  house.ForgetEvents();
  house.clock.Set("2024-05-02 13:00:20");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Counts(), "2|1|1|2|1");
  EXPECT_EQ(Stamped(), "1|1");
  ExpectNoEvent();
}

// How much of the import a disk has room for.
enum class Room { kNone, kSome, kEnough };
struct DiskSize {
  rlim_t bytes;  // to which a file can grow
  Room room;
};

class FullDiskTest : public ImportFailuresTest, public testing::WithParamInterface<DiskSize> {
 protected:
  FullDiskTest() {
    AddPorts(1500);
    const std::string numbers = NumbersUpTo(300);
    ReportsSql(numbers +
               "INSERT INTO HostDiskInfo SELECT RecNo + n, DevName, StorDescr, FreeRawM, UsedRawM,"
               " UsedProc, UsedProc14Trend, UsedProc30Trend, LastUpdate FROM HostDiskInfo, Number"
               " WHERE StorDescr = 'C:'");
    HistorySql(numbers + "INSERT INTO VLAN_Day02 (RecNo, IfIndex) SELECT 7, n FROM Number;" +
               numbers + "INSERT INTO Disk_Day02 (RecNo, UsedProc) SELECT n, n FROM Number");
    StampSwitch(2, "2024-04-20 13:00:00");
    StampDisk(2, "2024-04-20 13:00:00");
  }

  Lines OldDay() const {
    return History(
        "SELECT * FROM VLAN_HistCtrl WHERE HistTable = 'VLAN_Day02';"
        "SELECT * FROM Disk_HistCtrl WHERE HistTable = 'Disk_Day02';"
        "SELECT * FROM VLAN_Day02; SELECT * FROM Disk_Day02");
  }
  // Number of rows of the table that the control table names for 2024-05-02.
  std::string RowsOfTheNextDay(const std::string& control, const std::string& date) const {
    const Lines tables =
        History("SELECT HistTable FROM " + control + " WHERE date(" + date + ") = '2024-05-02'");
    if (tables.size() != 1) return "no single table";
    return History("SELECT COUNT(*) FROM " + tables[0])[0];
  }
  void ExpectThatTheNextDayIsWhole() {
    house.ForgetEvents();
    house.clock.Set("2024-05-03 04:00:20");
    Report();
    EXPECT_TRUE(RunImport());
    ExpectNoEvent();
    EXPECT_EQ(RowsOfTheNextDay("VLAN_HistCtrl", "TrafficDate"), "1502");
    EXPECT_EQ(RowsOfTheNextDay("Disk_HistCtrl", "StorageDate"), "302");
    EXPECT_EQ(History("SELECT IsTrunk, Ports, PortsInTraffic FROM VLAN_HistSum"
                      " WHERE date(TrafficDate) = '2024-05-02'"),
              (Lines{"0|1501|1501", "1|1|1"}));
    EXPECT_EQ(History("SELECT NumWindows, NumUnix FROM Disk_HistSum"
                      " WHERE date(StorageDate) = '2024-05-02'"),
              Lines{"301|1"});
    ExpectSoundFiles();
  }
};

TEST_P(FullDiskTest, FilesStaySoundAndTheNextDayIsWhole) {
  const Lines oldDay = OldDay();
  const Lines before = WholeHistory();
  bool result = false;
  {
    const FileSizeLimit disk(GetParam().bytes);
    result = RunImport();
  }
  ExpectSoundFiles();
  EXPECT_EQ(result, IsMarkedAsDone());
  for (const std::string& failure : Failures()) {
    EXPECT_TRUE(failure.starts_with("modImport_")) << failure;
  }
  switch (GetParam().room) {
    case Room::kNone:
      EXPECT_FALSE(result);
      EXPECT_EQ(Failures(), Lines{"modImport_Import"});
      EXPECT_EQ(WholeHistory(), before);
      break;
    case Room::kSome:
      EXPECT_NE(Failures(), Lines{});
      break;
    case Room::kEnough:
      EXPECT_TRUE(result);
      EXPECT_EQ(Failures(), Lines{});
      EXPECT_EQ(Counts(), "1502|1|1|302|1");
      break;
  }
  EXPECT_EQ(OldDay(), oldDay);
  ExpectThatTheNextDayIsWhole();
}

constexpr rlim_t kKilobyte = 1024;

INSTANTIATE_TEST_SUITE_P(
    Import, FullDiskTest,
    testing::Values(DiskSize{8 * kKilobyte, Room::kNone}, DiskSize{34 * kKilobyte, Room::kSome},
                    DiskSize{48 * kKilobyte, Room::kSome}, DiskSize{64 * kKilobyte, Room::kSome},
                    DiskSize{128 * kKilobyte, Room::kSome}, DiskSize{256 * kKilobyte, Room::kSome},
                    DiskSize{400 * kKilobyte, Room::kSome},
                    DiskSize{64 * kKilobyte * kKilobyte, Room::kEnough}),
    [](const auto& size) { return std::to_string(size.param.bytes / kKilobyte) + "Kilobytes"; });

}  // namespace
}  // namespace quillon
