// The address search: the newest addresses that match, and the ports on which they were seen.
#include "queries/mac_search.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "platform/text_encoding.h"
#include "queries/page_field.h"
#include "queries/report_table.h"
#include "queries/switch_search.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr int kReport = 5;                  // of the language file
constexpr std::size_t kMaxAddresses = 100;  // that are read for one search

// One address of MAC.
struct Address {
  std::string macAddr;
  std::string ipAddr;
  DateTime lastSeen;
  std::int32_t recNo;
  std::int32_t ifIndex;
};

// 0011.2233.4455
bool IsDottedMac(const std::string& value) {
  constexpr std::size_t kLength = 14;
  return value.size() == kLength && value[4] == '.' && value[9] == '.' &&
         value.find('*') == std::string::npos;
}

// "0011.2233.4455" as "00 11 22 33 44 55".
std::string PairsOfDotted(const std::string& value) {
  std::string pairs;
  for (const std::size_t start : {0, 2, 5, 7, 10, 12}) {
    if (!pairs.empty()) pairs += ' ';
    pairs += value.substr(start, 2);
  }
  return pairs;
}

// Rewrites the value in the form of the table, pairs with blanks, and returns the column that it is
// looked for in.
std::string_view TakeForm(std::string& value) {
  if (value.find('.') != std::string::npos) {
    if (!IsDottedMac(value)) return "IpAddr";
    value = PairsOfDotted(value);
    return "MacAddr";
  }
  constexpr std::size_t kBehindPair = 2;  // in front of it a separator means nothing
  for (const char separator : {':', '-'}) {
    if (value.find(separator, kBehindPair) == std::string::npos) continue;
    std::replace(value.begin(), value.end(), separator, ' ');
    break;
  }
  return "MacAddr";
}

std::vector<Address> ReadAddresses(Connection& reports, const std::string& addresses) {
  std::vector<Address> found;
  Recordset mac = reports.Execute("SELECT MacAddr, IpAddr, LastSeen, RecNo, IfIndex" + addresses +
                                  " ORDER BY LastSeen DESC");
  for (; found.size() < kMaxAddresses && !mac.Eof(); mac.MoveNext()) {
    found.push_back({mac.Field("MacAddr").AsText(), mac.Field("IpAddr").AsText(),
                     mac.Field("LastSeen").AsDate(), mac.Field("RecNo").AsLong(),
                     mac.Field("IfIndex").AsLong()});
  }
  return found;
}

// Fills a row for each address whose port is still there, and returns how many there are.
int FillPorts(const QueryContext& context, Connection& reports,
              const std::vector<Address>& addresses, SwitchTableRecord& record) {
  int filled = 0;
  for (const Address& address : addresses) {
    if (filled == record.rows.size()) break;
    if (address.macAddr.empty()) continue;
    const Recordset port = reports.Execute(fmt::format(
        "SELECT * FROM VLAN WHERE RecNo={} AND IfIndex= {}", address.recNo, address.ifIndex));
    if (port.Eof()) continue;
    SwitchTableRow& row = record.rows[filled + 1];
    FillFoundPort(context, port, row);
    row.userMacAddr = PageText(address.macAddr, context.settings.CharSet);
    row.userIpAddr = PageText(address.ipAddr, context.settings.CharSet);
    row.userLastSeen = FormatDate(address.lastSeen, context.settings.DatumFormat);
    ++filled;
  }
  return filled;
}

}  // namespace

void SqlSearchMacIp(QueryContext& context, ConnectionId slot, std::string& value) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlSearchMacIp", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Connection reports;
    reports.Open(context.settings.ConnReports);
    SwitchTableRecord& record = context.records.SwitchTableRep[slot];
    SetSearchHeads(context, kReport, record);
    StarIfEmpty(value);
    const std::string_view column = TakeForm(value);

    const std::string addresses =
        fmt::format(" FROM MAC WHERE {} LIKE '{}'", column, LikeTextOfSearch(context, value));
    const std::int32_t total =
        reports.Execute("SELECT Count(MacAddr) as total" + addresses).Field("total").AsLong();
    record.TableCriteria = std::to_string(total);
    const int filled = FillPorts(context, reports, ReadAddresses(reports, addresses), record);
    record.TableCriteria = CriteriaText(filled, total);
    reports.Close();
    if (!context.settings.DebugMode) return;
    DumpSearch(context, startTick, "\\Debug\\WebSqlSearchMacIp.txt", record);
  });
}

}  // namespace quillon
