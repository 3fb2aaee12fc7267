// The two rotations as parameters, and verbs for their control rows, day tables and sources.
#pragma once

#include <ostream>
#include <string>

#include "import/disk_history.h"
#include "import/history_fixture.h"
#include "import/switch_history.h"

namespace quillon {

inline constexpr const char* kSeedDate =
    "2000-01-01 00:00:00";  // of all control rows of a new history

// One of the two rotations.
struct RotationKind {
  std::string name;
  std::string controlTable;
  std::string dateField;
  std::string dayTables;    // as they begin
  std::string source;       // the table of Reports.mdb
  std::string sourceStamp;  // its field that says which day a row is of
  std::string step;
  std::string copyStep;
  void (*run)(ImportContext&);
  void (*copy)(ImportContext&, const std::string&);
  std::string (*insertSource)(const Columns&);
};

inline std::ostream& operator<<(std::ostream& out, const RotationKind& kind) {
  return out << kind.name;
}

inline const RotationKind kKinds[] = {
    {"Switches", "VLAN_HistCtrl", "TrafficDate", "VLAN_Day", "VLAN", "InOctetsDate",
     "SwitchStatsToHist", "SwitchStatsCopyToHist_", SwitchStatsToHist, SwitchStatsCopyToHist_,
     InsertPort},
    {"Disks", "Disk_HistCtrl", "StorageDate", "Disk_Day", "HostDiskInfo", "LastUpdate",
     "DiskStatsToHist", "DiskStatsCopyToHist_", DiskStatsToHist, DiskStatsCopyToHist_,
     InsertStorage},
};

class RotationTest : public HistoryTest, public testing::WithParamInterface<RotationKind> {
 protected:
  void Run() { GetParam().run(house.imports); }

  static std::string Day(int number) { return DayTable(GetParam().dayTables, number); }

  // Rows of the report of today, or of another day, RecNo 1, 2, ...
  void AddSourceRows(int count, const std::string& stamp = "'2024-05-02 03:10:00'") const {
    std::string statements;
    for (int recNo = 1; recNo <= count; ++recNo) {
      statements += GetParam().insertSource(
          {{"RecNo", std::to_string(recNo)}, {GetParam().sourceStamp, stamp}});
    }
    ReportsSql("BEGIN;" + statements + "COMMIT;");
  }

  // Dates of the control rows: of all an SQL literal, of one, counted from 1 in stored order, a
  // moment.
  void SetDates(const std::string& date) const {
    HistorySql("UPDATE " + GetParam().controlTable + " SET " + GetParam().dateField + " = " + date);
  }
  void Stamp(int row, const std::string& moment) const {
    ImportTest::Stamp(GetParam().controlTable, GetParam().dateField, row, moment);
  }
  Lines Dates() const {
    return History("SELECT " + GetParam().dateField + " FROM " + GetParam().controlTable +
                   " ORDER BY rowid");
  }
  std::string Date(int row) const { return Dates()[static_cast<std::size_t>(row - 1)]; }

  // The day tables that hold rows.
  Lines Filled() const {
    std::string select;
    for (int number = 1; number <= 45; ++number) {
      select += (number == 1 ? "" : " UNION ALL ") + ("SELECT '" + Day(number)) +
                "' WHERE EXISTS (SELECT * FROM " + Day(number) + ")";
    }
    return History(select);
  }
  Lines RecNos(int day) const {
    return History("SELECT RecNo FROM " + Day(day) + " ORDER BY rowid");
  }

  std::string StepEvent(const std::string& text) const {
    return "1\tmodImport_" + GetParam().step + "\t" + text;
  }
  std::string CopyEvent(const std::string& text) const {
    return "1\tmodImport_" + GetParam().copyStep + Day(1) + "\t" + text;
  }
  std::string ClearEvent(const std::string& text) const {
    return "1\tmodImport_ClearTable_" + Day(1) + "\t" + text;
  }
};

}  // namespace quillon
