// A house whose History.mdb has no control rows, days and sums yet, verbs that add them by their
// age, and words that show their number: word 38 is "W38". Today is 2024-05-02, noon.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
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
  static constexpr const char* kBefore = "of an earlier report";

  ChartTest() {
    house.NumberWords("W");
    History("DELETE FROM VLAN_HistCtrl; DELETE FROM Disk_HistCtrl;");
  }

  void History(const std::string& statements) const {
    house.installation.Sql("History.mdb", statements);
  }

  // Ten past three on the day so many days ago, as an SQL literal.
  std::string MomentBefore(int age) const { return "'" + house.DayBefore(age) + " 03:10:00'"; }
  // The position of that day.
  static constexpr int PositionOf(int age) { return 46 - age; }

  // A control row of that moment.
  void AddPortDay(int age, const std::string& histTable) const {
    History(InsertPortControl(MomentBefore(age), "'" + histTable + "'"));
  }
  void AddDiskDay(int age, const std::string& histTable) const {
    History(InsertStorageControl(MomentBefore(age), "'" + histTable + "'"));
  }

  // An ordinary row of a day table that differs in these columns. The values are SQL literals.
  void AddPort(const std::string& histTable, const Columns& differing = {}) const {
    History(InsertPortOfDay(histTable, differing));
  }
  void AddStorage(const std::string& histTable, const Columns& differing = {}) const {
    History(InsertStorageOfDay(histTable, differing));
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
  // Expects that the only event is one of the procedure, whose text holds these words.
  void ExpectFailure(const std::string& procedure, const std::string& words) const {
    const Lines failures = Failures(procedure);
    ASSERT_EQ(failures.size(), 1u) << words;
    EXPECT_NE(failures[0].find(words), std::string::npos) << words << ": " << failures[0];
  }
  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

}  // namespace quillon
