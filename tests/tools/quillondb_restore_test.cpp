// quillondb restore: what is put back, what is refused, and that a failure leaves the old state.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "quillondb/backup/backup.h"
#include "quillondb/backup/digest.h"
#include "quillondb/backup/restore.h"
#include "support/file_size_limit.h"
#include "support/installation.h"
#include "support/other_writer.h"
#include "support/sql_rows.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// A backup of an installation that listens on port 8001; the installation itself has gone on to
// 8002.
class QuillondbRestore : public testing::Test {
 protected:
  QuillondbRestore() {
    home_.Write("Morvane.ini", "ServerTrapPort=1162\r\n");
    home_.Write("WebReports/qws.css", "body {}");
    SetPort(8001);
    BackUpInstallation(home_.path(), backup_, DateTime(), [](const std::string&) {});
    SetPort(8002);
    home_.Write("WebReports/qws.css", "body { color: red }");
  }

  void SetPort(int port) const {
    home_.Sql("Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = " + std::to_string(port));
  }
  std::string Port() const {
    return home_.Select("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer")[0];
  }

  std::string Restore(bool replace = true) {
    return RestoreInstallation(backup_, home_.path(), replace,
                               [this](const std::string& line) { onLine_(line); });
  }

  // All files of the installation with their bytes.
  std::map<std::string, std::string> State() const {
    std::map<std::string, std::string> state;
    for (const auto& entry : fs::recursive_directory_iterator(home_.path())) {
      const std::string name = entry.path().lexically_relative(home_.path()).string();
      state[name] = entry.is_regular_file() ? Content(entry.path()) : "";
    }
    return state;
  }

  // The restore fails with these words, and the installation is as it was.
  void ExpectFailure(const std::string& words, bool replace = true) {
    const std::map<std::string, std::string> before = State();
    try {
      Restore(replace);
      ADD_FAILURE() << "no failure: " << words;
    } catch (const std::runtime_error& failure) {
      EXPECT_NE(std::string(failure.what()).find(words), std::string::npos) << failure.what();
    }
    EXPECT_EQ(State(), before) << words;
  }

  // The manifest with a text in the place of another one.
  void ChangeManifest(const std::string& from, const std::string& to) const {
    std::string text = Content(backup_ + "/MANIFEST");
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    std::ofstream(backup_ + "/MANIFEST") << text.replace(at, from.size(), to);
  }

  // As a kill in the middle of the exchange leaves it.
  void LeaveAKilledRestore() const {
    const std::string old = home_.path() + "/~restore-old";
    fs::create_directories(old + "/WebReports");
    fs::rename(home_.path() + "/Quillon.mdb", old + "/Quillon.mdb");
    fs::rename(home_.path() + "/WebReports/qws.css", old + "/WebReports/qws.css");
    fs::copy_file(backup_ + "/Quillon.mdb", home_.path() + "/Quillon.mdb");
  }

  // As a kill leaves it between a database and its log, in which a port stands that is not yet in
  // the database.
  void LeaveADatabaseThatIsAwayWithoutItsLog(int port) const {
    const std::string file = home_.path() + "/Quillon.mdb";
    const std::string kept = folder_.path() + "/kept";
    {
      OtherWriter service = OtherWriter::Idle(file);
      ASSERT_TRUE(service.Run("UPDATE Settings_WebServer SET TcpPort = " + std::to_string(port)));
      fs::copy_file(file, kept);
      fs::copy_file(file + "-wal", kept + "-wal");
    }
    fs::create_directory(home_.path() + "/~restore-old");
    fs::remove(file);
    fs::rename(kept, home_.path() + "/~restore-old/Quillon.mdb");
    fs::rename(kept + "-wal", file + "-wal");
  }

  // What the findings are about.
  std::vector<std::string> Findings() const {
    std::vector<std::string> findings;
    CheckRestore(home_.path(), findings);
    for (std::string& finding : findings) finding = finding.substr(0, finding.find(": "));
    return findings;
  }

