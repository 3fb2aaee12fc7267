// From a select into a table, row by row.
#include "import/day_copy.h"

#include <fmt/format.h>

#include "import/row_pauses.h"
#include "service/report_day.h"

namespace quillon {

void CopyToday(ImportContext& context, const DaySource& source, const std::string& dayTable,
               const std::function<void(const Recordset& row, Recordset& day)>& copyRow) {
  Connection reports;
  Connection history;
  reports.Open(context.settings.ConnReports);
  history.Open(context.settings.ConnHistory);
  Recordset day;
  day.Open(dayTable, history, CursorType::kStatic, LockType::kOptimistic);
  const std::string today = DayText(ReportDay(context.settings, context.clock));
  Recordset rows =
      reports.Execute(fmt::format("SELECT * FROM {} WHERE Format({},'YYYY-MM-DD') = '{}'",
                                  source.table, source.dateField, today),
                      SelectTime::kUnlimited);
  WriteGroup writes(context, history);
  RowPauses pauses(context.loop, writes);
  for (; !rows.Eof(); rows.MoveNext()) {
    writes.Begin();
    copyRow(rows, day);
    pauses.RowDone();
  }
  writes.Commit();
}

}  // namespace quillon
