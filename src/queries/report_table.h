// What the tables of lists and searches have alike: an empty search, how many rows they show, and
// how a dump shows them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "queries/query_context.h"
#include "service/debug_dump.h"

namespace quillon {

// The dump of all top-10 lists.
inline constexpr std::string_view kTop10Dump = "\\Debug\\WebSqlTop10.txt";

// An empty search text stands for everything, and the form shows it as a star.
inline void StarIfEmpty(std::string& searchText) {
  if (searchText.empty()) searchText = "*";
}

// Shown rows and all rows: "10 (214)".
std::string CriteriaText(std::int32_t shown, std::int32_t total);

// The heads, the period, the line of field names and the rows, filled or not, and an empty
// line: the end of every dump of a table.
template <typename Record, typename RowValues>
void DumpTable(const QueryContext& context, const Record& record, std::string_view fieldNames,
               RowValues&& rowValues, DebugDump& dump) {
  dump.Field("TableHead", record.TableHead);
  dump.Field("TableReport", record.TableReport);
  dump.Field("TableCriteria", record.TableCriteria);
  dump.Field("ReportStart", context.period.ReportStart);
  dump.Field("ReportEnd", context.period.ReportEnd);
  dump.Row(fieldNames);
  for (const auto& row : record.rows) dump.Row(rowValues(row));
  dump.Row("");
}

}  // namespace quillon
