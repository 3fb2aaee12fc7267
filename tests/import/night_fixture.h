// The daily cycle at a house: a report of today that waits to be imported, and verbs that bring
// further ones, import, and tell what an import left.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "import/import.h"
#include "import/import_fixture.h"
#include "import/report_marks.h"

namespace quillon {

class ImportNightTest : public ImportTest {
 protected:
  ImportNightTest() {
    SetMark("LastReport", "'2024-05-02 03:10:00'");
    SetMark("LastImport", "'2024-05-01 04:00:00'");
  }

  // A field of General_Info; its value as an SQL literal.
  void SetMark(const std::string& field, const std::string& literal) const {
    HistorySql("UPDATE General_Info SET " + field + " = " + literal);
  }
  std::string Mark(const std::string& field) const {
    return History("SELECT " + field + " FROM General_Info")[0];
  }

  // The management product ends a report now: all rows of Reports.mdb are of this day.
  void Report() {
    const std::string today = "'" + DateTimeText(house.clock.Now()) + "'";
    ReportsSql("UPDATE VLAN SET InOctetsDate = " + today + ", LastUpdate = " + today +
               "; UPDATE HostDiskInfo SET LastUpdate = " + today);
    UpdateHistory_Db(house.imports, 3);
  }

  // Whether the import ran to its end.
  bool RunImport() {
    bool result = false;
    Import(house.imports, result);
    return result;
  }

  // Every row of History.mdb, those of the day tables with the table's name in front.
  Lines WholeHistory() const {
    std::string selects;
    for (const char* table :
         {"General_Info", "VLAN_HistCtrl", "Disk_HistCtrl", "VLAN_HistSum", "Disk_HistSum"}) {
      selects += SelectAll(table);
    }
    Lines rows = History(selects);
    Append(rows, DayTables());
    return rows;
  }
  Lines DayTables() const {
    std::string selects;
    for (const std::string& table : History("SELECT HistTable FROM VLAN_HistCtrl UNION ALL "
                                            "SELECT HistTable FROM Disk_HistCtrl")) {
      selects += SelectAll(table);
    }
    return History(selects);
  }

  // The procedures that reported a failure, oldest first: "modImport_SwitchStatsSum". Any other
  // event is told as it stands.
  Lines Failures() const {
    Lines procedures;
    for (const std::string& event : house.Events()) {
      const bool isFailure = event.starts_with("1\t");
      procedures.push_back(isFailure ? event.substr(2, event.find('\t', 2) - 2) : event);
    }
    return procedures;
  }

  static void Append(Lines& lines, const Lines& further) {
    lines.insert(lines.end(), further.begin(), further.end());
  }

 private:
  static std::string SelectAll(const std::string& table) {
    return "SELECT '" + table + "', * FROM " + table + ";";
  }
};

}  // namespace quillon
