// Pieces of both searches in the newest statistics.
#include "queries/switch_search.h"

#include <algorithm>

#include "platform/text_encoding.h"
#include "queries/report_table.h"
#include "queries/switch_row.h"
#include "service/debug_dump.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr int kSearchHead = 47;  // of the language file

}  // namespace

std::string LikeText(std::string databaseText) {
  std::replace(databaseText.begin(), databaseText.end(), '*', '%');
  return databaseText;
}

std::string LikeTextOfSearch(const QueryContext& context, const std::string& searchText) {
  return LikeText(DatabaseText(searchText, context.settings.CharSet));
}

void SetSearchHeads(const QueryContext& context, int report, SwitchTableRecord& record) {
  record.TableHead = context.LangWord(kSearchHead);
  record.TableReport = context.LangWord(report);
}

void FillFoundPort(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row) {
  FillPort(context, vlan, row);
  if (vlan.Field("InOctetsDate").IsOfDay(ReportDay(context.settings, context.clock))) {
    FillMetrics(context, vlan, row);
  } else {
    FillNoMetrics(context, row);
  }
}

void DumpSearch(const QueryContext& context, std::int64_t startTick, std::string_view backslashPath,
                const SwitchTableRecord& record) {
  DebugDump dump(context.settings, backslashPath);
  dump.ExecTime(context.clock.TickMs() - startTick);
  DumpTable(context, record, SwitchRowHead(), SwitchRowValues, dump);
  dump.Write();
}

}  // namespace quillon
