// quillondb backup: what a backup holds, who may read it, and that nobody has to wait for it.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "quillondb/backup/backup.h"
#include "quillondb/backup/database.h"
#include "quillondb/backup/digest.h"
#include "support/file_size_limit.h"
#include "support/installation.h"
#include "support/other_writer.h"
#include "support/sql_rows.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

const DateTime kNow = MakeDateTime({2024, 5, 1, 12, 30, 0, 0});

// Rows of a megabyte and more, so that the copy takes several steps.
constexpr const char* kManyRows =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)"
    " INSERT INTO VLAN (RecNo, IfAlias) SELECT i, printf('%01000d', i) FROM n";

class QuillondbBackup : public testing::Test {
 protected:
  QuillondbBackup() {
    home_.Write("Morvane.ini", "ServerTrapPort=1162\r\n");
    home_.Write("WebReports/qws.css", "body {}");
    home_.Write("WebReports/Cache/page.htm", "made anew each night");
  }

  std::string BackUp() {
    return BackUpInstallation(home_.path(), target_, kNow,
                              [this](const std::string& line) { told_.push_back(line); });
  }

  // The backup fails with these words, and leaves nothing.
  void ExpectFailure(const std::string& words) {
    try {
      BackUp();
      ADD_FAILURE() << "no failure: " << words;
    } catch (const Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find(words), std::string::npos) << failure.what();
    }
    EXPECT_TRUE(fs::is_empty(folder_.path()));
  }

  std::vector<std::string> Files() const {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(target_)) {
      if (entry.is_directory()) continue;
      files.push_back(entry.path().lexically_relative(target_).string());
    }
    std::ranges::sort(files);
    return files;
  }

  std::string Value(const std::string& file, const std::string& select) const {
    return SqlRows(target_ + "/" + file, select)[0][0];
  }

  Installation home_;
  TemporaryFolder folder_;
  std::string target_ = folder_.path() + "/backup";
  std::vector<std::string> told_;
};

TEST_F(QuillondbBackup, HoldsDatabasesFilesAndAManifestAndNothingElse) {
  EXPECT_NE(BackUp().find("Backed up 5 files of"), std::string::npos);
  EXPECT_EQ(Files(),
            std::vector<std::string>({"History.mdb", "MANIFEST", "Morvane.ini", "Quillon.mdb",
                                      "Reports.mdb", "WebReports/qws.css"}));
}

TEST_F(QuillondbBackup, IsForTheCallerAlone) {
  BackUp();
  EXPECT_EQ(fs::status(target_).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(target_ + "/WebReports").permissions(), fs::perms::owner_all);
  for (const std::string& file : Files()) {
    EXPECT_EQ(fs::status(target_ + "/" + file).permissions(),
              fs::perms::owner_read | fs::perms::owner_write)
        << file;
  }
}

TEST_F(QuillondbBackup, HoldsWhatStandsInTheSideFilesOnly) {
  OtherWriter service = OtherWriter::Idle(home_.path() + "/Quillon.mdb");
  ASSERT_TRUE(service.Run("UPDATE Settings_WebServer SET TcpPort = 8123"));
  ASSERT_GT(fs::file_size(home_.path() + "/Quillon.mdb-wal"), 0U);
  BackUp();
  EXPECT_EQ(Value("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8123");
}

TEST_F(QuillondbBackup, WaitsForNobodyWhoWrites) {
  OtherWriter import(home_.path() + "/History.mdb");
  ASSERT_TRUE(import.Run("DELETE FROM VLAN_HistCtrl"));
  BackUp();
  EXPECT_TRUE(import.isWriting());
  EXPECT_EQ(Value("History.mdb", "SELECT COUNT(*) FROM VLAN_HistCtrl"), "45");
}

TEST_F(QuillondbBackup, HoldsOneMomentWhileOthersWriteBetweenItsSteps) {
  home_.Sql("Reports.mdb", kManyRows);
  const std::string original = home_.path() + "/Reports.mdb";
  const std::string copy = folder_.path() + "/copy";
  MakeFile(copy);
  OtherWriter product = OtherWriter::Idle(original);
  int steps = 0;
  CopyDatabase(home_.path(), "Reports.mdb", copy, [&](int) {
    ++steps;
    EXPECT_TRUE(product.Run("DELETE FROM VLAN WHERE rowid = (SELECT MAX(rowid) FROM VLAN)"));
  });
  EXPECT_GT(steps, 2);
  EXPECT_EQ(SqlRows(copy, "SELECT COUNT(*) FROM VLAN")[0][0], "3000");
  EXPECT_EQ(SqlRows(original, "SELECT COUNT(*) FROM VLAN")[0][0], std::to_string(3000 - steps));
}

// A report that ends between two copies is marked in the history when its rows stand.
TEST_F(QuillondbBackup, TakesTheMarksOfAReportBeforeItsRows) {
  home_.Sql("Reports.mdb", kManyRows);
  const Tell endReport = [this](const std::string& line) {
    if (line != "Reports.mdb: 100 %") return;
    home_.Sql("History.mdb", "UPDATE General_Info SET LastReport = '2024-05-01 12:30:00'");
  };
  BackUpInstallation(home_.path(), target_, kNow, endReport);
  EXPECT_NE(Value("History.mdb", "SELECT LastReport FROM General_Info"), "2024-05-01 12:30:00");
}

TEST_F(QuillondbBackup, TellsHowFarItIs) {
  home_.Sql("Reports.mdb", kManyRows);
  BackUp();
  EXPECT_EQ(std::ranges::count(told_, "Reports.mdb: 100 %"), 1);
  EXPECT_GT(std::ranges::count_if(
                told_, [](const std::string& line) { return line.starts_with("Reports.mdb: "); }),
            2);
}

TEST_F(QuillondbBackup, HasAManifestThatSha256sumVerifies) {
  BackUp();
  const std::string verify =
      fmt::format("cd '{}' && sha256sum --status --strict --check MANIFEST 2>/dev/null", target_);
  EXPECT_EQ(std::system(verify.c_str()), 0);
  std::ofstream(target_ + "/WebReports/qws.css", std::ios::app) << " ";
  EXPECT_NE(std::system(verify.c_str()), 0);
}

TEST_F(QuillondbBackup, RefusesATargetThatIsThere) {
  fs::create_directory(target_);
  EXPECT_THROW(BackUp(), FileFailure);
  EXPECT_TRUE(fs::is_empty(target_));
}

TEST_F(QuillondbBackup, TellsThatATargetInsideOfTheInstallationGoesWithIt) {
  EXPECT_EQ(BackUp().find("inside of the installation"), std::string::npos);
  target_ = home_.path() + "/WebReports/../backup";
  EXPECT_NE(BackUp().find("inside of the installation: it goes with that"), std::string::npos);
  target_ = home_.path() + "-beside";
  EXPECT_EQ(BackUp().find("inside of the installation"), std::string::npos);
  fs::remove_all(target_);
}

TEST_F(QuillondbBackup, TakesTheFileThatALinkLeadsTo) {
  std::ofstream(folder_.path() + "/configuration") << "words";
  fs::create_symlink(folder_.path() + "/configuration", home_.path() + "/WebReports/Language.ini");
  BackUp();
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target_ + "/WebReports/Language.ini")));
  EXPECT_EQ(fs::file_size(target_ + "/WebReports/Language.ini"), 5U);
}

