// The statistics in one transaction, then the marks: the service that sees them finds all rows.
#include "quillondb/jet/sync_jet.h"

#include <ostream>

#include "platform/failure.h"
#include "quillondb/installation.h"
#include "quillondb/jet/database_move.h"
#include "quillondb/jet/jet_file.h"
#include "quillondb/jet/jet_target.h"
#include "quillondb/jet/outcome.h"
#include "quillondb/report_marks.h"

namespace quillon {
namespace {

constexpr std::string_view kReports = "Reports.mdb";

// The dates that make a row one of today for the service's own import.
constexpr std::string_view kHasRowsOfDay =
    "SELECT EXISTS (SELECT * FROM VLAN WHERE date(InOctetsDate) = ?1)"
    " OR EXISTS (SELECT * FROM HostDiskInfo WHERE date(LastUpdate) = ?1)";

void RequireRowsOf(const SqliteFile& file, const std::string& day, const JetSource& reports) {
  SqliteStatement found = file.Prepare(kHasRowsOfDay);
  found.Bind(1, day);
  if (found.Step() && found.Integer(0) != 0) return;
  throw FileFailure(reports.Name() + " has no statistics of " + day +
                    "; repeat this when the report of the day is finished. Nothing was written");
}

// The marks are written before the statistics are kept, and kept behind them: what could go wrong
// with either does so while nothing of both is there.
void Keep(OpenTarget& target, const std::string& directory, DateTime now) {
  const SqliteFile history = SqliteFile::Open(directory + "/History.mdb");
  SqliteTransaction marks(history);
  WriteReportMarks(history, now, ReadDatumFormat(directory));
  target.transaction.Commit();
  marks.Commit();
}

}  // namespace

void SyncJet(const JetSync& order, JetSource& reports, DateTime now, std::ostream& progress) {
  RequireDatabases(order.directory);
  JetLosses losses;
  OpenTarget target(order.directory, kReports);
  const DatabaseMove move = PlanDatabase(reports, kReports, target.file, losses);
  const std::int64_t rows =
      MoveDatabase(reports, move, {target.file, target.reference, losses, progress});
  RequireRowsOf(target.file, DayText(now), reports);
  if (!order.dryRun) Keep(target, order.directory, now);
  TellOutcome({rows, order.dryRun}, losses, progress);
}

void SyncJetFile(const JetSync& order, const std::string& reports, DateTime now,
                 std::ostream& progress) {
  JetFile file(reports);
  SyncJet(order, file, now, progress);
}

}  // namespace quillon
