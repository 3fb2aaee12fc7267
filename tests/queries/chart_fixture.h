// A house whose History.mdb has no control rows, days and sums yet, verbs that add them by their
// age, and words that show their number: word 38 is "W38". Today is 2024-05-02, noon.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {

class ChartTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  static constexpr ConnectionId kSlot = 3;
  static constexpr int kNewest = 45;  // the position of yesterday

  ChartTest() {
    for (int number = 1; number <= 100; ++number) {
      house.words.LangWord[number] = "W" + std::to_string(number);
    }
    History("DELETE FROM VLAN_HistCtrl; DELETE FROM Disk_HistCtrl;");
  }

  void History(const std::string& statements) const {
    house.installation.Sql("History.mdb", statements);
  }

  // The calendar day so many days before today, "2024-05-01" for 1.
  std::string DayBefore(int age) const {
    return DayText(house.clock.Now() - std::chrono::days(age));
  }
  // The position of that day.
  static constexpr int PositionOf(int age) { return 46 - age; }

  // A control row of the day so many days ago, at ten past three.
  void AddPortDay(int age, const std::string& histTable) const {
    History("INSERT INTO VLAN_HistCtrl (TrafficDate, HistTable) VALUES ('" + DayBefore(age) +
            " 03:10:00', '" + histTable + "');");
  }
  void AddDiskDay(int age, const std::string& histTable) const {
    History("INSERT INTO Disk_HistCtrl (StorageDate, HistTable) VALUES ('" + DayBefore(age) +
            " 03:10:00', '" + histTable + "');");
  }

  // A row of a switch day table: port 4 of device 7 with a small figure in each series, differing
  // in these columns. The values are SQL literals.
  void AddPort(const std::string& histTable, const Columns& differing = {}) const {
    Columns columns = {{"RecNo", "7"},
                       {"IfIndex", "4"},
                       {"InHCOctetsMb24H", "6"},
                       {"OutHCOctetsMb24H", "5"},
                       {"InBroadCastPpm24H", "4"},
                       {"InMultiCastPpm24H", "3"},
                       {"InErrorsTot24H", "2"},
                       {"OutErrorsTot24H", "1"},
                       {"IsTrunk", "FALSE"}};
    for (const auto& [column, value] : differing) columns[column] = value;
    History(InsertRow(histTable, columns));
  }

  // A row of a disk day table: disk "C:" of server 900, 40 M used of 100 M.
  void AddStorage(const std::string& histTable, const Columns& differing = {}) const {
    Columns columns = {{"RecNo", "900"}, {"DevName", "'Files'"}, {"StorDescr", "'C:'"},
                       {"Type", "30"},   {"TotalM", "100"},      {"UsedM", "40"},
                       {"FreeM", "60"},  {"UsedProc", "40"},     {"Trend14d", "0"},
                       {"Trend30d", "0"}};
    for (const auto& [column, value] : differing) columns[column] = value;
    History(InsertRow(histTable, columns));
  }

  // Texts of events whose head is "1\t<module>_<procedure>\t", "1\tmodSelectSql_..." say. Any other
  // event fails the test.
  Lines Failures(const std::string& procedure) const {
    const std::string head = "1\t" + procedure + "\t";
    Lines texts;
    for (const std::string& event : house.Events()) {
      EXPECT_EQ(event.rfind(head, 0), 0u) << event;
      texts.push_back(event.substr(std::min(head.size(), event.size())));
    }
    return texts;
  }
  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

}  // namespace quillon
