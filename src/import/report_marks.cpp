// The marks, in the order in which the management product sets them.
#include "import/report_marks.h"

#include "import/general_info.h"
#include "import/period_text.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {

void UpdateHistory_Db(ImportContext& context, std::int16_t hour) {
  // The name is the management product's side of the work, for which this stands in.
  ErrorExit(context.diagnostics, "modClientRep", "UpdateHistory_Db", [&] {
    ChangeMarks(context, [&](Recordset& marks) {
      const std::string& pattern = context.settings.DatumFormat;
      const DateTime now = ReportDay(context.settings, context.clock);
      marks.SetField("LastReport", Value::Date(now));
      marks.SetField("ReportStart", Value::Text(PeriodText(HistoryDay(now), pattern, hour)));
      marks.SetField("ReportEnd", Value::Text(PeriodText(now, pattern, hour)));
    });
  });
}

}  // namespace quillon
