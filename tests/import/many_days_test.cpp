// Imports of many days in a row, with figures that tell their day: what the rotations, the sums
// and the trends hold behind regular nights, behind gaps, and behind a clock that was put back.
#include <array>
#include <chrono>

#include "import/night_fixture.h"

namespace quillon {
namespace {

using std::chrono::days;
using std::chrono::hours;

constexpr int kTables = 45;
constexpr int kLimit = 45;       // days: a table that is older is free
constexpr int kNever = -10'000;  // the day of a table that was never filled

class ManyDaysTest : public ImportNightTest {
 protected:
  // Two ports and two storages, whose figures each night changes.
  ManyDaysTest() {
    DropIndexes();
    AddPorts(2);
    ReportsSql("UPDATE VLAN SET IsTrunk = (IfIndex = 2)");
    AddStorage();
    AddStorage({{"StorDescr", "'/'"}});
  }

  // They serve large tables only, and each opening of the file would read them.
  void DropIndexes() const {
    std::string statements;
    for (const std::string& index :
         History("SELECT name FROM sqlite_master WHERE type = 'index'")) {
      statements += "DROP INDEX " + index + ";";
    }
    HistorySql("BEGIN;" + statements + "COMMIT;");
  }

  // Noon of a day, counted from 0; a long run passes a leap day and the ends of two years.
  static DateTime Noon(int day) { return MakeDateTime({2023, 12, 1, 12, 0, 0}) + days(day); }

  // Percent used on a day: of the disk C:, and of the disk /.
  static int UsedOfC(int day) { return day % 50; }
  static int UsedOfRoot(int day) { return 7 * day % 61; }

  // A night with a report, and the import at noon behind it. Whether the import ran.
  bool NightWithReport(int day) {
    house.clock.Set(Noon(day) - hours(9));
    const std::string number = std::to_string(day);
    ReportsSql("UPDATE VLAN SET InHCOctetsMb24H = 1000 * IfIndex + " + number +
               "; UPDATE HostDiskInfo SET UsedRawM = 1000 + " + number +
               ", UsedProc = CASE StorDescr WHEN 'C:' THEN " + std::to_string(UsedOfC(day)) +
               " ELSE " + std::to_string(UsedOfRoot(day)) + " END");
    Report();
    house.clock.Set(Noon(day));
    return RunImport();
  }
  bool NightWithoutReport(int day) {
    house.clock.Set(Noon(day));
    return RunImport();
  }

  // The day that a table holds is the one before its import.
  static std::string HeldDay(int importDay) {
    return importDay == kNever ? "2000-01-01" : DayText(Noon(importDay - 1));
  }

  // What the copies of a day have to be, behind the day that the control row tells.
  static Lines SwitchDay(int day) {
    const std::string held = HeldDay(day) + "|";
    return {held + "1|" + std::to_string(1000 + day) + "|0",
            held + "2|" + std::to_string(2000 + day) + "|1"};
  }
  static Lines DiskDay(int day) {
    const std::string held = HeldDay(day) + "|";
    const std::string used = "|" + std::to_string(1000 + day) + "|";
    return {held + "C:" + used + std::to_string(UsedOfC(day)),
            held + "/" + used + std::to_string(UsedOfRoot(day))};
  }

  // All rows of all day tables, each behind the day of its control row; the control rows in that
  // order.
  Lines SwitchDays(const std::string& order) const {
    return Days("SELECT date(TrafficDate), HistTable FROM VLAN_HistCtrl ORDER BY " + order,
                "IfIndex, InHCOctetsMb24H, IsTrunk");
  }
  Lines DiskDays(const std::string& order) const {
    return Days("SELECT date(StorageDate), HistTable FROM Disk_HistCtrl ORDER BY " + order,
                "StorDescr, UsedM, UsedProc");
  }

  // "VLAN_Day01" for 0, the first place.
  static std::string Table(const std::string& kind, int place) {
    return DayTable(kind + "_Day", place + 1);
  }

 private:
  Lines Days(const std::string& control, const std::string& fields) const {
    std::string selects;
    for (const std::string& row : History(control)) {
      const std::size_t bar = row.find('|');
      selects +=
          "SELECT '" + row.substr(0, bar) + "', " + fields + " FROM " + row.substr(bar + 1) + ";";
    }
    return History(selects);
  }
};

// A run that finds sums of before it, some of which reach their limit in it.
class LongRunTest : public ManyDaysTest {
 protected:
  static constexpr int kDays = 400;
  static constexpr int kLast = kDays - 1;
  static constexpr int kNightsOfSums = 20;
  static constexpr int kSumLimit = 1200;
  static constexpr int kOldestLeft = kLast - kSumLimit;
  static constexpr int kOldSums[] = {
      -1300, -1200, kOldestLeft - 2, kOldestLeft - 1, kOldestLeft, kOldestLeft + 1, -400, -2};