  // As a package has it: the file itself lies in its configuration.
  void Link(const std::string& file, const std::string& bytes) const {
    std::ofstream(folder_.path() + "/configuration") << bytes;
    home_.Remove(file);
    fs::create_symlink(folder_.path() + "/configuration", home_.path() + "/" + file);
  }
  bool IsLink(const std::string& file) const {
    return fs::is_symlink(fs::symlink_status(home_.path() + "/" + file));
  }

  Installation home_;
  TemporaryFolder folder_;
  std::string backup_ = folder_.path() + "/backup";
  Tell onLine_ = [](const std::string&) {};
};

TEST_F(QuillondbRestore, BringsBackDatabasesAndFilesAndLeavesTheRest) {
  home_.Write("WebReports/Cache/page.htm", "a page");
  EXPECT_NE(Restore().find("Restored 5 files"), std::string::npos);
  EXPECT_EQ(Port(), "8001");
  EXPECT_EQ(home_.Read("WebReports/qws.css"), "body {}");
  EXPECT_EQ(home_.Read("WebReports/Cache/page.htm"), "a page");
  EXPECT_EQ(home_.Select("Quillon.mdb", "PRAGMA journal_mode")[0], "wal");
  for (const auto& entry : fs::directory_iterator(home_.path())) {
    EXPECT_FALSE(entry.path().filename().string().starts_with("~")) << entry.path();
  }
}

TEST_F(QuillondbRestore, LetsSideFilesOfTheOldDatabasesGo) {
  home_.Write("History.mdb-journal", "of a database that is no more");
  home_.Write("Reports.mdb-wal", "of a database that is no more");
  Restore();
  EXPECT_FALSE(home_.Exists("History.mdb-journal"));
  EXPECT_FALSE(home_.Exists("Reports.mdb-wal"));
}

TEST_F(QuillondbRestore, GivesFilesToTheirOwnerAlone) {
  Restore();
  for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb", "Morvane.ini"}) {
    EXPECT_EQ(fs::status(home_.path() + "/" + file).permissions(),
              fs::perms::owner_read | fs::perms::owner_write)
        << file;
  }
}

TEST_F(QuillondbRestore, LetsOthersReadTheFilesOfTheSite) {
  Restore();
  EXPECT_NE(fs::status(home_.path() + "/WebReports/qws.css").permissions() & fs::perms::others_read,
            fs::perms::none);
}

TEST_F(QuillondbRestore, GivesWhatRootRestoresToTheOwnerOfTheDirectory) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  constexpr uid_t kSomebody = 65534;
  ASSERT_EQ(chown(home_.path().c_str(), kSomebody, kSomebody), 0);
  fs::remove_all(home_.path() + "/WebReports");
  Restore();
  for (const char* file : {"Quillon.mdb", "History.mdb", "WebReports", "WebReports/qws.css"}) {
    struct stat status {};
    ASSERT_EQ(stat((home_.path() + "/" + file).c_str(), &status), 0) << file;
    EXPECT_EQ(status.st_uid, kSomebody) << file;
    EXPECT_EQ(status.st_gid, kSomebody) << file;
  }
}

TEST_F(QuillondbRestore, MakesADirectoryThatIsMissing) {
  const std::string elsewhere = folder_.path() + "/elsewhere";
  RestoreInstallation(backup_, elsewhere, false, [](const std::string&) {});
  EXPECT_EQ(SqlRows(elsewhere + "/Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer")[0][0],
            "8001");
  EXPECT_TRUE(fs::is_directory(elsewhere + "/WebReports/Cache"));
  EXPECT_TRUE(fs::is_directory(elsewhere + "/Debug"));
  EXPECT_EQ(fs::status(elsewhere).permissions() & fs::perms::others_all, fs::perms::none);
}

TEST_F(QuillondbRestore, LeavesNoDirectoryOfItsOwnBehindAFailure) {
  const std::string elsewhere = folder_.path() + "/elsewhere";
  fs::remove(backup_ + "/Reports.mdb");
  EXPECT_THROW(RestoreInstallation(backup_, elsewhere, false, onLine_), FileFailure);
  EXPECT_FALSE(fs::exists(elsewhere));
}

