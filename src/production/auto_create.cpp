// The run: what is built, in which order.
#include "production/auto_create.h"

#include <string>
#include <string_view>

#include "platform/files.h"
#include "production/disk_pages.h"
#include "production/page_build.h"
#include "production/page_count.h"
#include "production/storage_charts.h"
#include "production/switch_pages.h"
#include "queries/disk_table.h"
#include "queries/switch_lists.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

// The two directions of a list: as a query takes them, as the names of the pages have them.
struct Direction {
  std::string_view order;
  std::string_view name;
};

constexpr Direction kDirections[] = {{"ASC", "asc"}, {"DESC", "desc"}};

void CreateSwitchPages(ProductionContext& context) {
  for (const SwitchPortKind& kind : kSwitchPortKinds) {
    for (const SwitchMetric& metric : kSwitchMetrics) {
      AutoCreateTop10_Switch(context, kind.name, metric.sortField, SwitchTop10File(kind, metric));
    }
  }
  for (const SwitchPortKind& kind : kSwitchPortKinds) {
    AutoCreateSum_Switch(context, SwitchSummaryFile(kind));
  }
}

void CreateDiskLists(ProductionContext& context) {
  for (const DiskClass& disks : kDiskClasses) {
    for (const DiskSort& sort : kDiskSorts) {
      for (const Direction& direction : kDirections) {
        std::string file(disks.top10Report);
        file.append("-").append(sort.word).append("-").append(direction.name).append(".htm");
        AutoCreateTop10_Disk(context, disks.type, sort.column, direction.order, file);
      }
    }
  }
}

}  // namespace

void AutoCreate(ProductionContext& context) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreate", [&] {
    DeleteMatching(PathBelow(context.settings, "\\WebReports\\Cache"), "*");
    BeginPages(context);
    CreateSwitchPages(context);
    CreateDiskLists(context);
    AutoCreateChDa45_Mem(context);
    AutoCreateChDa45_Disk(context);
    AutoCreateSum_Disk(context, "disk-mem-summary.htm");
  });
}

}  // namespace quillon
