// quillondb create: a new installation, and what is refused.
#include "render/stylesheet.h"
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

using QuillondbCreate = Quillondb;

TEST_F(QuillondbCreate, MakesADirectoryThatPassesTheCheckOnceTheWebFilesAreThere) {
  EXPECT_EQ(Run("create {}").status, 0);
  CopyWebFiles();
  UseFreePort();
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.out, "ok\n");
  EXPECT_EQ(check.status, 0);
}

TEST_F(QuillondbCreate, MakesTheFoldersOfTheServiceAndItsMorvaneIni) {
  Run("create {}");
  for (const char* folder : {"WebReports", "WebReports/Cache", "WebReports/Mail", "Debug"}) {
    EXPECT_TRUE(fs::is_directory(home_ / folder)) << folder;
  }
  EXPECT_EQ(Content(home_ / "Morvane.ini"), "ServerIpAddr=127.0.0.1\r\nServerTrapPort=162\r\n");
  EXPECT_EQ(Text("Quillon.mdb", "SELECT SnmpcDir FROM Settings_General"), home_.string());
}

// Whoever can open the directory could hold its lock and keep the service from starting.
TEST_F(QuillondbCreate, MakesADirectoryThatOthersCannotOpenAndKeepsTheRightsOfAnother) {
  Run("create {}");
  EXPECT_EQ(fs::status(home_).permissions() & fs::perms::others_all, fs::perms::none);
  fs::remove_all(home_);
  fs::create_directory(home_);
  fs::permissions(home_, fs::perms::others_read, fs::perm_options::add);
  Run("create {}");
  EXPECT_NE(fs::status(home_).permissions() & fs::perms::others_read, fs::perms::none);
}

TEST_F(QuillondbCreate, KeepsAMorvaneIniThatIsThere) {
  fs::create_directories(home_);
  std::ofstream(home_ / "Morvane.ini") << "ServerTrapPort=1162\n";
  EXPECT_EQ(Run("create {}").status, 0);
  EXPECT_EQ(Content(home_ / "Morvane.ini"), "ServerTrapPort=1162\n");
}

TEST_F(QuillondbCreate, WritesTheFirstStylesheetInTheBlueTheme) {
  Run("create {}");
  EXPECT_EQ(Content(home_ / "WebReports/qws.css"), StylesheetText(FindTheme("Blue")));
}

TEST_F(QuillondbCreate, KeepsAStylesheetThatIsThere) {
  fs::create_directories(home_ / "WebReports");
  std::ofstream(home_ / "WebReports/qws.css") << "body {}";
  EXPECT_EQ(Run("create {}").status, 0);
  EXPECT_EQ(Content(home_ / "WebReports/qws.css"), "body {}");
}

TEST_F(QuillondbCreate, RefusesToOverwriteADatabase) {
  Run("create {}");
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 8181");
  const Outcome again = Run("create {}");
  EXPECT_EQ(again.status, 1);
  EXPECT_NE(again.error.find("Quillon.mdb exists already"), std::string::npos) << again.error;
  EXPECT_EQ(Text("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8181");
}

TEST_F(QuillondbCreate, AddsNothingWhereAnyDatabaseOrItsSideFileIs) {
  for (const char* existing :
       {"Quillon.mdb", "Reports.mdb", "History.mdb", "Reports.mdb-wal", "History.mdb-journal"}) {
    fs::remove_all(home_);
    fs::create_directory(home_);
    std::ofstream(home_ / existing) << "kept";
    const Outcome outcome = Run("create {}");
    EXPECT_EQ(outcome.status, 1) << existing;
    EXPECT_EQ(outcome.error, "quillondb: " + (home_ / existing).string() +
                                 " exists already and is not overwritten; move it away first\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(home_), fs::directory_iterator()), 1)
        << existing;
    EXPECT_EQ(Content(home_ / existing), "kept");
  }
}

TEST_F(QuillondbCreate, SaysWhyTheDirectoryCannotBeMade) {
  std::ofstream(home_) << "a file in the way";
  const Outcome outcome = Run("create {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error, "quillondb: " + home_.string() + ": cannot be made: Not a directory\n");
  EXPECT_EQ(Content(home_), "a file in the way");
}

TEST_F(QuillondbCreate, SaysWhyADirectoryBelowAFileCannotBeMade) {
  std::ofstream(home_) << "a file in the way";
  const Outcome outcome = Run("create {}/below");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error,
            "quillondb: " + home_.string() + "/below: cannot be made: Not a directory\n");
}

// Not even the superuser makes a directory there.
TEST_F(QuillondbCreate, SaysThatAPlaceIsNotWritable) {
  const Outcome outcome = Run("create /proc/quillon");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error.find("quillondb: /proc/quillon: cannot be made: "), 0u) << outcome.error;
}

TEST_F(QuillondbCreate, SaysWhichFolderCannotBeMade) {
  fs::create_directories(home_);
  std::ofstream(home_ / "WebReports") << "a file in the way";
  const Outcome outcome = Run("create {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error,
            "quillondb: " + home_.string() + "/WebReports: cannot be made: Not a directory\n");
}

TEST_F(QuillondbCreate, CanBeRepeatedAfterAFailure) {
  fs::create_directories(home_);
  std::ofstream(home_ / "Debug") << "a file in the way";
  EXPECT_EQ(Run("create {}").status, 1);
  fs::remove(home_ / "Debug");
  EXPECT_EQ(Run("create {}").status, 0);
}

}  // namespace
}  // namespace quillon
