// A production with the statistics of a small network, verbs that add to them, and the comparison
// of the cache folder with what the reports give.
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "production/auto_create.h"
#include "production/disk_pages.h"
#include "production/expected_production.h"
#include "production/folder_watch.h"
#include "production/production_fixture.h"
#include "production/storage_charts.h"
#include "production/switch_pages.h"
#include "web/expected_pages.h"

namespace quillon {

class AutoCreateTest : public ProductionTest {
 protected:
  using Expected = ExpectedProduction;
  using ListOrder = Expected::ListOrder;
  using DiskClass = Expected::DiskClass;
  using SortDirection = Expected::SortDirection;
  using StoredFile = Expected::StoredFile;
  static inline const auto& kMetrics = Expected::kMetrics;
  static inline const auto& kDiskColumns = Expected::kDiskColumns;
  static inline const auto& kDiskClasses = Expected::kDiskClasses;
  static inline const auto& kDirections = Expected::kDirections;
  static constexpr std::chrono::milliseconds kNoWait{0};
  // The waits of a 45-day report: 10 ms a day, and in the background 20 ms more for each day that
  // has a table; of a chart file with its pause, where so many days have one.
  static constexpr std::chrono::milliseconds kSummaryWait{450};
  static constexpr std::chrono::milliseconds ChartWait(int daysWithTable) {
    return std::chrono::milliseconds(50 + 450 + 20 * daysWithTable);
  }

  // Two access ports, a trunk port, and an access port whose figures are of the day before; two
  // days of their history; a Windows disk and memory of server 900, a Unix disk of server 17, two
  // days of theirs; yesterday's sums.
  void AddNetwork() const {
    Reports(
        InsertPort({{"RecNo", "7"},
                    {"IfIndex", "4"},
                    {"DevName", "'sw7'"},
                    {"InHCOctetsMb24H", "50"},
                    {"OutHCOctetsMb24H", "10"},
                    {"InErrorsTot24H", "9"}}) +
        InsertPort({{"RecNo", "8"},
                    {"IfIndex", "5"},
                    {"DevName", "'sw8'"},
                    {"InHCOctetsMb24H", "20"},
                    {"OutHCOctetsMb24H", "30"},
                    {"InErrorsTot24H", "8"}}) +
        InsertPort({{"RecNo", "9"}, {"IfIndex", "1"}, {"DevName", "'sw9'"}, {"IsTrunk", "TRUE"}}) +
        InsertPort({{"RecNo", "10"},
                    {"IfIndex", "1"},
                    {"DevName", "'sw10'"},
                    {"InOctetsDate", "'2024-05-01 03:10:00'"}}));
    AddPortDays();
    AddStorageDays();
    AddStorages({{{"RecNo", "900"}, {"DevName", "'Files'"}, {"StorDescr", "'C:'"}, {"Type", "30"}},
                 {{"RecNo", "900"},
                  {"DevName", "'Files'"},
                  {"StorDescr", "'Physical'"},
                  {"Type", "10"},
                  {"TotalM", "64"}},
                 {{"RecNo", "900"},
                  {"DevName", "'Files'"},
                  {"StorDescr", "'Virtual'"},
                  {"Type", "20"},
                  {"TotalM", "128"}},
                 {{"RecNo", "17"},
                  {"DevName", "'Logs'"},
                  {"StorDescr", "'/var/log'"},
                  {"Type", "40"},
                  {"UsedM", "70"}}});
    History(InsertStorageOfDay("Disk_Day02", {{"UsedM", "33"}}));
    History(
        "INSERT INTO VLAN_HistSum VALUES"
        " ('2024-05-01 03:10:00', 0, 11, 12, 13, 14, 6000, 5000, 20, 10),"
        " ('2024-05-01 03:10:00', 1, 21, 22, 23, 24, 300, 200, 6, 3);"
        "INSERT INTO Disk_HistSum (StorageDate, TotalMWindows, UsedMWindows, TotalMUnix,"
        " UsedMUnix, TotalMPhysical, UsedMPhysical, TotalMVirtual, UsedMVirtual, NumWindows,"
        " NumUnix, NumPhysical, NumVirtual) VALUES ('2024-05-01 03:10:00',"
        " 100, 40, 90, 70, 64, 40, 128, 40, 1, 1, 1, 1);");
  }

  // The day tables 01 and 02 hold yesterday and the day two days before it.
  void AddPortDays() const {
    History(DaysOf("VLAN_HistCtrl", "TrafficDate", "VLAN_Day") +
            InsertPortOfDay("VLAN_Day01", {{"InHCOctetsMb24H", "5000"}}) +
            InsertPortOfDay("VLAN_Day01",
                            {{"RecNo", "8"}, {"IfIndex", "5"}, {"InHCOctetsMb24H", "700"}}) +
            InsertPortOfDay("VLAN_Day02", {{"InHCOctetsMb24H", "90"}}));
  }
  void AddStorageDays() const { History(DaysOf("Disk_HistCtrl", "StorageDate", "Disk_Day")); }