TEST_F(QuillondbRestore, LeavesNoFoldersBehindWhereADirectoryThatItMadeGetsNoFiles) {
  const std::string elsewhere = folder_.path() + "/elsewhere";
  const auto breakCopy = [&](const std::string& line) {
    if (line.starts_with("WebReports/qws.css")) {
      fs::remove(elsewhere + "/~restore-new/WebReports/qws.css");
    }
  };
  EXPECT_THROW(RestoreInstallation(backup_, elsewhere, false, breakCopy), FileFailure);
  EXPECT_FALSE(fs::exists(elsewhere));
}

// Its owner may be another one than whoever restores it.
TEST_F(QuillondbRestore, CopiesTheFilesThatItHasJudgedWhateverTheirNamesAreGivenToMeanwhile) {
  const std::string secret = folder_.path() + "/secret";
  std::ofstream(secret) << "of another one";
  onLine_ = [&](const std::string&) {
    fs::remove(backup_ + "/WebReports/qws.css");
    fs::create_symlink(secret, backup_ + "/WebReports/qws.css");
  };
  Restore();
  EXPECT_EQ(home_.Read("WebReports/qws.css"), "body {}");
}

TEST_F(QuillondbRestore, PublishesNothingThatALinkInTheBackupLeadsTo) {
  const std::string secret = folder_.path() + "/secret";
  std::ofstream(secret) << "of root";  // as many bytes
  fs::remove(backup_ + "/WebReports/qws.css");
  fs::create_symlink(secret, backup_ + "/WebReports/qws.css");
  ExpectFailure("is not as it was when it was backed up");
}

TEST_F(QuillondbRestore, WaitsForNoPipeInTheBackup) {
  for (const char* file : {"/WebReports/qws.css", "/MANIFEST"}) {
    fs::remove(backup_ + file);
    ASSERT_EQ(mkfifo((backup_ + file).c_str(), 0600), 0);
    ExpectFailure(std::string(file) + " is no ordinary file");
  }
}

TEST_F(QuillondbRestore, RefusesABackupAsItsOwnInstallation) {
  const std::string manifest = Content(backup_ + "/MANIFEST");
  try {
    RestoreInstallation(backup_, backup_ + "/.", true, onLine_);
    ADD_FAILURE() << "no failure";
  } catch (const FileFailure& failure) {
    EXPECT_NE(std::string(failure.what()).find("is the backup itself"), std::string::npos);
  }
  EXPECT_EQ(Content(backup_ + "/MANIFEST"), manifest);
  EXPECT_FALSE(fs::exists(backup_ + "/WebReports/Cache"));
}

TEST_F(QuillondbRestore, OverwritesOnlyWhenToldTo) {
  ExpectFailure("--replace", false);
}

TEST_F(QuillondbRestore, RefusesWhileTheServiceRuns) {
  const InstanceLock service(home_.path());
  ExpectFailure("the service, or another restore, runs in");
}

TEST_F(QuillondbRestore, RefusesWhileAnotherProgramUsesADatabase) {
  OtherWriter product = OtherWriter::Idle(home_.path() + "/Reports.mdb");
  ASSERT_TRUE(product.Run("DELETE FROM MAC"));
  try {
    Restore();
    ADD_FAILURE() << "no failure";
  } catch (const DatabaseFailure& failure) {
    EXPECT_NE(std::string(failure.what()).find("Reports.mdb is in use"), std::string::npos);
  }
  EXPECT_EQ(Port(), "8002");
}

TEST_F(QuillondbRestore, RefusesFilesThatAreNotAsTheyWereBackedUp) {
  const std::string file = backup_ + "/Quillon.mdb";
  const std::string bytes = Content(file);
  std::ofstream(file, std::ios::binary) << bytes.substr(0, bytes.size() - 1);
  ExpectFailure("bytes where MANIFEST tells");
  std::ofstream(file, std::ios::binary) << bytes.substr(0, bytes.size() - 1) << '?';
  ExpectFailure("is not as it was when it was backed up");
  fs::remove(file);
  ExpectFailure("Quillon.mdb");
}

