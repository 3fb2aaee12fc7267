// The top-10 query of disks: a count and the list, on the newest day table.
#include "queries/disk_top10.h"

#include <fmt/format.h>

#include <algorithm>

#include "queries/disk_table.h"
#include "queries/report_table.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

// The name of the report by the class of its disks, in numbers of the language file.
struct ReportWord {
  std::int16_t diskType;
  int word;
};

constexpr ReportWord kReports[] = {{10, 52}, {20, 53}, {30, 88}, {40, 51}};

void SetReport(const QueryContext& context, std::int16_t diskType, DiskTableRecord& record) {
  for (const ReportWord& report : kReports) {
    if (report.diskType == diskType) record.TableReport = context.LangWord(report.word);
  }
}

void FillList(const QueryContext& context, Connection& history, const std::string& select,
              DiskTableRecord& record) {
  Recordset list = history.Execute(select);
  for (int n = 1; n <= record.rows.size() && !list.Eof(); ++n) {
    FillDisk(context, list, record.rows[n]);
    list.MoveNext();
  }
}

void WriteDump(const QueryContext& context, std::int64_t startTick, std::int16_t diskType,
               std::string_view field, std::string_view sortOrder, const DiskTableRecord& record) {
  DebugDump dump(context.settings, kTop10Dump);
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Top10 Field", field);
  dump.Field("DiskType", std::to_string(diskType));
  dump.Field("SortOrder", sortOrder);
  DumpDiskTable(context, record, dump);
  dump.Write();
}

}  // namespace

void SqlTop10DiskStats(QueryContext& context, ConnectionId slot, std::int16_t diskType,
                       std::string_view field, std::string_view sortOrder) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlTop10DiskStats", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Connection history;
    history.Open(context.settings.ConnHistory);
    const auto table = FindDiskTable(context, history);
    if (!table) return;
    DiskTableRecord& record = context.records.DiskTableRep[slot];
    SetDiskHead(context, DiskSortByColumn(field), sortOrder, record);
    SetReport(context, diskType, record);

    const std::string disks = fmt::format(" FROM {} WHERE Type = {}", *table, diskType);
    const std::int32_t total =
        history.Execute("SELECT Count(RecNo) as total" + disks).Field("total").AsLong();
    record.TableCriteria = CriteriaText(std::min(total, record.rows.size()), total);
    FillList(context, history, fmt::format("SELECT *{} ORDER BY {} {}", disks, field, sortOrder),
             record);
    history.Close();
    if (!context.settings.DebugMode) return;
    WriteDump(context, startTick, diskType, field, sortOrder, record);
  });
}

}  // namespace quillon
