// The decision, the steps, the mark.
#include "import/import.h"

#include "import/disk_history.h"
#include "import/disk_trends.h"
#include "import/general_info.h"
#include "import/history_table.h"
#include "import/switch_history.h"
#include "platform/text_encoding.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

// Both marks have to hold a date: without one it is unknown whether the day is done, and then it is
// not imported.
bool IsDue(const Value& lastReport, const Value& lastImport, DateTime now) {
  return lastReport.IsOfDay(now) && lastImport.type() == Value::Type::kDate &&
         !lastImport.IsOfDay(now);
}

// Takes the texts of the period over, and tells whether the day waits to be imported.
bool ReadMarks(ImportContext& context) {
  const HistoryTable history(context, "General_Info");
  const Recordset& marks = history.rows;
  const auto text = [&](std::string_view field) {
    return PageText(marks.Field(field).AsText(), context.settings.CharSet);
  };
  context.period.ReportStart = text("ReportStart");
  context.period.ReportEnd = text("ReportEnd");
  return IsDue(marks.Field("LastReport"), marks.Field("LastImport"),
               ReportDay(context.settings, context.clock));
}

void SumAccessPorts(ImportContext& context) {
  SwitchStatsSum(context, false);
}

void SumTrunkPorts(ImportContext& context) {
  SwitchStatsSum(context, true);
}

void RunSteps(ImportContext& context) {
  using Step = void (*)(ImportContext & context);
  constexpr Step kSteps[] = {SwitchStatsToHist, ClearSwitchHistSum, SumAccessPorts,   SumTrunkPorts,
                             DiskStatsToHist,   DiskFixTrendValues, ClearDiskHistSum, DiskStatsSum};
  int number = 0;
  for (const Step step : kSteps) {
    TellProgress(context.diagnostics, JobUnit::kStep, ++number,
                 static_cast<int>(std::size(kSteps)));
    step(context);
  }
}

// The only guard against a second import of the day: it comes when all the rows stand.
void MarkImported(ImportContext& context) {
  ChangeMarks(context, [&](Recordset& marks) {
    marks.SetField("LastImport", Value::Date(ReportDay(context.settings, context.clock)));
  });
}

}  // namespace

void Import(ImportContext& context, bool& result) {
  result = false;
  ErrorExit(context.diagnostics, "modImport", "Import", [&] {
    if (!ReadMarks(context)) return;
    RunSteps(context);
    MarkImported(context);
    result = true;
  });
}

}  // namespace quillon
