// What the procedures that build pages have alike.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "production/production_context.h"
#include "render/page_frame.h"

namespace quillon {

// The module under which pages report their failures.
inline constexpr std::string_view kPageModule = "modHtml";

// Events run between two charts; a chart's own query pauses on top of it.
inline constexpr std::int16_t kChartPauseMs = 50;

// A class of disks, by the number that the day tables have for it.
struct DiskClass {
  std::int16_t type;
  std::string_view name;  // "physical"
  std::string_view top10Report;
};

inline constexpr DiskClass kDiskClasses[] = {
    {10, "physical", "disk-physical-top10"},
    {20, "virtual", "disk-virtual-top10"},
    {30, "windows", "disk-windows-top10"},
    {40, "unix", "disk-unix-top10"},
};

// The disks of a day table, without the two memories of a server.
inline constexpr std::string_view kDisksAlone =
    " WHERE (StorDescr<>'Physical' AND StorDescr<>'Virtual')";

// The rows of a table record that no query fills stay empty.
template <typename TableRecord>
void EmptyRows(TableRecord& record) {
  for (auto& row : record.rows) row.recNo = 0;
}

// The beginning of a page with its selector, which marks the report.
inline std::string PageOfReport(const ProductionContext& context, std::string_view reportKey) {
  std::string page;
  TopHeader_Begin(context.render, kReportPageWidth, reportKey, page);
  TopHeader_End(context.render, page);
  return page;
}

}  // namespace quillon
