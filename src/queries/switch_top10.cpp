// The top-10 query of switch ports: a count, the list, the users of its ports.
#include "queries/switch_top10.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/database.h"
#include "queries/report_table.h"
#include "queries/switch_row.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

// Words of the language file: the metric's name by sort field, the report by port kind.
struct FieldWord {
  std::string_view field;
  int word;
};

constexpr FieldWord kTableHeads[] = {
    {"InHCOctetsMb24H", 6},   {"OutHCOctetsMb24H", 7}, {"InBroadCastPpm24H", 8},
    {"InMultiCastPpm24H", 9}, {"InErrorsTot24H", 10},  {"OutErrorsTot24H", 11},
};
constexpr int kAccessReport = 2;
constexpr int kTrunkReport = 3;

std::string_view Word(bool truth) {
  return truth ? "True" : "False";
}

std::string WhereDayAndKind(const std::string& day, bool isTrunk) {
  return fmt::format(
      " FROM VLAN"
      " WHERE Format(InOctetsDate,'YYYY-MM-DD') = '{}'"
      " AND IsTrunk={}",
      day, Word(isTrunk));
}

std::string SelectCount(const std::string& day, bool isTrunk) {
  return "SELECT Count(RecNo) as total" + WhereDayAndKind(day, isTrunk);
}

std::string SelectList(const std::string& day, bool isTrunk, std::string_view field) {
  return fmt::format("SELECT *{} ORDER BY {} DESC", WhereDayAndKind(day, isTrunk), field);
}

void SetHeads(const QueryContext& context, std::string_view field, bool isTrunk,
              SwitchTableRecord& record) {
  for (const FieldWord& head : kTableHeads) {
    if (head.field == field) record.TableHead = context.LangWord(head.word);
  }
  record.TableReport = context.LangWord(isTrunk ? kTrunkReport : kAccessReport);
}

void FillList(const QueryContext& context, Connection& reports, const std::string& select,
              SwitchTableRecord& record) {
  Recordset list = reports.Execute(select);
  for (int n = 1; n <= record.rows.size() && !list.Eof(); ++n) {
    FillPort(context, list, record.rows[n]);
    FillMetrics(context, list, record.rows[n]);
    list.MoveNext();
  }
}

void FillUsers(const QueryContext& context, Connection& reports, bool isTrunk,
               SwitchTableRecord& record) {
  for (SwitchTableRow& row : record.rows) {
    if (row.recNo == 0) continue;
    if (!isTrunk) {
      LookUpUser(context, reports, row);
      continue;
    }
    // Many users stand behind a trunk: none is shown.
    row.userMacAddr = "-";
    row.userIpAddr = "-";
    row.userLastSeen = "-";
  }
}

void WriteDump(const QueryContext& context, std::int64_t startTick, std::string_view field,
               bool isTrunk, const SwitchTableRecord& record) {
  DebugDump dump(context.settings, kTop10Dump);
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Top10 Field", field);
  dump.Field("Trunk", Word(isTrunk));
  // The head ends in a tab here, the values do not.
  DumpTable(context, record, SwitchRowHead() + "\t", SwitchRowValues, dump);
  dump.Write();
}

}  // namespace

void SqlTop10SwitchStats(QueryContext& context, ConnectionId slot, std::string_view field,
                         bool isTrunk) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlTop10SwitchStats", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Connection reports;
    reports.Open(context.settings.ConnReports);
    SwitchTableRecord& record = context.records.SwitchTableRep[slot];
    SetHeads(context, field, isTrunk, record);

    const std::string day = DayText(ReportDay(context.settings, context.clock));
    const std::int32_t total = reports.Execute(SelectCount(day, isTrunk)).Field("total").AsLong();
    record.TableCriteria = CriteriaText(std::min(total, record.rows.size()), total);
    FillList(context, reports, SelectList(day, isTrunk, field), record);
    FillUsers(context, reports, isTrunk, record);
    reports.Close();
    if (context.settings.DebugMode) WriteDump(context, startTick, field, isTrunk, record);
  });
}

}  // namespace quillon
