// The queries of the pages, on records of as many rows as were asked for.
#include "quillonctl/report_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "exit_codes.h"
#include "platform/files.h"
#include "platform/text_encoding.h"
#include "production/page_build.h"
#include "queries/disk_search.h"
#include "queries/disk_table.h"
#include "queries/disk_top10.h"
#include "queries/mac_search.h"
#include "queries/port_search.h"
#include "queries/switch_lists.h"
#include "queries/switch_top10.h"
#include "quillonctl/desk.h"
#include "quillonctl/report_table.h"
#include "service/error_exit.h"
#include "service/report_day.h"
#include "service/settings_row.h"
#include "service/stored_settings.h"
#include "web/language_file.h"

namespace quillon {
namespace {

constexpr ConnectionId kSlot = 1;  // there is nobody else

// A desk on which the queries find what they find in the service, and records of their own.
class ReportDesk {
 public:
  ReportDesk(const std::string& directory, int rows);

  QueryContext& queries() { return desk_.queries; }
  const std::vector<std::string>& failures() const { return desk_.failures(); }
  const SwitchTableRecord& ports() const { return desk_.records.SwitchTableRep[kSlot]; }
  const DiskTableRecord& disks() const { return desk_.records.DiskTableRep[kSlot]; }

 private:
  void ReadWords(const std::string& directory);

  Desk desk_;
};

ReportDesk::ReportDesk(const std::string& directory, int rows)
    : desk_(directory, DeskEvents::kOnlyHere) {
  ReadGeneralSettings(desk_.settings);
  desk_.settings.DebugMode = false;  // its dumps are of the service's own reports
  ReadWords(directory);
  const int size = std::clamp(rows, 1, kMostRows);
  desk_.records.SwitchTableRep[kSlot].rows.SetSize(size);
  desk_.records.DiskTableRep[kSlot].rows.SetSize(size);
}

// The units in the texts are words of the site. Its file is in the charset of the pages; without it
// they are what they are there.
void ReportDesk::ReadWords(const std::string& directory) {
  const std::string path = directory + "/WebReports/Language.ini";
  const SettingsRow webServer(desk_.settings, "Settings_WebServer");
  const std::string charSet = webServer.Field("CharSet").AsText();
  const auto read = [&] {
    if (!PathExists(path)) return;
    ParseLanguageFile(DatabaseText(ReadFileBytes(path), charSet), desk_.words);
  };
  ErrorExit(desk_.diagnostics, "quillonctl", "ReadWords", read,
            [&](const std::exception& failure) { return path + ": " + failure.what(); });
}

// A text between the quotes of a select. The pages leave a quote in a name as it is, and find
// nothing then.
std::string Quoted(const std::string& text) {
  std::string quoted;
  for (const char character : text) quoted.append(character == '\'' ? 2 : 1, character);
  return quoted;
}

int Fail(const std::string& text) {
  Complain(text);
  return kExitFailed;
}

// Prints the record, or why there is none. `readable` picks the columns for people.
template <typename Record>
int Show(const ReportDesk& desk, const std::string& title, const Record& record,
         OutputTable (*readable)(const Record& record), OutputForm form) {
  for (const std::string& failure : desk.failures()) Complain(failure);
  if (!desk.failures().empty()) return kExitFailed;
  if (form != OutputForm::kPlain) {
    PrintTable(WholeRows(record), form);
    return kExitDone;
  }
  PrintLine(title + ": " + ShownOfAll(record.TableCriteria));
  const OutputTable table = readable(record);
  if (!table.rows.empty()) PrintTable(table, form);
  return kExitDone;
}

// Without a table of the day the queries of disks end early, and tell of no number of rows.
int ShowDisks(ReportDesk& desk, const std::string& title, OutputForm form) {
  if (desk.failures().empty() && desk.disks().TableCriteria.empty()) {
    const QueryContext& context = desk.queries();
    const DateTime day = HistoryDay(ReportDay(context.settings, context.clock));
    return Fail("the history has no disks of " + DayText(day) + ": no import has stored them yet");
  }
  return Show(desk, title, desk.disks(), DiskFigures, form);
}

// The one of a list whose member is the text; null where there is none.
template <typename List, typename Member>
const auto* Find(const List& list, Member member, std::string_view text) {
  const auto* const found = std::ranges::find(list, text, member);
  return found == std::end(list) ? nullptr : found;
}

}  // namespace

int ReportPorts(const std::string& directory, const std::string& kind, const std::string& metric,
                int rows, OutputForm form) {
  const auto* const ports = Find(kSwitchPortKinds, &SwitchPortKind::name, kind);
  const auto* const figure = Find(kSwitchMetrics, &SwitchMetric::name, metric);
  if (ports == nullptr || figure == nullptr) {
    return Fail("no list of " + kind + " ports by " + metric);
  }
  ReportDesk desk(directory, rows);
  SqlTop10SwitchStats(desk.queries(), kSlot, figure->sortField, ports->isTrunk);
  return Show(desk, kind + " ports by " + metric, desk.ports(), PortFigures, form);
}

int ReportDisks(const std::string& directory, const std::string& diskClass, const std::string& sort,
                const std::string& direction, int rows, OutputForm form) {
  const auto* const disks = Find(kDiskClasses, &DiskClass::name, diskClass);
  const auto* const column = DiskSortByWord(sort);
  if (disks == nullptr || column == nullptr) {
    return Fail("no list of " + diskClass + " storages by " + sort);
  }
  ReportDesk desk(directory, rows);
  SqlTop10DiskStats(desk.queries(), kSlot, disks->type, column->column,
                    direction == "asc" ? "ASC" : "DESC");
  const auto title = fmt::format("{} storages by {} {}", diskClass, sort, direction);
  return ShowDisks(desk, title, form);
}

int SearchPorts(const std::string& directory, const std::string& device, const std::string& port,
                const std::string& column, int rows, OutputForm form) {
  ReportDesk desk(directory, rows);
  std::string devPattern = Quoted(device);
  std::string portPattern = Quoted(port);
  SqlSearchDevicePort(desk.queries(), kSlot, devPattern, portPattern, column);
  const auto title = fmt::format(R"(ports "{}" of "{}")", port, device);
  return Show(desk, title, desk.ports(), PortFigures, form);
}

int SearchAddresses(const std::string& directory, const std::string& address, int rows,
                    OutputForm form) {
  ReportDesk desk(directory, rows);
  std::string value = Quoted(address);
  SqlSearchMacIp(desk.queries(), kSlot, value);
  return Show(desk, fmt::format(R"(ports of "{}")", address), desk.ports(), PortsOfAddresses, form);
}

int SearchDisks(const std::string& directory, const std::string& device, const std::string& disk,
                const std::string& sort, const std::string& direction, int rows, OutputForm form) {
  ReportDesk desk(directory, rows);
  std::string devPattern = device;
  std::string diskPattern = disk;
  SqlSearchDeviceDisk(desk.queries(), kSlot, devPattern, diskPattern, sort + "-" + direction);
  const auto title =
      fmt::format(R"(storages "{}" of "{}" by {} {})", disk, device, sort, direction);
  return ShowDisks(desk, title, form);
}

}  // namespace quillon
