// The port search: a count, the list, the users of its ports.
#include "queries/port_search.h"

#include <fmt/format.h>

#include <algorithm>

#include "queries/report_table.h"
#include "queries/switch_row.h"
#include "queries/switch_search.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr int kReport = 4;  // of the language file

// Digits, dots and stars with at least one dot are an address, and all else is a name.
std::string_view DeviceColumn(const std::string& devPattern) {
  const bool hasDot = devPattern.find('.') != std::string::npos;
  const bool isAddress = devPattern.find_first_not_of("0123456789.*") == std::string::npos;
  return hasDot && isAddress ? "IpAddr" : "DevName";
}

// Fills the first ports of the list, and returns how many there are.
int FillList(const QueryContext& context, Connection& reports, const std::string& select,
             SwitchTableRecord& record) {
  Recordset list = reports.Execute(select);
  int filled = 0;
  for (; filled < record.rows.size() && !list.Eof(); list.MoveNext()) {
    FillFoundPort(context, list, record.rows[filled + 1]);
    ++filled;
  }
  return filled;
}

}  // namespace

void SqlSearchDevicePort(QueryContext& context, ConnectionId slot, std::string& devPattern,
                         std::string& portPattern, std::string_view portColumn,
                         PatternSource source) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlSearchDevicePort", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Connection reports;
    reports.Open(context.settings.ConnReports);
    SwitchTableRecord& record = context.records.SwitchTableRep[slot];
    SetSearchHeads(context, kReport, record);
    StarIfEmpty(devPattern);
    StarIfEmpty(portPattern);

    const auto like = [&](const std::string& pattern) {
      return source == PatternSource::kRequest ? LikeTextOfSearch(context, pattern)
                                               : LikeText(pattern);
    };
    const std::string ports =
        fmt::format(" FROM VLAN WHERE {} LIKE '{}' AND {} LIKE '{}'", DeviceColumn(devPattern),
                    like(devPattern), portColumn, like(portPattern));
    const std::int32_t total =
        reports.Execute("SELECT Count(RecNo) as total" + ports).Field("total").AsLong();
    record.TableCriteria = std::to_string(total);
    const int filled = FillList(context, reports, "SELECT *" + ports, record);
    // A port may have come between the two selects: no more are told of than were counted.
    record.TableCriteria = CriteriaText(std::min(total, filled), total);
    for (SwitchTableRow& row : record.rows) {
      if (row.recNo != 0) LookUpUser(context, reports, row);
    }
    reports.Close();
    if (!context.settings.DebugMode) return;
    DumpSearch(context, startTick, "\\Debug\\WebSqlSearchDevicePort.txt", record);
  });
}

}  // namespace quillon
