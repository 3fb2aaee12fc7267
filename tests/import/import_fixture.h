// A house at noon of 2024-05-02 with an empty Reports.mdb and the history of a new installation,
// and verbs that add rows to it and read it back.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {

class ImportTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  void ReportsSql(const std::string& statements) const {
    house.installation.Sql("Reports.mdb", statements);
  }
  void HistorySql(const std::string& statements) const {
    house.installation.Sql("History.mdb", statements);
  }
  // Rows of Reports.mdb and of History.mdb; fields joined by "|", a null is "NULL".
  Lines Reports(const std::string& select) const {
    return house.installation.Select("Reports.mdb", select);
  }
  Lines History(const std::string& select) const {
    return house.installation.Select("History.mdb", select);
  }

  void AddPort(const Columns& differing = {}) const { ReportsSql(InsertPort(differing)); }
  // So many ordinary ports, IfIndex 1, 2, ...
  void AddPorts(int count) const {
    std::string statements;
    for (int ifIndex = 1; ifIndex <= count; ++ifIndex) {
      statements += InsertPort({{"IfIndex", std::to_string(ifIndex)}});
    }
    ReportsSql("BEGIN;" + statements + "COMMIT;");
  }
  void AddStorage(const Columns& differing = {}) const { ReportsSql(InsertStorage(differing)); }

  // Stamps a control row, counted from 1 in stored order, which then holds that moment
  // ("2024-03-17 13:00:00").
  void StampSwitch(int row, const std::string& moment) const {
    Stamp("VLAN_HistCtrl", "TrafficDate", row, moment);
  }
  void StampDisk(int row, const std::string& moment) const {
    Stamp("Disk_HistCtrl", "StorageDate", row, moment);
  }
  void Stamp(const std::string& table, const std::string& field, int row,
             const std::string& moment) const {
    HistorySql("UPDATE " + table + " SET " + field + " = '" + moment +
               "' WHERE rowid = (SELECT rowid FROM " + table + " ORDER BY rowid LIMIT 1 OFFSET " +
               std::to_string(row - 1) + ")");
  }

  void OverrideReportDate(const std::string& date) {
    house.settings.RepDateOverride = true;
    house.settings.txtRepDate = date;
  }

  // Sum of all waits so far.
  std::int64_t SleptMs() const { return house.clock.slept().count(); }

  // Expects that the only event is a failure of that procedure, whose text holds these words.
  void ExpectFailure(const std::string& procedure, const std::string& words) const {
    const Lines events = house.Events();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].rfind("1\t" + procedure + "\t", 0), 0u) << events[0];
    EXPECT_NE(events[0].find(words), std::string::npos) << events[0];
  }
  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

}  // namespace quillon
