// The marks against the clock.
#include "quillondb/check/marks.h"

#include <fmt/format.h>

#include <optional>

namespace quillon {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr auto kOldReport = hours(48);

// An import begins with the hour, and is over by then but for the largest networks.
constexpr auto kImportTime = minutes(15);

struct Marks {
  DateTime report;
  DateTime import;
};

// A date in any other form, which the service may not read, is found with the fields.
std::optional<DateTime> ExactDate(const std::string& text) {
  const std::optional<DateTime> date = ParseDateTime(text);
  return date && DateTimeText(*date) == text ? date : std::nullopt;
}

std::optional<Marks> ReadMarks(const SqliteFile& history) {
  SqliteStatement row = history.Prepare("SELECT LastReport, LastImport FROM General_Info");
  if (!row.Step()) return std::nullopt;
  const std::optional<DateTime> report = ExactDate(row.Text(0));
  const std::optional<DateTime> import = ExactDate(row.Text(1));
  if (!report || !import) return std::nullopt;
  return Marks{*report, *import};
}

// The mark of a history that was never used lies before anything that reports.
bool IsNew(DateTime lastReport) {
  return PartsOf(lastReport).year <= 2000;
}

// A report that ends in the last hour of a day has no pass behind it.
bool IsOverdue(const Marks& marks, DateTime now) {
  if (DaysBetween(marks.report, now) != 0 || DaysBetween(marks.import, now) == 0) return false;
  return now >= std::chrono::floor<hours>(marks.report) + hours(1) + kImportTime;
}

// A pass imports the report of its own day alone, so from midnight on it is too late.
bool IsLost(const Marks& marks, DateTime now) {
  return DaysBetween(marks.report, now) > 0 && DaysBetween(marks.import, marks.report) > 0;
}

std::string ReportOf(const Marks& marks) {
  return "History.mdb: the last report is of " + DateTimeText(marks.report);
}

void CheckMarksRead(const Marks& marks, DateTime now, std::vector<std::string>& findings) {
  if (IsNew(marks.report)) return;
  if (marks.report > now) {
    findings.push_back(ReportOf(marks) +
                       ", a moment to come, so nothing is imported as it should; set the clocks of"
                       " this machine and of the management product right");
  } else if (now - marks.report > kOldReport) {
    findings.push_back(
        ReportOf(marks) +
        ", so pages and charts show nothing newer; see why the management product has"
        " finished none since");
  } else if (IsLost(marks, now)) {
    findings.push_back(ReportOf(marks) +
                       ", and was not imported on that day, which the history lacks; let the"
                       " management product finish before 23:00, and see whether the service runs"
                       " at each full hour ('quillonctl status')");
  } else if (IsOverdue(marks, now)) {
    findings.push_back(ReportOf(marks) +
                       ", and was not imported at the full hour; see whether the"
                       " service runs ('quillonctl status'), and import it"
                       " ('quillonctl import')");
  }
}

}  // namespace

void CheckMarks(const SqliteFile& history, DateTime now, std::vector<std::string>& findings) {
  const std::optional<Marks> marks = ReadMarks(history);
  if (marks) CheckMarksRead(*marks, now, findings);
}

}  // namespace quillon
