// Rows by their defaults.
#include "support/report_rows.h"

namespace quillon {

Columns With(Columns columns, const Columns& differing) {
  for (const auto& [column, value] : differing) columns[column] = value;
  return columns;
}

std::string InsertRow(const std::string& table, const Columns& columns) {
  std::string names;
  std::string values;
  for (const auto& [column, value] : columns) {
    names += (names.empty() ? "" : ", ") + column;
    values += (values.empty() ? "" : ", ") + value;
  }
  return "INSERT INTO " + table + " (" + names + ") VALUES (" + values + ");";
}

std::string NumbersUpTo(int count) {
  const std::string last = std::to_string(count);
  return " WITH RECURSIVE Number(n) AS (SELECT 1 WHERE " + last +
         " > 0 UNION ALL SELECT n + 1 FROM Number WHERE n < " + last + ") ";
}

std::string InsertPort(const Columns& differing) {
  return InsertRow("VLAN", With({{"RecNo", "7"},
                                 {"DevName", "'Core'"},
                                 {"IpAddr", "'10.0.0.7'"},
                                 {"VlanID", "12"},
                                 {"IfIndex", "1"},
                                 {"IfDescr", "'Gi0/1'"},
                                 {"IfSpeed", "'1000000000'"},
                                 {"IfAlias", "'Uplink'"},
                                 {"IfAdmin", "'up'"},
                                 {"IfOper", "'down'"},
                                 {"IsTrunk", "FALSE"},
                                 {"InOctetsDate", "'2024-05-02 03:10:00'"},
                                 {"LastUpdate", "'2024-05-02 03:10:00'"},
                                 {"InHCOctetsMb24H", "5"},
                                 {"OutHCOctetsMb24H", "4"},
                                 {"InBroadCastPpm24H", "3"},
                                 {"InMultiCastPpm24H", "2"},
                                 {"InErrorsTot24H", "1"},
                                 {"OutErrorsTot24H", "0"}},
                                differing));
}

std::string InsertStorage(const Columns& differing) {
  return InsertRow("HostDiskInfo", With({{"RecNo", "900"},
                                         {"DevName", "'Files'"},
                                         {"StorDescr", "'C:'"},
                                         {"FreeRawM", "60"},
                                         {"UsedRawM", "40"},
                                         {"UsedProc", "40"},
                                         {"UsedProc14Trend", "77"},
                                         {"UsedProc30Trend", "88"},
                                         {"LastUpdate", "'2024-05-02 03:10:00'"}},
                                        differing));
}

std::string DayTable(const std::string& beginning, int number) {
  return beginning + (number < 10 ? "0" : "") + std::to_string(number);
}

std::string InsertPortControl(const std::string& moment, const std::string& histTable) {
  return InsertRow("VLAN_HistCtrl", {{"TrafficDate", moment}, {"HistTable", histTable}});
}

std::string InsertStorageControl(const std::string& moment, const std::string& histTable) {
  return InsertRow("Disk_HistCtrl", {{"StorageDate", moment}, {"HistTable", histTable}});
}

std::string InsertPortOfDay(const std::string& histTable, const Columns& differing) {
  return InsertRow(histTable, With({{"RecNo", "7"},
                                    {"IfIndex", "4"},
                                    {"InHCOctetsMb24H", "6"},
                                    {"OutHCOctetsMb24H", "5"},
                                    {"InBroadCastPpm24H", "4"},
                                    {"InMultiCastPpm24H", "3"},
                                    {"InErrorsTot24H", "2"},
                                    {"OutErrorsTot24H", "1"},
                                    {"IsTrunk", "FALSE"}},
                                   differing));
}

std::string InsertStorageOfDay(const std::string& histTable, const Columns& differing) {
  return InsertRow(histTable, With({{"RecNo", "900"},
                                    {"DevName", "'Files'"},
                                    {"StorDescr", "'C:'"},
                                    {"Type", "30"},
                                    {"TotalM", "100"},
                                    {"UsedM", "40"},
                                    {"FreeM", "60"},
                                    {"UsedProc", "40"},
                                    {"Trend14d", "77"},
                                    {"Trend30d", "88"}},
                                   differing));
}

}  // namespace quillon
