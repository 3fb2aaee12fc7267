// The search for disks. Its patterns are matched here, row by row: none of them reaches a select.
#include "queries/disk_search.h"

#include "platform/failure.h"
#include "platform/like_pattern.h"
#include "platform/text_encoding.h"
#include "queries/disk_table.h"
#include "queries/report_table.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr int kReport = 55;  // of the language file

// The order of a form's key, "totalbytes-asc".
struct Order {
  const DiskSort* sort;   // null for a word of no column
  std::string direction;  // upper case

  std::string_view Column() const { return sort == nullptr ? "" : sort->column; }
};

Order OrderOf(const std::string& orderBy) {
  const std::size_t dash = orderBy.find('-');
  if (dash == std::string::npos) {
    throw TextFailure("an order without a direction: \"" + orderBy + "\"");
  }
  Order order{DiskSortByWord(std::string_view(orderBy).substr(0, dash)), orderBy.substr(dash + 1)};
  for (char& letter : order.direction) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - ('a' - 'A'));
  }
  return order;
}

LikePattern Parsed(const QueryContext& context, const std::string& pattern) {
  return LikePattern(DatabaseText(pattern, context.settings.CharSet), kProgramWildcards);
}

// Fills the first rows that match, and returns how many there are. The walk goes to the end of the
// table, and so tells of a name that is missing anywhere.
int FillMatches(const QueryContext& context, Recordset& disks, const LikePattern& device,
                const LikePattern& storage, DiskTableRecord& record) {
  int taken = 0;
  for (; !disks.Eof(); disks.MoveNext()) {
    const std::string devName = disks.Field("DevName").AsText();
    const std::string storDescr = disks.Field("StorDescr").AsText();
    if (taken == record.rows.size() || !device.Matches(devName) || !storage.Matches(storDescr)) {
      continue;
    }
    FillDisk(context, disks, record.rows[taken + 1]);
    ++taken;
  }
  return taken;
}

std::string SortText(const QueryContext& context, const Order& order) {
  return std::string(order.Column()) + " " +
         DatabaseText(order.direction, context.settings.CharSet);
}

void WriteDump(const QueryContext& context, std::int64_t startTick, const Order& order,
               const std::string& diskPattern, const DiskTableRecord& record) {
  DebugDump dump(context.settings, "\\Debug\\WebSqlSearchDeviceDisk.txt");
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Top10 Field", order.Column());
  dump.Field("Disk", diskPattern);
  dump.Field("SortOrder", order.direction);
  DumpDiskTable(context, record, dump);
  dump.Write();
}

}  // namespace

void SqlSearchDeviceDisk(QueryContext& context, ConnectionId slot, std::string& devPattern,
                         std::string& diskPattern, const std::string& orderBy) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlSearchDeviceDisk", [&] {
    const Order order = OrderOf(orderBy);
    const std::int64_t startTick = context.clock.TickMs();
    Connection history;
    history.Open(context.settings.ConnHistory);
    const auto table = FindDiskTable(context, history);
    if (!table) return;
    DiskTableRecord& record = context.records.DiskTableRep[slot];
    SetDiskHead(context, order.sort, order.direction, record);
    record.TableReport = context.LangWord(kReport);
    StarIfEmpty(devPattern);
    StarIfEmpty(diskPattern);

    Recordset disks;
    disks.Open(*table, history, CursorType::kStatic, LockType::kReadOnly);
    const auto total = static_cast<std::int32_t>(disks.RecordCount());
    if (total > 0) disks.Sort(SortText(context, order));
    const int taken = FillMatches(context, disks, Parsed(context, devPattern),
                                  Parsed(context, diskPattern), record);
    record.TableCriteria = CriteriaText(taken, total);
    disks.Close();
    history.Close();
    if (!context.settings.DebugMode) return;
    WriteDump(context, startTick, order, diskPattern, record);
  });
}

}  // namespace quillon