TEST_F(QuillondbBackup, TakesNothingForALinkThatLeadsNowhere) {
  fs::create_symlink("nowhere", home_.path() + "/WebReports/Language.ini");
  BackUp();
  EXPECT_FALSE(fs::exists(target_ + "/WebReports/Language.ini"));
}

TEST_F(QuillondbBackup, WaitsForNoPipe) {
  ASSERT_EQ(mkfifo((home_.path() + "/WebReports/Language.ini").c_str(), 0600), 0);
  ExpectFailure("WebReports/Language.ini is no ordinary file");
}

TEST_F(QuillondbBackup, OpensNoDatabaseWithAStrangersJournal) {
  home_.Write("Quillon.mdb-journal", "to be played back");
  ExpectFailure("Quillon.mdb-journal is no file of the service's");
  EXPECT_EQ(home_.Read("Quillon.mdb-journal"), "to be played back");
}

TEST_F(QuillondbBackup, TakesATargetWithASlashAtItsEnd) {
  BackUpInstallation(home_.path(), target_ + "/", kNow, [](const std::string&) {});
  EXPECT_TRUE(fs::exists(target_ + "/MANIFEST"));
}

TEST_F(QuillondbBackup, LeavesNothingWhereATableIsMissing) {
  home_.Sql("Reports.mdb", "DROP TABLE MAC");
  ExpectFailure("Reports.mdb: the table MAC is missing");
  ExpectFailure("'quillondb check' tells more of the original");
}

TEST_F(QuillondbBackup, LeavesNothingWhereADayTableIsMissing) {
  home_.Sql("History.mdb", "DROP TABLE Disk_Day17");
  ExpectFailure("History.mdb: the table Disk_Day17 is missing");
}

TEST_F(QuillondbBackup, LeavesNothingWhereADatabaseIsDamaged) {
  home_.Sql("Reports.mdb", kManyRows);
  std::fstream file(home_.path() + "/Reports.mdb", std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(20 * 4096);
  file << std::string(4 * 4096, 'x');
  file.close();
  ExpectFailure("Reports.mdb: damaged");
}

TEST_F(QuillondbBackup, LeavesNothingWhereTheDiskIsFull) {
  home_.Sql("Reports.mdb", kManyRows);
  const FileSizeLimit limit(std::size_t{1024} * 1024);
  ExpectFailure("Reports.mdb cannot be copied");
}

TEST_F(QuillondbBackup, LeavesNothingWhereADatabaseIsMissing) {
  home_.Remove("History.mdb");
  ExpectFailure("History.mdb is missing");
}

TEST_F(QuillondbBackup, DigestIsTheOneOfTheStandard) {
  const std::string path = folder_.path() + "/abc";
  std::ofstream(path) << "abc";
  EXPECT_EQ(Sha256OfFile(path), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

}  // namespace
}  // namespace quillon
