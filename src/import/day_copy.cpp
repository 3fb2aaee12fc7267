// From a select into a table, row by row.
#include "import/day_copy.h"

#include <fmt/format.h>

#include "import/history_table.h"
#include "import/row_pauses.h"
#include "service/report_day.h"

namespace quillon {

void CopyToday(ImportContext& context, const DaySource& source, const std::string& dayTable,
               const std::function<void(const Recordset& row, Recordset& day)>& copyRow) {
  Connection reports;
  reports.Open(context.settings.ConnReports);
  HistoryTable day(context, dayTable);
  const std::string today = DayText(ReportDay(context.settings, context.clock));
  Recordset rows =
      reports.Execute(fmt::format("SELECT * FROM {} WHERE Format({},'YYYY-MM-DD') = '{}'",
                                  source.table, source.dateField, today),
                      SelectTime::kUnlimited);
  WriteGroup writes(context, day.connection);
  RowPauses pauses(context.loop, writes);
  for (; !rows.Eof(); rows.MoveNext()) {
    writes.Begin();
    copyRow(rows, day.rows);
    pauses.RowDone();
  }
  writes.Commit();
}

}  // namespace quillon
