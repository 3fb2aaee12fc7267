// Lists and summary of disks and memories.
#include "production/disk_pages.h"

#include "production/page_build.h"
#include "production/page_count.h"
#include "queries/disk_summary.h"
#include "queries/disk_top10.h"
#include "render/chart_blocks.h"
#include "render/disk_tables.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

// A number of no class has neither name nor report.
DiskClass ClassOf(std::int16_t diskType) {
  for (const DiskClass& disks : kDiskClasses) {
    if (disks.type == diskType) return disks;
  }
  return {diskType, {}, {}};
}

}  // namespace

void AutoCreateTop10_Disk(ProductionContext& context, std::int16_t diskType, std::string_view field,
                          std::string_view order, const std::string& file) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateTop10_Disk", [&] {
    const DiskClass disks = ClassOf(diskType);
    EmptyRows(context.records.DiskTableRep[BackgroundSlot]);
    SqlTop10DiskStats(context.queries, BackgroundSlot, diskType, field, order);
    std::string page = PageOfReport(context, disks.top10Report);
    TableHeader_Disk(context.render, BackgroundSlot, page);
    TableData_Disk(context.render, BackgroundSlot, disks.name, order, file, page);
    StorePage(context, file, page);
  });
}

void AutoCreateSum_Disk(ProductionContext& context, const std::string& file) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateSum_Disk", [&] {
    SqlHist45dDiskSum(context.queries, BackgroundSlot);
    std::string page = PageOfReport(context, "disk-mem-summary");
    DiskSummaryBlocks(context.render, BackgroundSlot, page);
    StorePage(context, file, page);
  });
}

}  // namespace quillon
