// quillondb check: databases that are missing, or that are better not opened.
#include <sys/stat.h>

#include "import/schema/sqlite_file.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

class QuillondbCheckOpening : public CheckedInstallation {
 protected:
  std::string Path(const std::string& file) const { return (home_ / file).string(); }

  void RemoveDatabases() const {
    for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) fs::remove(home_ / file);
  }
};

TEST_F(QuillondbCheckOpening, SendsToABackupWhereOneDatabaseIsMissing) {
  fs::remove(home_ / "History.mdb");
  ExpectOnly(
      "History.mdb: the file is missing; stop the service, and restore a backup ('quillondb"
      " restore --replace BACKUP DIR')");
}

TEST_F(QuillondbCheckOpening, SendsToCreateWhereThereIsNoDatabaseAtAll) {
  RemoveDatabases();
  const std::string create =
      ": the file is missing; 'quillondb create " + home_.string() + "' makes new databases";
  EXPECT_EQ(Check(),
            Findings({"Quillon.mdb" + create, "Reports.mdb" + create, "History.mdb" + create}));
  EXPECT_EQ(Run("create {}").status, 0);
}

TEST_F(QuillondbCheckOpening, SendsToABackupWhereCreateWouldRefuse) {
  RemoveDatabases();
  std::ofstream(home_ / "History.mdb-wal") << "";
  for (const std::string& finding : Check()) {
    EXPECT_EQ(finding.find("quillondb create"), std::string::npos) << finding;
  }
  EXPECT_NE(Run("create {}").status, 0);
}

TEST_F(QuillondbCheckOpening, SaysNothingOfFilesThatAKilledRestoreStillHolds) {
  fs::create_directory(home_ / "~restore-old");
  RemoveDatabases();
  const Findings findings = Check();
  ASSERT_EQ(findings.size(), 1U) << testing::PrintToString(findings);
  EXPECT_TRUE(findings[0].starts_with("~restore-old: ")) << findings[0];
}

TEST_F(QuillondbCheckOpening, WaitsForNoPipeBesideADatabase) {
  for (const char* file : {"Quillon.mdb-journal", "History.mdb-wal", "Reports.mdb-shm"}) {
    ASSERT_EQ(mkfifo(Path(file).c_str(), 0600), 0);
    ExpectAmong(Path(file) + " is no ordinary file");
    fs::remove(home_ / file);
  }
  ExpectNothing();
}

TEST_F(QuillondbCheckOpening, SaysOnceThatAnotherProgramKeepsADatabaseLocked) {
  const SqliteFile other = SqliteFile::Open(Path("Quillon.mdb"));
  other.RunScript(
      "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE Settings_General SET"
      " DebugMode = FALSE");
  ExpectOnly(
      "Quillon.mdb: database is locked; another program keeps the database to itself: end that one,"
      " and check again");
}

}  // namespace
}  // namespace quillon
