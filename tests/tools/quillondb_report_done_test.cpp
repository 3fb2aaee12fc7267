// quillondb report-done: the marks at the end of a report.
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

using QuillondbReportDone = Quillondb;

TEST_F(QuillondbReportDone, SetsTheMarksInTheDatePatternOfTheSettings) {
  const std::pair<const char*, const char*> kPatterns[] = {
      {"YYYY-MM-DD", "%Y-%m-%d"}, {"MM/DD/YYYY", "%m/%d/%Y"}, {"DD/MM/YYYY", "%d/%m/%Y"}};
  Run("create {}");
  for (const auto& [pattern, format] : kPatterns) {
    Sql("Quillon.mdb", fmt::format("UPDATE Settings_General SET DatumFormat = '{}'", pattern));
    EXPECT_EQ(Run("report-done {}").status, 0);
    const std::vector<Row> rows =
        Sql("History.mdb",
            "SELECT date(LastReport), date(LastImport), ReportStart, ReportEnd"
            " FROM General_Info");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0],
              (Row{HoursAgo(0, "%Y-%m-%d"), "2000-01-01", HoursAgo(23, format) + "&nbsp;&nbsp03:00",
                   HoursAgo(0, format) + "&nbsp;&nbsp03:00"}));
  }
}

TEST_F(QuillondbReportDone, NeedsCreatedDatabases) {
  const Outcome outcome = Run("report-done {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("quillondb create"), std::string::npos) << outcome.error;
}

TEST_F(QuillondbReportDone, SaysThatTheMarksHaveNoRow) {
  Run("create {}");
  Sql("History.mdb", "DELETE FROM General_Info");
  const Outcome outcome = Run("report-done {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("General_Info"), std::string::npos) << outcome.error;
}

}  // namespace
}  // namespace quillon