  LongRunTest() {
    std::string statements;
    for (const int day : kOldSums) {
      const std::string moment = "'" + DateTimeText(Noon(day)) + "'";
      for (const char* isTrunk : {"0", "1"}) {
        statements += InsertRow("VLAN_HistSum",
                                {{"TrafficDate", moment}, {"IsTrunk", isTrunk}, {"Ports", "0"}});
      }
      statements += InsertRow("Disk_HistSum", {{"StorageDate", moment}, {"NumWindows", "0"}});
    }
    HistorySql("BEGIN;" + statements + "COMMIT;");
  }

  void Run() {
    for (int day = 0; day < kDays; ++day) {
      ASSERT_TRUE(NightWithReport(day)) << day;
      if (day % kNightsOfSums == 0 || day == kLast) TakeSums();
    }
  }

  // Takes the sums of the last nights out of the history: each night walks all that there are.
  void TakeSums() {
    Append(switchSums, History("SELECT TrafficDate, IsTrunk, InHCOctetsMb24H, Ports, PortsInTraffic"
                               " FROM VLAN_HistSum WHERE Ports > 0"));
    Append(diskSums, History("SELECT StorageDate, UsedMWindows, UsedMUnix, NumWindows, NumUnix"
                             " FROM Disk_HistSum WHERE NumWindows > 0"));
    HistorySql(
        "DELETE FROM VLAN_HistSum WHERE Ports > 0; DELETE FROM Disk_HistSum WHERE NumWindows > 0");
  }

  void ExpectNewestDaysInTheRotations() const {
    Lines switches;
    Lines disks;
    for (int day = kDays - kTables; day < kDays; ++day) {
      Append(switches, SwitchDay(day));
      Append(disks, DiskDay(day));
    }
    EXPECT_EQ(SwitchDays("TrafficDate"), switches);
    EXPECT_EQ(DiskDays("StorageDate"), disks);
  }

  void ExpectSumsOfEachDay() const {
    Lines switches;
    Lines disks;
    for (int day = 0; day < kDays; ++day) {
      const std::string held = DateTimeText(Noon(day - 1));
      switches.push_back(held + "|0|" + std::to_string(1000 + day) + "|1|1");
      switches.push_back(held + "|1|" + std::to_string(2000 + day) + "|1|1");
      disks.push_back(held + "|" + std::to_string(1000 + day) + "|" + std::to_string(1000 + day) +
                      "|1|1");
    }
    EXPECT_EQ(switchSums, switches);
    EXPECT_EQ(diskSums, disks);
  }

  void ExpectOldSumsUpToTheirLimit() const {
    Lines switches;
    Lines disks;
    for (const int day : kOldSums) {
      if (day < kOldestLeft) continue;
      switches.push_back(DateTimeText(Noon(day)) + "|0");
      switches.push_back(DateTimeText(Noon(day)) + "|1");
      disks.push_back(DateTimeText(Noon(day)));
    }
    EXPECT_EQ(History("SELECT TrafficDate, IsTrunk FROM VLAN_HistSum"), switches);
    EXPECT_EQ(History("SELECT StorageDate FROM Disk_HistSum"), disks);
  }

  void ExpectTrendsOfTheLastDay() const {
    const auto trends = [](int (*used)(int)) {
      return std::to_string(used(kLast) - used(kLast - 14)) + "|" +
             std::to_string(used(kLast) - used(kLast - 30));
    };
    const std::string table =
        History("SELECT HistTable FROM Disk_HistCtrl ORDER BY StorageDate DESC LIMIT 1")[0];
    EXPECT_EQ(History("SELECT Trend14d, Trend30d FROM " + table),
              (Lines{trends(UsedOfC), trends(UsedOfRoot)}));
  }

  Lines switchSums;
  Lines diskSums;
};

TEST_F(LongRunTest, RotationSumsAndTrendsAreRightBehindFourHundredDays) {
  Run();
  ExpectNewestDaysInTheRotations();
  ExpectSumsOfEachDay();
  ExpectOldSumsUpToTheirLimit();
  ExpectTrendsOfTheLastDay();
  EXPECT_EQ(History("PRAGMA integrity_check"), Lines{"ok"});
  ExpectNoEvent();
}

// The rules of the rotation, told a second time: the day of the import that filled each table, in
// the order of the control rows.
class Ring {
 public:
  Ring() { imports_.fill(kNever); }

  // The place that an import of the day takes, from 0.
  int Take(int day) {
    std::size_t place = 0;
    while (day - (imports_[place] - 1) <= kLimit) ++place;
    imports_[place] = day;
    return static_cast<int>(place);
  }
  bool Holds(int day) const {
    for (const int held : imports_) {
      if (held == day) return true;
    }
    return false;
  }
  const std::array<int, kTables>& imports() const { return imports_; }

 private:
  std::array<int, kTables> imports_{};
};

class GapsTest : public ManyDaysTest {
 protected:
  static constexpr int kDays = 120;

  // No report on one day of the week, and none in a fortnight.
  static bool HasReport(int day) { return day % 7 != 3 && (day < 60 || day >= 74); }

