// quillondb check: reports that do not come, or are not imported. It is mid-day.
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

class QuillondbCheckMarks : public CheckedInstallation {
 protected:
  // The marks by the engine's words for a moment: "'-2 days'".
  void Mark(const std::string& report, const std::string& import) const {
    Sql("History.mdb",
        fmt::format("UPDATE General_Info SET LastReport = datetime('now', 'localtime', {}),"
                    " LastImport = datetime('now', 'localtime', {})",
                    report, import));
  }
  // The moment of the last report, as a finding begins with it.
  std::string Report() const {
    return "History.mdb: the last report is of " +
           Text("History.mdb", "SELECT LastReport FROM General_Info");
  }
};

TEST_F(QuillondbCheckMarks, SaysNothingOfAHistoryThatHasSeenNoReport) {
  ExpectNothing();
}

TEST_F(QuillondbCheckMarks, TakesAReportThatWasImported) {
  Mark("'-9 hours'", "'-8 hours'");
  ExpectNothing();
}

TEST_F(QuillondbCheckMarks, TakesADayOrTwoWithoutAReport) {
  Mark("'-47 hours'", "'-46 hours'");
  ExpectNothing();
}

TEST_F(QuillondbCheckMarks, FindsAReportOlderThanTwoDays) {
  Mark("'-49 hours'", "'-48 hours'");
  ExpectOnly(Report() +
             ", so pages and charts show nothing newer; see why the management product has finished"
             " none since");
}

TEST_F(QuillondbCheckMarks, FindsAReportOfTodayThatNoFullHourHasImported) {
  Mark("'-9 hours'", "'-32 hours'");
  ExpectOnly(Report() +
             ", and was not imported at the full hour; see whether the service runs ('quillonctl"
             " status'), and import it ('quillonctl import')");
}

TEST_F(QuillondbCheckMarks, FindsAReportOfYesterdayThatCameTooLateForItsDay) {
  Mark("'-13 hours'", "'-56 hours'");
  ExpectOnly(Report() +
             ", and was not imported on that day, which the history lacks; let the management"
             " product finish before 23:00, and see whether the service runs at each full hour"
             " ('quillonctl status')");
  Mark("'-13 hours'", "'-12 hours'");
  ExpectNothing();
}

TEST_F(QuillondbCheckMarks, WaitsForTheFullHourBehindAReport) {
  Mark("'-1 seconds'", "'-24 hours'");
  ExpectNothing();
}

TEST_F(QuillondbCheckMarks, FindsAReportOfAMomentToCome) {
  Mark("'+2 hours'", "'-24 hours'");
  ExpectAmong(", a moment to come");
  Mark("'+3 days'", "'-24 hours'");
  ExpectAmong(", a moment to come");
}

}  // namespace
}  // namespace quillon