TEST_F(QuillondbRestore, RefusesAManifestThatIsNone) {
  const struct {
    const char* from;
    const char* to;
    const char* words;
  } kCases[] = {
      {"  Quillon.mdb", "  ../Quillon.mdb", "line 8 names a file that is no part of a backup"},
      {"  Quillon.mdb", "  quillonweb", "line 8 names a file that is no part of a backup"},
      {"  Quillon.mdb", "  Reports.mdb", "line 8 names a file for the second time"},
      {"  Quillon.mdb", "  Morvane.ini", "names a file for the second time"},
      {"  Quillon.mdb", " Quillon.mdb", "line 8 is no entry"},
      {"# size ", "# size -", "line 3 tells no size"},
      {"# size ", "# bytes ", "line 4 has no size before it"},
  };
  const std::string whole = Content(backup_ + "/MANIFEST");
  for (const auto& damaged : kCases) {
    ChangeManifest(damaged.from, damaged.to);
    ExpectFailure(damaged.words);
    std::ofstream(backup_ + "/MANIFEST") << whole;
  }
  std::ofstream(backup_ + "/MANIFEST") << whole.substr(0, whole.find("# size "));
  ExpectFailure("has no line of Quillon.mdb");
  fs::remove(backup_ + "/MANIFEST");
  ExpectFailure("is no backup: it has no MANIFEST");
}

TEST_F(QuillondbRestore, RefusesAManifestThatIsTooLarge) {
  fs::resize_file(backup_ + "/MANIFEST", 1 << 20);
  ExpectFailure("MANIFEST is too large");
}

TEST_F(QuillondbRestore, RefusesADatabaseThatIsNotWholeWhateverItsManifestTells) {
  const std::string file = backup_ + "/Reports.mdb";
  const std::string before = Sha256OfFile(file);
  const std::uintmax_t size = fs::file_size(file);
  SqlRows(file, "DROP TABLE MAC");
  ASSERT_EQ(fs::file_size(file), size);
  ChangeManifest(before, Sha256OfFile(file));
  ExpectFailure("Reports.mdb: the table MAC is missing; take another backup");
}

TEST_F(QuillondbRestore, PutsTheOldFilesBackWhereAFileCannotBePutInPlace) {
  onLine_ = [this](const std::string& line) {
    if (line.starts_with("WebReports/qws.css")) home_.Remove("~restore-new/WebReports/qws.css");
  };
  ExpectFailure("cannot move");
  EXPECT_EQ(Port(), "8002");
}

TEST_F(QuillondbRestore, PutsTheOldFilesBackWhereTheExchangeCannotEnd) {
  const std::string inTheWay = home_.path() + "/~restore-ended";
  onLine_ = [&](const std::string&) { fs::create_directories(inTheWay + "/a folder"); };
  EXPECT_THROW(Restore(), FileFailure);
  EXPECT_EQ(Port(), "8002");
  EXPECT_EQ(home_.Read("WebReports/qws.css"), "body { color: red }");
  EXPECT_FALSE(home_.Exists("~restore-old"));
}

TEST_F(QuillondbRestore, LeavesTheOldFilesWhereTheDiskIsFull) {
  const FileSizeLimit limit(16 * 1024);
  ExpectFailure("cannot write");
}

TEST_F(QuillondbRestore, PutsTheOldFilesOfAKilledRestoreBackBeforeAnythingElse) {
  LeaveAKilledRestore();
  home_.Write("Quillon.mdb-journal", "of the database that goes again");
  EXPECT_EQ(Findings(), std::vector<std::string>({"~restore-old"}));
  fs::remove(backup_ + "/MANIFEST");
  EXPECT_THROW(Restore(), FileFailure);
  EXPECT_FALSE(home_.Exists("Quillon.mdb-journal"));
  EXPECT_EQ(Port(), "8002");
  EXPECT_EQ(home_.Read("WebReports/qws.css"), "body { color: red }");
  EXPECT_FALSE(home_.Exists("~restore-old"));
  EXPECT_EQ(Findings(), std::vector<std::string>());
}

TEST_F(QuillondbRestore, PutsAnOldDatabaseBackToTheLogThatAKillLeftInItsPlace) {
  LeaveADatabaseThatIsAwayWithoutItsLog(8004);
  fs::remove(backup_ + "/MANIFEST");
  EXPECT_THROW(Restore(), FileFailure);
  EXPECT_EQ(Port(), "8004");
}

