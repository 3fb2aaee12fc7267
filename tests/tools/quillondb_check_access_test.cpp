// quillondb check: rights of the service's user, who is the owner of the directory.
#include <sys/stat.h>
#include <unistd.h>

#include "quillondb/check/access.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

constexpr uid_t kSomebody = 64999;  // a user whom the system does not know

// An installation of a user of its own, which root alone can make.
class QuillondbCheckAccess : public CheckedInstallation {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    CheckedInstallation::SetUp();
    fs::permissions(root_, fs::perms::others_exec, fs::perm_options::add);
    Give("", kSomebody);
    for (const auto& entry : fs::recursive_directory_iterator(home_)) {
      ASSERT_EQ(lchown(entry.path().c_str(), kSomebody, kSomebody), 0);
    }
  }

  void Give(const std::string& file, uid_t user) const {
    ASSERT_EQ(chown((home_ / file).c_str(), user, user), 0) << file;
  }
  void TakeRight(const std::string& file, fs::perms right) const {
    fs::permissions(home_ / file, right, fs::perm_options::remove);
  }

  // The line on a file of the installation.
  std::string Line(const std::string& name, const std::string& path, const std::string& verbs,
                   const std::string& letters) const {
    return fmt::format(
        "{}: 64999, whom the service runs as, may not {} it; run 'chown 64999 {}' and"
        " 'chmod u+{} {}'",
        name, verbs, path, letters, path);
  }
};

TEST_F(QuillondbCheckAccess, TakesFilesOfTheServicesUser) {
  ExpectNothing();
}

TEST_F(QuillondbCheckAccess, FindsAFileOfRoots) {
  for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) {
    Give(file, 0);
    ExpectOnly(Line(file, (home_ / file).string(), "read and write", "rw"));
    Give(file, kSomebody);
  }
}

TEST_F(QuillondbCheckAccess, FindsAFolderThatCannotBeWritten) {
  TakeRight("WebReports/Cache", fs::perms::owner_write);
  ExpectOnly(
      Line("WebReports/Cache", (home_ / "WebReports/Cache").string(), "read and write", "rwx"));
}

TEST_F(QuillondbCheckAccess, FindsAnEventFileOfRoots) {
  std::ofstream(home_ / "Debug/AppEventWeb.txt") << "a line";
  ExpectOnly(
      fmt::format("Debug/AppEventWeb.txt: 64999, whom the service runs as, may not read and write"
                  " it; for it and its like run 'chown -hR 64999 {}'",
                  (home_ / "Debug").string()));
}

TEST_F(QuillondbCheckAccess, TellsOneOfRootsFilesInAFolderThatTheServiceFills) {
  for (const char* name : {"a.htm", "b.htm"}) {
    std::ofstream(home_ / "WebReports/Cache" / name) << "a page";
  }
  const Findings findings = Check();
  ASSERT_EQ(findings.size(), 1U) << testing::PrintToString(findings);
  EXPECT_TRUE(findings[0].starts_with("WebReports/Cache/")) << findings[0];
}

TEST_F(QuillondbCheckAccess, HandsNobodyTheTargetOfALink) {
  fs::remove(home_ / "WebReports/Language.ini");
  std::ofstream(root_ / "secret") << "of root's";
  fs::permissions(root_ / "secret", fs::perms::owner_all);
  fs::create_symlink(root_ / "secret", home_ / "WebReports/Language.ini");
  ExpectOnly(
      "WebReports/Language.ini: 64999, whom the service runs as, may not read it; put the file"
      " itself in the place of this link");
}

TEST_F(QuillondbCheckAccess, SaysNothingElseOfADirectoryThatTheCallerMayNotEnter) {
  TakeRight("", fs::perms::others_all | fs::perms::group_all);
  fs::permissions(root_, fs::perms::group_exec, fs::perm_options::add);
  ASSERT_EQ(seteuid(64998), 0);
  const Findings findings = Check();
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(findings,
            Findings{home_.string() + ": you may not enter it; run this as root or as 64999"});
}

// Played back as root, the journal would delete the file that it names.
TEST_F(QuillondbCheckAccess, LeavesAJournalOfAStrangerUnread) {
  std::ofstream(home_ / "Quillon.mdb-journal") << "a journal";
  const Findings findings = Check();
  ASSERT_EQ(findings.size(), 1U) << testing::PrintToString(findings);
  EXPECT_TRUE(findings[0].starts_with((home_ / "Quillon.mdb-journal").string())) << findings[0];
}

TEST_F(QuillondbCheckAccess, MakesNoFileOfRoots) {
  Check();
  for (const auto& entry : fs::recursive_directory_iterator(home_)) {
    struct stat status {};
    ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kSomebody) << entry.path();
  }
}

TEST_F(QuillondbCheckAccess, FindsAWebFileThatCannotBeRead) {
  TakeRight("WebReports/qws.css", fs::perms::owner_read);
  ExpectOnly(Line("WebReports/qws.css", (home_ / "WebReports/qws.css").string(), "read", "r"));
}

TEST_F(QuillondbCheckAccess, FindsAMorvaneIniThatCannotBeRead) {
  const std::string path = (home_ / "Morvane.ini").string();
  TakeRight("Morvane.ini", fs::perms::owner_read);
  ExpectOnly(Line(path, path, "read", "r"));
}

TEST_F(QuillondbCheckAccess, FindsAFolderAboveThatCannotBeEntered) {
  fs::permissions(root_, fs::perms::others_exec, fs::perm_options::remove);
  ExpectAmong(root_.string() + ": 64999, whom the service runs as, may not enter the folder");
}

TEST_F(QuillondbCheckAccess, CountsTheRightsOfOthersForAFileOfAnotherUser) {
  Give("WebReports/HelpText.txt", 0);
  fs::permissions(home_ / "WebReports/HelpText.txt", fs::perms::others_read);
  ExpectNothing();
  fs::permissions(home_ / "WebReports/HelpText.txt", fs::perms::owner_all | fs::perms::group_all);
  ExpectAmong("WebReports/HelpText.txt: 64999");
}

}  // namespace
}  // namespace quillon