  // Ordinary storages of yesterday that differ in these columns.
  void AddStorages(const std::vector<Columns>& storages) const {
    for (const Columns& differing : storages) History(InsertStorageOfDay("Disk_Day01", differing));
  }
  // A Unix disk of device 17 of that name, an SQL literal.
  void AddDiskNamed(const std::string& storDescr) const {
    AddStorages({{{"RecNo", "17"}, {"StorDescr", storDescr}, {"Type", "40"}}});
  }

  // Access ports of today, 1 to `count`, of devices 101, 102, ... : the first has the most of all.
  void AddAccessPorts(int count) const {
    std::string rows;
    for (int n = 1; n <= count; ++n) {
      const std::string figure = std::to_string(1000 - n);
      Columns port = {{"RecNo", std::to_string(100 + n)}, {"IfIndex", std::to_string(n)}};
      for (const ListOrder& metric : kMetrics) port[metric.field] = figure;
      rows += InsertPort(port);
    }
    Reports(rows);
  }

  // What a run gives with the network above.
  static void AddNetworkPages(ExpectedProduction& expected) {
    expected.AllSwitchPages();
    expected.AllDiskLists();
    expected.MemoryCharts(17, "Logs");
    expected.MemoryCharts(900, "Files");
    expected.DiskChart(17, "Logs", "/var/log", "histdisk45-17-_var_log.htm");
    expected.DiskChart(900, "Files", "C:", "histdisk45-900-C_.htm");
    expected.DiskSummary();
  }

  std::string CachePath() const { return site.installation.path() + "/WebReports/Cache"; }
  void Store(const std::string& name, const std::string& bytes) const {
    site.installation.Write("WebReports/Cache/" + name, bytes);
  }
  // A folder of a file's name, which keeps that file from being stored.
  void Block(const std::string& name) const {
    std::filesystem::create_directory(CachePath() + "/" + name);
  }
  bool IsStored(const std::string& name) const {
    return std::filesystem::is_regular_file(CachePath() + "/" + name);
  }

  // Expects that the cache has these files, byte for byte, and nothing else.
  void ExpectCache(const std::map<std::string, std::string>& expected) const {
    Lines names;
    for (const auto& [name, bytes] : expected) names.push_back(name);
    EXPECT_EQ(CacheFiles(), names);
    for (const auto& [name, bytes] : expected) ExpectBytes(name, bytes);
  }
  // A page is long: where it differs tells more than both of them.
  void ExpectBytes(const std::string& name, const std::string& expected) const {
    const std::string bytes = Cached(name);
    EXPECT_FALSE(expected.empty()) << name;
    if (bytes == expected) return;
    const auto at = static_cast<std::size_t>(
        std::mismatch(bytes.begin(), bytes.end(), expected.begin(), expected.end()).first -
        bytes.begin());
    const std::size_t from = at < 100 ? 0 : at - 100;
    ADD_FAILURE() << name << " differs at byte " << at << "\n  is       "
                  << (from < bytes.size() ? bytes.substr(from, 300) : "") << "\n  expected "
                  << (from < expected.size() ? expected.substr(from, 300) : "");
  }

  // The module and procedure of each event, oldest first. All are failures.
  Lines Failures() const {
    Lines failures;
    for (const std::string& event : site.Events()) {
      EXPECT_EQ(event.substr(0, 2), "1\t") << event;
      failures.push_back(event.substr(2, event.find('\t', 2) - 2));
    }
    return failures;
  }
  // The names of the files that could not be stored, oldest first. There are no other events.
  Lines NotStored() const {
    Lines names;
    for (const std::string& event : site.Events()) {
      EXPECT_EQ(event.rfind("1\tmodHtml_SaveToCache\t", 0), 0u) << event;
      const std::string folder = "/WebReports/Cache/";
      const std::size_t start = event.rfind(folder);
      if (start == std::string::npos) continue;
      const std::size_t name = start + folder.size();
      names.push_back(event.substr(name, event.find(": ", name) - name));
    }
    return names;
  }

  // How much the action waits.
  std::chrono::milliseconds WaitOf(const std::function<void()>& action) const {
    const auto before = site.clock.slept();
    action();
    return site.clock.slept() - before;
  }

  // Runs the action inside the first wait that has lasted for so long.
  void InTheWait(int milliseconds, std::function<void()> action) {
    const auto moment = site.clock.slept() + std::chrono::milliseconds(milliseconds);
    site.Once([this, moment] { return site.clock.slept() >= moment; }, std::move(action));
  }
  // Runs the action inside the first wait in which the cache has this file.
  void OnceStored(const std::string& name, std::function<void()> action) {
    const auto isStored = [this, name, looked = kNoWait]() mutable {
      if (looked == site.clock.slept()) return false;  // one look in each slice of a wait will do
      looked = site.clock.slept();
      return IsStored(name);
    };
    site.Once(isStored, std::move(action));
  }

  static int CountOf(const Lines& lines, const std::string& line) {
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
  }
  static bool Holds(const std::string& text, std::string_view words) {
    return text.find(words) != std::string::npos;
  }

 private:
  static std::string DaysOf(const std::string& control, const std::string& dateField,
                            const std::string& tables) {
    const std::string update = "UPDATE " + control + " SET " + dateField + " = '2024-0";
    const std::string where = " 03:10:00' WHERE HistTable = '" + tables;
    return update + "5-01" + where + "01';" + update + "4-29" + where + "02';";
  }
};

}  // namespace quillon
