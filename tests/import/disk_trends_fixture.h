// A history in which the day of 2024-05-01 and those 14 and 30 days before it have their tables,
// as the import of 2024-05-02 finds it.
#pragma once

#include <string>

#include "import/disk_fixture.h"
#include "import/disk_trends.h"

namespace quillon {

class DiskTrendsTest : public DiskImportTest {
 protected:
  static inline const std::string kDay14 = "Disk_Day15";
  static inline const std::string kDay30 = "Disk_Day31";
  static constexpr int kRow = 1;  // the control rows of the three tables
  static constexpr int kRow14 = 15;
  static constexpr int kRow30 = 31;

  DiskTrendsTest() {
    StampDisk(kRow, "2024-05-01 13:00:00");
    StampDisk(kRow14, "2024-04-17 13:00:00");
    StampDisk(kRow30, "2024-04-01 13:00:00");
  }

  // Leaves the table of that control row without a day.
  void ForgetDay(int row) const { StampDisk(row, "2000-01-01 00:00:00"); }

  void EmptyDays() const {
    for (const std::string& table : {kDay, kDay14, kDay30}) HistorySql("DELETE FROM " + table);
  }

  // A disk of the day and its used share of 14 and of 30 days before.
  void AddDisk(const std::string& recNo, const std::string& now, const std::string& before14,
               const std::string& before30) const {
    AddDayRow(kDay, {{"RecNo", recNo}, {"UsedProc", now}});
    AddDayRow(kDay14, {{"RecNo", recNo}, {"UsedProc", before14}});
    AddDayRow(kDay30, {{"RecNo", recNo}, {"UsedProc", before30}});
  }

  // "Trend14d|Trend30d" of each row.
  Lines Trends(const std::string& table = kDay) const {
    return History("SELECT Trend14d, Trend30d FROM " + table + " ORDER BY rowid");
  }
  Lines FixTrends() {
    DiskFixTrendValues(house.imports);
    return Trends();
  }

  // Expects so many failures of reading an old value, whose texts hold these words, and no other
  // event.
  void ExpectFailedReads(std::size_t count, const std::string& words = "") const {
    const Lines events = house.Events();
    EXPECT_EQ(events.size(), count);
    for (const std::string& event : events) {
      EXPECT_EQ(event.rfind("1\tmodImport_DiskReadTrendValue\t", 0), 0u) << event;
      EXPECT_NE(event.find(words), std::string::npos) << event;
    }
  }
};

}  // namespace quillon