TEST_F(QuillondbRestore, PutsNoDatabaseBackBesideALogThatCannotGo) {
  LeaveAKilledRestore();
  fs::create_directories(home_.path() + "/Quillon.mdb-wal/a folder");
  ExpectFailure("cannot delete " + home_.path() + "/Quillon.mdb-wal");
}

// The service may have gone on with the new ones.
TEST_F(QuillondbRestore, PutsNoOldFilesBackUnlessFilesMayBeReplaced) {
  LeaveAKilledRestore();
  SetPort(8003);
  ExpectFailure("~restore-old holds the old files of a restore that was killed", false);
  EXPECT_EQ(Port(), "8003");
}

TEST_F(QuillondbRestore, PutsNothingBackThatNoRestoreMoves) {
  LeaveAKilledRestore();
  fs::create_directory(home_.path() + "/~restore-old/plan");
  home_.Write("~restore-old/plan/evil", "planted");
  home_.Write("~restore-old/quillonweb", "planted");
  fs::create_symlink(folder_.path(), home_.path() + "/plan");
  Restore();
  EXPECT_FALSE(fs::exists(folder_.path() + "/evil"));
  EXPECT_FALSE(home_.Exists("quillonweb"));
}

TEST_F(QuillondbRestore, RefusesLinksInThePlaceOfItsFolders) {
  const std::string elsewhere = folder_.path() + "/elsewhere";
  fs::create_directory(elsewhere);
  std::ofstream(elsewhere + "/Morvane.ini") << "not an old one";
  for (const char* name : {"~restore-old", "~restore-new", "~restore-ended"}) {
    fs::create_symlink(elsewhere, home_.path() + "/" + name);
    ExpectFailure(std::string(name) + " is not a folder that a restore has made");
    EXPECT_TRUE(fs::exists(elsewhere + "/Morvane.ini"));
    home_.Remove(name);
  }
}

TEST_F(QuillondbRestore, IsFollowedByFindingsForEachFolderThatAKillLeft) {
  fs::create_directory(home_.path() + "/~restore-new");
  fs::create_directory(home_.path() + "/~restore-ended");
  EXPECT_EQ(Findings(), std::vector<std::string>({"~restore-new", "~restore-ended"}));
}

TEST_F(QuillondbRestore, LeavesALinkThatLeadsToTheBytesOfTheBackup) {
  Link("WebReports/qws.css", "body {}");
  EXPECT_NE(Restore().find("Restored 4 files"), std::string::npos);
  EXPECT_TRUE(IsLink("WebReports/qws.css"));
}

TEST_F(QuillondbRestore, PutsAFileInThePlaceOfALinkThatLeadsToOthers) {
  Link("WebReports/qws.css", "body { color: green }");
  std::vector<std::string> told;
  onLine_ = [&](const std::string& line) { told.push_back(line); };
  Restore();
  EXPECT_FALSE(IsLink("WebReports/qws.css"));
  EXPECT_EQ(home_.Read("WebReports/qws.css"), "body {}");
  EXPECT_EQ(Content(folder_.path() + "/configuration"), "body { color: green }");
  EXPECT_EQ(told.front(), "WebReports/qws.css: a file in the place of the link to " +
                              folder_.path() + "/configuration");
}

TEST_F(QuillondbRestore, LeavesNoLinkToADatabaseOrToMorvaneIni) {
  Link("Morvane.ini", "ServerTrapPort=1162\r\n");
  Restore();
  EXPECT_FALSE(IsLink("Morvane.ini"));
}

TEST_F(QuillondbRestore, ForgetsTheOldFilesOfARestoreThatWasKilledBehindItsEnd) {
  const std::string ended = home_.path() + "/~restore-ended";
  fs::create_directory(ended);
  fs::copy_file(backup_ + "/Quillon.mdb", ended + "/Quillon.mdb");
  EXPECT_THROW(Restore(false), FileFailure);
  EXPECT_EQ(Port(), "8002");
  EXPECT_FALSE(fs::exists(ended));
}

}  // namespace
}  // namespace quillon
