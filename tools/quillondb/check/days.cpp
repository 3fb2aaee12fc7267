// Days by their number of rows. What is no date is found with the fields.
#include "quillondb/check/days.h"

#include <string_view>

#include "quillondb/check/findings.h"

namespace quillon {
namespace {

// A table whose rows the charts take for the newest of a day each.
struct DatedTable {
  std::string_view name;
  std::string_view date;
  std::string_view kind;    // what else tells the rows of one day apart
  std::string_view remedy;  // of several rows of a day
  std::string_view early;   // the same of a day to come
};

constexpr std::string_view kFree = "keep one and set the date of all others back by 46 days";

constexpr std::string_view kFreeEarly =
    "set its date back by 46 days, or wait until the day is over";
constexpr std::string_view kDeleteEarly = "delete it, or wait until the day is over";

constexpr DatedTable kTables[] = {
    {"VLAN_HistCtrl", "TrafficDate", "''", kFree, kFreeEarly},
    {"Disk_HistCtrl", "StorageDate", "''", kFree, kFreeEarly},
    {"VLAN_HistSum", "TrafficDate", "IsTrunk", "keep one of each IsTrunk and delete all others",
     kDeleteEarly},
    {"Disk_HistSum", "StorageDate", "''", "keep one and delete all others", kDeleteEarly},
};

// The days of concern, with the largest number of rows that a kind has, and whether they are over.
std::string SelectDays(const DatedTable& table) {
  const std::string rows = "SELECT date(" + std::string(table.date) + ") AS day, " +
                           std::string(table.kind) + " AS kind, date('now', 'localtime') AS today" +
                           " FROM " + std::string(table.name);
  const std::string kinds = "SELECT day, today, COUNT(*) AS rows FROM (" + rows +
                            ") WHERE day >= date(today, '-45 days') GROUP BY day, kind";
  return "SELECT day, MAX(rows), day < today FROM (" + kinds +
         ") GROUP BY day HAVING MAX(rows) > 1 OR day >= today ORDER BY day";
}

void CheckTable(const SqliteFile& history, const std::string& place, const DatedTable& table,
                std::vector<std::string>& findings) {
  std::vector<std::string> found;
  SqliteStatement days = history.Prepare(SelectDays(table));
  while (days.Step()) {
    const std::string where = "rows of " + std::string(table.name) + " are of " + days.Text(0);
    const bool isOver = days.Integer(2) != 0;
    if (isOver) {
      found.push_back(place + std::to_string(days.Integer(1)) + " " + where +
                      "; charts show no day before it, so " + std::string(table.remedy));
    } else {
      found.push_back(place + where +
                      ", which is not over yet; until it is, charts show no day at all: " +
                      std::string(table.early));
    }
  }
  AppendFirst(place, found, findings);
}

}  // namespace

void CheckDays(const SqliteFile& history, const std::string& place, const std::string& table,
               std::vector<std::string>& findings) {
  for (const DatedTable& dated : kTables) {
    if (dated.name == table) CheckTable(history, place, dated, findings);
  }
}

}  // namespace quillon
