// Tables and seed of a new installation, from the embedded texts.
#include "import/schema/databases.h"

#include <algorithm>

#include "import/schema/schema_texts.h"

namespace quillon {
namespace {

constexpr std::string_view kNamePlaceholder = "{table}";

// One day table from its text. The name comes out of the seed, hence the plain replacement.
void CreateDayTable(const SqliteFile& file, std::string sql, const std::string& name) {
  std::size_t place = 0;
  while ((place = sql.find(kNamePlaceholder, place)) != std::string::npos) {
    sql.replace(place, kNamePlaceholder.size(), name);
  }
  file.RunScript(sql);
}

void BuildQuillon(const SqliteFile& file, const std::string& directory) {
  file.RunScript(kQuillonSql);
  file.RunScript(kSeedQuillonSql, directory);
}

void BuildReports(const SqliteFile& file, const std::string&) {
  file.RunScript(kReportsSql);
}

// The control rows come first: the day tables are those that they name.
void BuildHistory(const SqliteFile& file, const std::string&) {
  file.RunScript(kHistorySql);
  file.RunScript(kSeedHistorySql);
  for (const DayTableKind& kind : kDayTableKinds) {
    for (const std::string& table : DayTables(file, kind.controlTable)) {
      CreateDayTable(file, std::string(*kind.tableSql), table);
    }
  }
}

}  // namespace

constinit const std::array<DayTableKind, 2> kDayTableKinds = {{
    {"VLAN_HistCtrl", "TrafficDate", &kVlanDaySql},
    {"Disk_HistCtrl", "StorageDate", &kDiskDaySql},
}};

constinit const std::array<Database, 3> kDatabases = {{
    {"Quillon.mdb", BuildQuillon},
    {"Reports.mdb", BuildReports},
    {"History.mdb", BuildHistory},
}};

const Database* FindDatabase(std::string_view fileName) {
  const auto* const found = std::ranges::find(kDatabases, fileName, &Database::fileName);
  return found == kDatabases.end() ? nullptr : found;
}

std::vector<std::string> WithSideFiles(const std::string& database) {
  std::vector<std::string> paths = {database};
  for (const char* ending : kSideFiles) paths.push_back(database + ending);
  return paths;
}

std::vector<std::string> DayTables(const SqliteFile& history, std::string_view controlTable) {
  std::vector<std::string> names;
  SqliteStatement rows =
      history.Prepare("SELECT HistTable FROM " + std::string(controlTable) + " ORDER BY rowid");
  while (rows.Step()) names.push_back(rows.Text(0));
  return names;
}

}  // namespace quillon
