// The count and what is expected.
#include "production/page_count.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "platform/database.h"
#include "production/page_build.h"
#include "queries/disk_table.h"
#include "queries/switch_lists.h"
#include "service/error_exit.h"
#include "web/page_cache.h"

namespace quillon {
namespace {

constexpr int kSwitchLists =
    static_cast<int>(std::size(kSwitchPortKinds) * std::size(kSwitchMetrics));
constexpr int kSwitchSummaries = static_cast<int>(std::size(kSwitchPortKinds));
constexpr int kDiskLists = static_cast<int>(std::size(kDiskClasses) * std::size(kDiskSorts) * 2);
constexpr int kDiskSummaries = 1;
constexpr int kFixedPages = kSwitchLists + kSwitchSummaries + kDiskLists + kDiskSummaries;
constexpr int kPortsOfList = 10;

// The charts of memory, one a server, and those of disks.
int StorageCharts(const ProductionContext& context) {
  Connection history;
  history.Open(context.settings.ConnHistory);
  const std::optional<std::string> table = FindDiskTable(context.queries, history);
  if (!table) return 0;
  int servers = 0;
  for (Recordset rows =
           history.Execute("SELECT DISTINCT RecNo FROM " + *table, SelectTime::kUnlimited);
       !rows.Eof(); rows.MoveNext()) {
    ++servers;
  }
  const std::string count =
      "SELECT Count(RecNo) as total FROM " + *table + std::string(kDisksAlone);
  return servers + history.Execute(count, SelectTime::kUnlimited).Field("total").AsLong();
}

}  // namespace

void BeginPages(ProductionContext& context) {
  context.pages = {};
  const JobWatch* const watch = context.diagnostics.watch;
  if (watch == nullptr || !watch->progress) return;
  context.pages.expected = kFixedPages + kSwitchLists * kPortsOfList;
  ErrorExit(context.diagnostics, kPageModule, "AutoCreate",
            [&] { context.pages.expected += StorageCharts(context); });
}

void StorePage(ProductionContext& context, std::string_view file, std::string_view page) {
  SaveToCache(context.diagnostics, BackgroundSlot, file, page);
  PageCount& pages = context.pages;
  ++pages.stored;
  TellProgress(context.diagnostics, JobUnit::kPage, pages.stored,
               std::max(pages.stored, pages.expected));
}

}  // namespace quillon
