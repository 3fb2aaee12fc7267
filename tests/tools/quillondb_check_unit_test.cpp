// quillondb check: what keeps the unit from starting the service.
#include <unistd.h>

#include "installation_owner.h"
#include "quillondb/check/sockets.h"
#include "quillondb/check/unit.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

class QuillondbCheckUnit : public CheckedInstallation {
 protected:
  // The unit of the service in that directory, as an installation writes it.
  InstalledUnit Unit(const std::string& directory) const {
    std::ofstream(UnitFile()) << "[Service]\nExecStart=:\"" << directory
                              << "/quillonweb\"\nProtectHome=yes\nPrivateTmp=yes\n";
    return Installed();
  }

  // The same with an administrator's settings.
  InstalledUnit UnitWith(const std::string& settings) const {
    fs::create_directories(UnitFile() + ".d");
    std::ofstream(UnitFile() + ".d/override.conf") << "[Service]\n" << settings;
    return Unit(home_.string());
  }

  InstalledUnit Installed() const { return InstalledUnit(home_.string(), {root_.string()}); }
  std::string UnitFile() const { return (root_ / "quillon-web.service").string(); }

  Findings FindingsOf(const InstalledUnit& unit) const {
    Findings findings;
    CheckUnit(home_.string(), unit, ServiceUser(home_.string()), findings);
    return findings;
  }

  std::string Program() const { return (home_ / "quillonweb").string(); }
};

TEST_F(QuillondbCheckUnit, TakesAUnitForAnotherDirectoryForNone) {
  EXPECT_TRUE(Unit(home_.string()).isThere());
  EXPECT_FALSE(Unit(home_.string() + "/old").isThere());
  EXPECT_FALSE(Unit("/opt/quillon-web").isThere());
  EXPECT_EQ(FindingsOf(Unit("/opt/quillon-web")), Findings());
}

TEST_F(QuillondbCheckUnit, FindsAProgramThatIsMissing) {
  const Findings findings = FindingsOf(Unit(home_.string()));
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings.back(),
            Program() +
                ": the program that the unit starts is missing; copy it there from where it"
                " was built or packaged");
}

TEST_F(QuillondbCheckUnit, FindsAProgramThatTheServiceMayNotRun) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  const InstalledUnit unit = Unit(home_.string());
  std::ofstream(Program()) << "a program";
  ASSERT_EQ(chown(home_.c_str(), 64999, 64999), 0);
  const Findings findings = FindingsOf(unit);
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings.back(),
            fmt::format("{0}: 64999, whom the service runs as, may not run it; run 'chmod 755 {0}'",
                        Program()));
  fs::permissions(Program(), fs::perms::others_exec, fs::perm_options::add);
  EXPECT_NE(FindingsOf(unit), findings);
}

TEST_F(QuillondbCheckUnit, KnowsWhatTheUnitHides) {
  const InstalledUnit unit = Unit(home_.string());
  EXPECT_EQ(unit.HiddenBy("/tmp/quillon"), "/tmp");
  EXPECT_EQ(unit.HiddenBy("/root/Morvane.ini"), "/root");
  EXPECT_EQ(unit.HiddenBy("/opt/quillon"), "");
  EXPECT_EQ(unit.HiddenBy("/homes/quillon"), "");
  EXPECT_EQ(Unit("/elsewhere").HiddenBy("/tmp/quillon"), "");
}

TEST_F(QuillondbCheckUnit, KnowsWhatAnAdministratorHasSetInstead) {
  const InstalledUnit unit = UnitWith("# ProtectHome=yes\nProtectHome = read-only\n");
  EXPECT_EQ(unit.HiddenBy("/root/Morvane.ini"), "");
  EXPECT_EQ(unit.HiddenBy("/tmp/quillon"), "/tmp");
  EXPECT_EQ(UnitWith("PrivateTmp=no\n").HiddenBy("/tmp/quillon"), "");
}

TEST_F(QuillondbCheckUnit, KnowsTheUnitOfADirectoryWithAPercentSign) {
  fs::create_directory(home_ / "100%");
  std::ofstream(UnitFile()) << "ExecStart=:\"" << home_.string() << "/100%%/quillonweb\"\n";
  EXPECT_TRUE(InstalledUnit((home_ / "100%").string(), {root_.string()}).isThere());
}

TEST_F(QuillondbCheckUnit, FindsAUnitThatTheServiceMayNotRead) {
  if (geteuid() != 0) GTEST_SKIP() << "root's files are closed to others alone";
  Unit(home_.string());
  fs::permissions(root_, fs::perms::owner_all | fs::perms::others_exec);
  fs::permissions(UnitFile(), fs::perms::owner_all);
  ASSERT_EQ(chown(home_.c_str(), 64999, 64999), 0);
  const OwnerRights rights(home_.string());
  const InstalledUnit unit = Installed();
  EXPECT_FALSE(unit.isThere());
  EXPECT_EQ(FindingsOf(unit),
            Findings{"cannot open " + UnitFile() +
                     ": Permission denied; what the unit does is not known then, so let all users"
                     " read it: run 'chmod -R a+rX /etc/systemd/system/quillon-web.service*'"});
  EXPECT_TRUE(MayListen(80, 1024, ServiceUser(home_.string()), unit));
}

}  // namespace
}  // namespace quillon
