// The rules on single fields: what SQL can tell is a row of the table here.
#include "quillondb/check/fields.h"

#include <fmt/format.h>

#include "quillondb/check/findings.h"

namespace quillon {
namespace {

struct FieldRule {
  std::string_view table;
  std::string_view column;
  std::string_view wrong;   // condition of a wrong value; "{0}" stands for the column
  std::string_view advice;  // what to do
};

// A date that is moved by nothing comes back completed and corrected, so a good one as it was.
constexpr std::string_view kIsNoDate =
    "{0} IS NOT NULL AND strftime('%Y-%m-%d %H:%M:%S', {0}, '+0 days') IS NOT {0}";

constexpr std::string_view kWriteDate =
    "write a valid date as 'YYYY-MM-DD HH:MM:SS', or reading it can fail";

// The report is read by its days alone.
constexpr std::string_view kHasNoDay =
    "{0} IS NOT NULL AND strftime('%Y-%m-%d', {0}, '+0 days') IS NOT substr({0}, 1, 10)";

constexpr std::string_view kReportDay =
    "the row counts on no day; the management product has to write 'YYYY-MM-DD HH:MM:SS'";

constexpr std::string_view kIsNull = "{0} IS NULL";

constexpr std::string_view kReportSize =
    "storages behind that row are missing in the history; the management product has to write"
    " a number";

constexpr std::string_view kNamesNoTable = "ifnull({0}, '') = ''";

constexpr std::string_view kNameTable =
    "whatever reads the row fails; write the name of its day table";

constexpr std::string_view kIsNoDevice = "ifnull({0}, 0) = 0";

constexpr std::string_view kNumberDevice =
    "no device is meant by that; the management product has to write a number above 0";

constexpr std::string_view kIsNoPort =
    "{0} IS NOT NULL AND (typeof({0}) <> 'integer' OR {0} NOT BETWEEN 1 AND 65535)";

constexpr FieldRule kFieldRules[] = {
    {"Settings_General", "DatumFormat",
     "{0} COLLATE BINARY NOT IN ('YYYY-MM-DD', 'MM/DD/YYYY', 'DD/MM/YYYY')",
     "it has to be YYYY-MM-DD, MM/DD/YYYY or DD/MM/YYYY"},
    {"Settings_WebServer", "TcpPort", kIsNoPort,
     "the site cannot listen there; write a port from 1 to 65535"},
    {"Settings_SmtpServer", "MailPort", kIsNoPort,
     "no mail can be sent there; write a port from 1 to 65535"},
    {"General_Info", "LastReport", kIsNoDate, kWriteDate},
    {"General_Info", "LastImport", kIsNoDate, kWriteDate},
    {"VLAN_HistCtrl", "TrafficDate", kIsNoDate, kWriteDate},
    {"VLAN_HistCtrl", "HistTable", kNamesNoTable, kNameTable},
    {"Disk_HistCtrl", "StorageDate", kIsNoDate, kWriteDate},
    {"Disk_HistCtrl", "HistTable", kNamesNoTable, kNameTable},
    {"VLAN", "RecNo", kIsNoDevice, kNumberDevice},
    {"VLAN", "InOctetsDate", kHasNoDay, kReportDay},
    {"VLAN", "LastUpdate", kHasNoDay, kReportDay},
    {"HostDiskInfo", "RecNo", kIsNoDevice, kNumberDevice},
    {"HostDiskInfo", "LastUpdate", kHasNoDay, kReportDay},
    {"HostDiskInfo", "FreeRawM", kIsNull, kReportSize},
    {"HostDiskInfo", "UsedRawM", kIsNull, kReportSize},
};

// Each wrong value once, as a finding shows it, with the number of its rows.
std::string SelectWrongValues(const FieldRule& rule) {
  return fmt::format(
      "SELECT CASE WHEN {0} IS NULL THEN 'null' WHEN {0} = '' THEN 'empty' ELSE quote({0}) END,"
      " COUNT(*) FROM {1} WHERE {2} GROUP BY 1 COLLATE BINARY ORDER BY MIN(rowid)",
      rule.column, rule.table, fmt::format(fmt::runtime(rule.wrong), rule.column));
}

}  // namespace

void CheckFields(const SqliteFile& file, const std::string& place, std::string_view table,
                 std::vector<std::string>& findings) {
  for (const FieldRule& rule : kFieldRules) {
    if (rule.table != table) continue;
    std::vector<std::string> found;
    SqliteStatement values = file.Prepare(SelectWrongValues(rule));
    while (values.Step()) {
      const bool once = values.Integer(1) == 1;
      found.push_back(
          fmt::format("{}{} in {} is {}{}; {}", place, rule.column, table, values.Text(0),
                      once ? "" : fmt::format(" in {} rows", values.Integer(1)), rule.advice));
    }
    AppendFirst(place, found, findings);
  }
}

}  // namespace quillon