  std::string Trend(int (*used)(int), int day, int daysBack) const {
    return std::to_string(ring.Holds(day - daysBack) ? used(day) - used(day - daysBack) : 0);
  }
  void ExpectTrends(int day, int place) const {
    EXPECT_EQ(History("SELECT Trend14d, Trend30d FROM " + Table("Disk", place)),
              (Lines{Trend(UsedOfC, day, 14) + "|" + Trend(UsedOfC, day, 30),
                     Trend(UsedOfRoot, day, 14) + "|" + Trend(UsedOfRoot, day, 30)}))
        << day;
  }

  Ring ring;
};

TEST_F(GapsTest, DayWithoutAReportIsAGapAndTheOthersAreWhole) {
  std::size_t reports = 0;
  for (int day = 0; day < kDays; ++day) {
    if (!HasReport(day)) {
      EXPECT_FALSE(NightWithoutReport(day)) << day;
      continue;
    }
    EXPECT_TRUE(NightWithReport(day)) << day;
    ++reports;
    ExpectTrends(day, ring.Take(day));
  }

  Lines switches;
  Lines disks;
  for (const int day : ring.imports()) {
    if (day == kNever) continue;
    Append(switches, SwitchDay(day));
    Append(disks, DiskDay(day));
  }
  EXPECT_EQ(SwitchDays("rowid"), switches);
  EXPECT_EQ(DiskDays("rowid"), disks);
  for (int day = kDays - kTables; day < kDays; ++day) {
    EXPECT_EQ(ring.Holds(day), HasReport(day)) << day;
  }
  EXPECT_EQ(History("SELECT * FROM VLAN_HistSum").size(), 2 * reports);
  EXPECT_EQ(History("SELECT * FROM Disk_HistSum").size(), reports);
  ExpectNoEvent();
}

// A ring that 45 nights filled, day 0 in the first table.
class FullRingTest : public ManyDaysTest {
 protected:
  FullRingTest() {
    std::string statements;
    for (int day = 0; day < kTables; ++day) {
      const std::string figure = std::to_string(day);
      statements += InsertRow(Table("VLAN", day),
                              {{"RecNo", "7"}, {"IfIndex", "1"}, {"InHCOctetsMb24H", figure}}) +
                    InsertRow(Table("Disk", day), {{"RecNo", "900"},
                                                   {"StorDescr", "'C:'"},
                                                   {"Type", "30"},
                                                   {"TotalM", figure},
                                                   {"UsedM", figure},
                                                   {"UsedProc", "10"}});
    }
    HistorySql("BEGIN;" + statements + "COMMIT;");
    for (int day = 0; day < kTables; ++day) {
      StampSwitch(day + 1, DateTimeText(Noon(day) - hours(23)));
      StampDisk(day + 1, DateTimeText(Noon(day) - hours(23)));
    }
  }

  // The days of the first control rows.
  Lines FirstDays(const std::string& control, const std::string& date) const {
    return History("SELECT date(" + date + ") FROM " + control + " LIMIT 4");
  }
};

TEST_F(FullRingTest, NightTakesTheOneFreeTable) {
  Lines switches = SwitchDays("rowid");
  Lines disks = DiskDays("rowid");
  EXPECT_TRUE(NightWithReport(kTables));
  // The day of one row in the first table gives way to one of two.
  const auto exchange = [](Lines& rows, const Lines& newest) {
    rows.erase(rows.begin());
    rows.insert(rows.begin(), newest.begin(), newest.end());
  };
  exchange(switches, SwitchDay(kTables));
  exchange(disks, DiskDay(kTables));
  EXPECT_EQ(SwitchDays("rowid"), switches);
  EXPECT_EQ(DiskDays("rowid"), disks);
  ExpectNoEvent();
}

TEST_F(FullRingTest, TablesThatAGapLeftFreeAreTakenOneEachNightInTheirOrder) {
  const int back = kTables + 2;  // behind two nights without a report: three tables are free
  EXPECT_TRUE(NightWithReport(back));
  EXPECT_TRUE(NightWithReport(back + 1));
  const Lines first = {HeldDay(back), HeldDay(back + 1), HeldDay(2), HeldDay(3)};
  EXPECT_EQ(FirstDays("VLAN_HistCtrl", "TrafficDate"), first);
  EXPECT_EQ(FirstDays("Disk_HistCtrl", "StorageDate"), first);
}

TEST_F(FullRingTest, ClockThatIsPutBackLosesNoDay) {
  const Lines switches = SwitchDays("rowid");
  const Lines disks = DiskDays("rowid");
  const int before = kTables - 10;
  EXPECT_TRUE(NightWithReport(before));
  EXPECT_EQ(SwitchDays("rowid"), switches);
  EXPECT_EQ(DiskDays("rowid"), disks);
  const std::string held = DateTimeText(Noon(before - 1));
  EXPECT_EQ(History("SELECT TrafficDate, IsTrunk FROM VLAN_HistSum"),
            (Lines{held + "|0", held + "|1"}));
  // The table that holds that day already is the one that the sums are taken of.
  EXPECT_EQ(History("SELECT StorageDate, UsedMWindows, NumWindows FROM Disk_HistSum"),
            Lines{held + "|" + std::to_string(before) + "|1"});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
