// One transaction a file: first the newest statistics, then the history.
#include "quillondb/demo/demo.h"

#include <vector>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"
#include "platform/failure.h"
#include "quillondb/demo/day_tables.h"
#include "quillondb/demo/network.h"
#include "quillondb/demo/reports.h"
#include "quillondb/demo/rotation.h"
#include "quillondb/demo/servers.h"
#include "quillondb/demo/sums.h"
#include "quillondb/installation.h"
#include "quillondb/report_marks.h"

namespace quillon {
namespace {

using TableNames = std::vector<std::string>;

TableNames ReportTables() {
  return {"VLAN", "MAC", "HostDiskInfo"};
}

TableNames HistoryTables(const SqliteFile& history) {
  TableNames tables = {"VLAN_HistSum", "Disk_HistSum"};
  for (const DayTableKind& kind : kDayTableKinds) {
    for (std::string& table : DayTables(history, kind.controlTable)) {
      tables.push_back(std::move(table));
    }
  }
  return tables;
}

void RefuseStatistics(const SqliteFile& file, const TableNames& tables) {
  for (const std::string& table : tables) {
    if (file.Count("SELECT EXISTS (SELECT * FROM " + QuotedName(table) + ")") == 0) continue;
    throw DatabaseFailure("the table " + table +
                          " holds statistics; 'quillondb demo --replace' empties them first");
  }
}

void Empty(const SqliteFile& file, const TableNames& tables) {
  for (const std::string& table : tables) file.RunScript("DELETE FROM " + QuotedName(table));
}

void FillReports(const SqliteFile& reports, const std::vector<DemoPort>& ports,
                 const std::vector<DemoStorage>& storages, DateTime now) {
  SqliteTransaction transaction(reports);
  Empty(reports, ReportTables());
  WriteReports(reports, ports, storages, now);
  transaction.Commit();
}

// The history up to yesterday's import, and the marks that make today's due.
void FillHistory(const SqliteFile& history, const std::vector<DemoPort>& ports,
                 const std::vector<DemoStorage>& storages, DateTime now,
                 const std::string& datumFormat) {
  const auto today = std::chrono::floor<std::chrono::days>(now);
  SqliteTransaction transaction(history);
  Empty(history, HistoryTables(history));
  WriteDayTables(history, ports, storages, today);
  WriteSums(history, ports, storages, today);
  WriteReportMarks(history, now, datumFormat);
  history.Prepare("UPDATE General_Info SET LastImport = ?")
      .Run(DateTimeText(ImportMoment(today, 1)));
  transaction.Commit();
}

}  // namespace

std::string FillDemo(const std::string& directory, bool replace, DateTime now) {
  RequireDatabases(directory);
  const SqliteFile reports = SqliteFile::Open(directory + "/Reports.mdb");
  const SqliteFile history = SqliteFile::Open(directory + "/History.mdb");
  if (!replace) {
    RefuseStatistics(reports, ReportTables());
    RefuseStatistics(history, HistoryTables(history));
  }
  const std::vector<DemoPort> ports = DemoNetwork();
  const std::vector<DemoStorage> storages = DemoServers();
  FillReports(reports, ports, storages, now);
  FillHistory(history, ports, storages, now, ReadDatumFormat(directory));
  return "Filled " + directory + " with " + std::to_string(ports.size()) + " ports and " +
         std::to_string(storages.size()) + " storages; today's report waits to be imported";
}

}  // namespace quillon
