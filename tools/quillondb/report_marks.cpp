// The one row of General_Info, as the management product writes it at the end of a report.
#include "quillondb/report_marks.h"

#include "import/period_text.h"
#include "platform/failure.h"
#include "quillondb/installation.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr int kReportHour = 3;

}  // namespace

std::string ReadDatumFormat(const std::string& directory) {
  const SqliteFile settings = SqliteFile::Open(directory + "/Quillon.mdb");
  SqliteStatement row = settings.Prepare("SELECT DatumFormat FROM Settings_General");
  if (!row.Step()) {
    throw DatabaseFailure("Quillon.mdb: Settings_General has no row; see 'quillondb check'");
  }
  return row.Text(0);
}

void WriteReportMarks(const SqliteFile& history, DateTime now, const std::string& datumFormat) {
  if (history.Count("SELECT COUNT(*) FROM General_Info") == 0) {
    throw DatabaseFailure("History.mdb: General_Info has no row; see 'quillondb check'");
  }
  history.Prepare("UPDATE General_Info SET LastReport = ?, ReportStart = ?, ReportEnd = ?")
      .Run(DateTimeText(now), PeriodText(HistoryDay(now), datumFormat, kReportHour),
           PeriodText(now, datumFormat, kReportHour));
}

void MarkReportDone(const std::string& directory, DateTime now) {
  RequireDatabases(directory);
  const std::string datumFormat = ReadDatumFormat(directory);
  WriteReportMarks(SqliteFile::Open(directory + "/History.mdb"), now, datumFormat);
}

}  // namespace quillon
