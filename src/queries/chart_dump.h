// What the debug dumps of the 45-day reports have alike.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "queries/chart_panel.h"
#include "service/debug_dump.h"

namespace quillon {

// The dumps of all device reports, and those of all summaries.
inline constexpr std::string_view kDeviceDump = "\\Debug\\WebSqlHist45.txt";
inline constexpr std::string_view kSummaryDump = "\\Debug\\WebSqlHist45d.txt";

// Words and axis of a panel, "VolumeHead=..." and so on.
void DumpPanelHead(DebugDump& dump, std::string_view panelName, const Panel& panel);

// First and last day, a line for each day in record order, and an empty line. A device report has a
// day table for each day, a summary has none.
void DumpDays(const QueryContext& context, const Days<DateTime>& dates,
              const Days<std::string>* tables, std::initializer_list<const Panel*> panels,
              DebugDump& dump);

}  // namespace quillon
