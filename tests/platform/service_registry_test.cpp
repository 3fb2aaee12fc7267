// The registration with systemd: which programs are called in which order, what a failing
// one leaves, and what systemd's own checks say of the unit.
#include "platform/service_registry.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/failure.h"
#include "support/environment.h"
#include "support/file_size_limit.h"
#include "support/installation.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr const char* kName = "Quillon Web";
constexpr const char* kUnit = "units/quillon-web.service";
constexpr const char* kOlderUnit = "[Service]\nExecStart=/opt/older/quillonweb\n# no line end";

// Calls as the log of the stand-ins shows them: the arguments joined by "|", and behind them
// whether the unit file was there at that moment.
constexpr const char* kShow = "systemctl|show|--property=Version";
constexpr const char* kReload = "systemctl|daemon-reload";
constexpr const char* kReloadWithUnit = "systemctl|daemon-reload (unit)";
constexpr const char* kEnable = "systemctl|enable|quillon-web.service (unit)";
constexpr const char* kDisable = "systemctl|disable|quillon-web.service (unit)";

bool UserIsThere() {
  return getpwnam("quillonweb") != nullptr;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) {
    quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
  }
  return quoted + "'";
}

// What a command of systemd's own tools says, on both of its outputs, and whether it is content.
struct Verdict {
  bool good = false;
  std::string output;
};

Verdict Ask(const std::string& command) {
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return {};
  Verdict verdict;
  std::array<char, 4096> buffer;
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
    verdict.output.append(buffer.data(), count);
  }
  verdict.good = pclose(pipe) == 0;
  return verdict;
}

class ServiceRegistryTest : public testing::Test {
 protected:
  ServiceRegistryTest() {
    for (const char* folder : {"units", "programs", "home"}) fs::create_directory(Path(folder));
    StandIn("systemctl", "");
    StandIn("useradd", "");
    environment.Set("PATH", Path("programs") + ":" + pathBefore_);
  }

  std::string Path(const std::string& name) const { return installation.path() + "/" + name; }

  // Puts a program in the place of the real one that notes its call and fails where its first
  // argument is one of `failing`: "enable|disable"; "*" fails always.
  void StandIn(const std::string& program, const std::string& failing) const {
    const std::string failure =
        failing.empty() ? "" : "case \"$1\" in " + failing + ") exit 3 ;; esac\n";
    const std::string file = "programs/" + program;
    installation.Write(file, "#!/bin/sh\nIFS='|'\nline=\"" + program +
                                 "|$*\"\n"
                                 "[ -e " +
                                 Quoted(Path(kUnit)) +
                                 " ] && line=\"$line (unit)\"\n"
                                 "printf '%s\\n' \"$line\" >> " +
                                 Quoted(Path("calls")) + "\n" + failure + "exit 0\n");
    fs::permissions(Path(file), fs::perms::owner_all);
  }

  void Install() const { registry.InstallService(kName, Path("home")); }
  void Uninstall() const { registry.UninstallService(kName); }

  // The action fails, and its text tells all of these words.
  template <typename Action>
  void ExpectFailure(Action&& action, const Lines& words) const {
    try {
      action();
      ADD_FAILURE() << "no failure of " << words[0];
    } catch (const Failure& failure) {
      const std::string text = failure.what();
      EXPECT_EQ(text.find('\n'), std::string::npos) << text;
      for (const std::string& word : words) EXPECT_NE(text.find(word), std::string::npos) << text;
    }
  }
  void ExpectInstallFails(const Lines& words) const {
    ExpectFailure([this] { Install(); }, words);
  }
  void ExpectUninstallFails(const Lines& words) const {
    ExpectFailure([this] { Uninstall(); }, words);
  }

  // The calls so far, oldest first.
  Lines Calls() const {
    Lines calls;
    std::istringstream log(installation.Read("calls"));
    for (std::string line; std::getline(log, line);) calls.push_back(line);
    return calls;
  }
  // The calls that change something.
  Lines Changes() const {
    Lines changes;
    for (const std::string& call : Calls()) {
      if (!call.starts_with(kShow)) changes.push_back(call);
    }
    return changes;
  }
  Lines Units() const { return installation.List("units"); }
  std::string Unit() const { return installation.Read(kUnit); }
  bool UnitHasLine(const std::string& line) const {
    return ("\n" + Unit()).find("\n" + line + "\n") != std::string::npos;
  }

  const Installation installation;
  const ServiceRegistry registry{Path("units")};

 private:
  const std::string pathBefore_ = std::getenv("PATH");

 protected:
  const Environment environment{{"PATH"}};  // behind the look at what it was
};

TEST_F(ServiceRegistryTest, InstallingAsksWritesLoadsAndEnables) {
  Install();
  const Lines calls = Calls();
  ASSERT_EQ(calls.size(), UserIsThere() ? 3u : 4u);
  EXPECT_EQ(calls[0], kShow);
  EXPECT_EQ(calls[1], kReloadWithUnit);
  EXPECT_EQ(calls[2], kEnable);
  EXPECT_EQ(Units(), Lines{"quillon-web.service"});
}

TEST_F(ServiceRegistryTest, UserIsAddedWhereItIsNotThere) {
  Install();
  if (UserIsThere()) {
    EXPECT_TRUE(Calls().back().starts_with("systemctl|")) << Calls().back();
  } else {
    const std::string call = Calls().back();
    EXPECT_TRUE(call.starts_with("useradd|--system|")) << call;
    EXPECT_TRUE(call.ends_with("|quillonweb (unit)")) << call;
  }
}

TEST_F(ServiceRegistryTest, UnitTellsHowTheServiceRuns) {
  Install();
  for (const char* line : {"[Unit]", "Description=Quillon Web", "[Service]", "Type=notify",
                           "User=quillonweb", "[Install]", "WantedBy=multi-user.target"}) {
    EXPECT_TRUE(UnitHasLine(line)) << line << " in:\n" << Unit();
  }
  EXPECT_NE(Unit().find(Path("home") + "/quillonweb"), std::string::npos) << Unit();
}

TEST_F(ServiceRegistryTest, UnitHandsOverWhatACrashHasLeftBesideEachDatabase) {
  Install();
  for (const std::string name : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) {
    for (const char* ending : {"", "-wal", "-shm"}) {
      const std::string path = " \"" + Path("home/") + name + ending + "\"";
      EXPECT_NE(Unit().find(path), std::string::npos) << path << " in:\n" << Unit();
    }
  }
}

TEST_F(ServiceRegistryTest, EverybodyCanReadTheUnitWhateverRootKeepsToHimself) {
  const mode_t before = umask(077);
  Install();
  umask(before);
  EXPECT_EQ(fs::status(Path(kUnit)).permissions(), fs::perms(0644));
}

TEST_F(ServiceRegistryTest, OlderRegistrationIsReplaced) {
  Install();
  const std::string unit = Unit();
  installation.Write(kUnit, kOlderUnit);
  Install();
  EXPECT_EQ(Unit(), unit);
  EXPECT_EQ(Units(), Lines{"quillon-web.service"});
}

TEST_F(ServiceRegistryTest, WithoutSystemdNothingIsWritten) {
  StandIn("systemctl", "show");
  ExpectInstallFails({"systemctl", "show"});
  EXPECT_EQ(Calls(), Lines{kShow});
  EXPECT_EQ(Units(), Lines{});
}

TEST_F(ServiceRegistryTest, WithoutSystemdTheOlderRegistrationStays) {
  installation.Write(kUnit, kOlderUnit);
  StandIn("systemctl", "show");
  ExpectInstallFails({"systemctl", "show"});
  EXPECT_EQ(Unit(), kOlderUnit);
  EXPECT_EQ(Changes(), Lines{});
}

TEST_F(ServiceRegistryTest, WithoutAProgramOfThatNameNothingIsWritten) {
  fs::remove(Path("programs/systemctl"));
  environment.Set("PATH", Path("programs"));
  ExpectInstallFails({"systemctl"});
  EXPECT_EQ(Calls(), Lines{});
  EXPECT_EQ(Units(), Lines{});
  installation.Write(kUnit, kOlderUnit);
  ExpectUninstallFails({"systemctl"});
  EXPECT_EQ(Unit(), kOlderUnit);
}

TEST_F(ServiceRegistryTest, FailedLoadingTakesTheUnitAway) {
  StandIn("systemctl", "daemon-reload");
  ExpectInstallFails({"systemctl", "daemon-reload"});
  EXPECT_EQ(Units(), Lines{});
  EXPECT_EQ(Changes().front(), kReloadWithUnit);
  EXPECT_EQ(Changes().back(), kReload);  // without the unit
  for (const std::string& call : Changes()) EXPECT_NE(call, kEnable);
}

TEST_F(ServiceRegistryTest, FailedEnablingTakesTheUnitAwayAndLoadsAgain) {
  StandIn("systemctl", "enable");
  ExpectInstallFails({"systemctl", "enable", "quillon-web.service"});
  EXPECT_EQ(Units(), Lines{});
  const Lines changes = Changes();
  ASSERT_GE(changes.size(), 3u);
  EXPECT_EQ(changes[0], kReloadWithUnit);
  EXPECT_EQ(changes[1], kEnable);
  EXPECT_EQ(changes.back(), kReload);  // without the unit
}

TEST_F(ServiceRegistryTest, FailedUserTakesEverythingBack) {
  if (UserIsThere()) GTEST_SKIP() << "the user is on this machine";
  StandIn("useradd", "*");
  ExpectInstallFails({"useradd"});
  EXPECT_EQ(Units(), Lines{});
  const Lines changes = Changes();
  ASSERT_EQ(changes.size(), 5u);
  EXPECT_EQ(changes[0], kReloadWithUnit);
  EXPECT_EQ(changes[1], kEnable);
  EXPECT_TRUE(changes[2].starts_with("useradd|")) << changes[2];
  EXPECT_EQ(changes[3], kDisable);
  EXPECT_EQ(changes[4], kReload);
}

TEST_F(ServiceRegistryTest, FailedStepBringsTheOlderRegistrationBack) {
  installation.Write(kUnit, kOlderUnit);
  struct Case {
    std::string program;
    std::string failing;
    Lines words;
  };
  std::vector<Case> cases = {{"systemctl", "daemon-reload", {"systemctl", "daemon-reload"}},
                             {"systemctl", "enable", {"systemctl", "enable"}}};
  if (!UserIsThere()) cases.push_back({"useradd", "*", {"useradd"}});
  for (const Case& row : cases) {
    StandIn("systemctl", "");
    StandIn(row.program, row.failing);
    ExpectInstallFails(row.words);
    EXPECT_EQ(Unit(), kOlderUnit) << row.program << " " << row.failing;
    EXPECT_EQ(Units(), Lines{"quillon-web.service"});
    EXPECT_EQ(Calls().back(), kReloadWithUnit) << row.program << " " << row.failing;
    // It was enabled before, perhaps, and stays so.
    for (const std::string& call : Calls()) EXPECT_NE(call, kDisable) << row.failing;
  }
}

TEST_F(ServiceRegistryTest, FailureOfTheUndoingDoesNotHideTheFirstOne) {
  StandIn("systemctl", "enable|disable");
  ExpectInstallFails({"systemctl", "enable"});
  EXPECT_EQ(Units(), Lines{});
}

// Somebody else may remove the file at the same moment.
TEST_F(ServiceRegistryTest, UnitThatIsGoneBeforeTheUndoingDoesNotHideTheFirstFailure) {
  installation.Write("programs/systemctl", "#!/bin/sh\n[ \"$1\" != enable ] || { rm " +
                                               Quoted(Path(kUnit)) + "; exit 1; }\n");
  ExpectInstallFails({"systemctl", "enable"});
  EXPECT_EQ(Units(), Lines{});
}

TEST_F(ServiceRegistryTest, UnitThatCannotBeWrittenCallsNothingThatChanges) {
  const ServiceRegistry nowhere(Path("nowhere"));
  ExpectFailure([&] { nowhere.InstallService(kName, Path("home")); }, {"quillon-web.service"});
  EXPECT_EQ(Changes(), Lines{});
  EXPECT_FALSE(installation.Exists("nowhere"));
}

TEST_F(ServiceRegistryTest, DiskWithoutRoomKeepsTheOlderRegistration) {
  constexpr rlim_t kRoom = 100;  // less than a unit; the log's first line has room
  for (const bool older : {false, true}) {
    fs::remove(Path("calls"));
    if (older) installation.Write(kUnit, kOlderUnit);
    {
      const FileSizeLimit disk(kRoom);
      ExpectInstallFails({"quillon-web.service"});
    }
    EXPECT_EQ(Units(), older ? Lines{"quillon-web.service"} : Lines{});
    EXPECT_EQ(Unit(), older ? kOlderUnit : "");
  }
}

TEST_F(ServiceRegistryTest, UninstallingDisablesRemovesAndLoads) {
  Install();
  fs::remove(Path("calls"));
  Uninstall();
  EXPECT_EQ(Changes(), (Lines{kDisable, kReload}));
  EXPECT_EQ(Units(), Lines{});
}

TEST_F(ServiceRegistryTest, UninstallingWithoutARegistrationChangesNothing) {
  installation.Write("units/other.service", "other");
  ExpectUninstallFails({});
  EXPECT_EQ(Changes(), Lines{});
  EXPECT_EQ(Units(), Lines{"other.service"});
  Install();
  Uninstall();
  ExpectUninstallFails({});
}

TEST_F(ServiceRegistryTest, FailedDisablingKeepsTheRegistration) {
  installation.Write(kUnit, kOlderUnit);
  StandIn("systemctl", "disable");
  ExpectUninstallFails({"systemctl", "disable", "quillon-web.service"});
  EXPECT_EQ(Unit(), kOlderUnit);
  EXPECT_EQ(Changes().front(), kDisable);
}

TEST_F(ServiceRegistryTest, FailedLoadingAfterARemovalIsTold) {
  installation.Write(kUnit, kOlderUnit);
  StandIn("systemctl", "daemon-reload");
  ExpectUninstallFails({"systemctl", "daemon-reload"});
}

TEST_F(ServiceRegistryTest, UnitThatIsGoneAtItsRemovalIsEnabledAgain) {
  Install();
  installation.Write("programs/systemctl", "#!/bin/sh\necho \"$1\" >> " + Quoted(Path("calls")) +
                                               "\n[ \"$1\" != disable ] || rm " +
                                               Quoted(Path(kUnit)) + "\n");
  fs::remove(Path("calls"));
  ExpectUninstallFails({"cannot delete", "quillon-web.service"});
  EXPECT_EQ(Calls(), (Lines{"disable", "enable"}));
}

TEST_F(ServiceRegistryTest, UninstallingWithoutSystemdKeepsTheRegistration) {
  installation.Write(kUnit, kOlderUnit);
  StandIn("systemctl", "*");
  ExpectUninstallFails({"systemctl"});
  EXPECT_EQ(Unit(), kOlderUnit);
}

TEST_F(ServiceRegistryTest, OtherUnitsStayAsTheyAre) {
  installation.Write("units/other.service", "other");
  Install();
  EXPECT_EQ(Units(), (Lines{"other.service", "quillon-web.service"}));
  Uninstall();
  EXPECT_EQ(Units(), Lines{"other.service"});
  EXPECT_EQ(installation.Read("units/other.service"), "other");
}

TEST_F(ServiceRegistryTest, UnitIsCalledLikeTheServiceInSmallLettersWithoutBlanks) {
  registry.InstallService("Quillon Web 2", Path("home"));
  EXPECT_EQ(Units(), Lines{"quillon-web-2.service"});
}

// Systemd refuses a program whose path holds one of these, however it is quoted; a line feed
// would begin a line of the unit's own.
TEST_F(ServiceRegistryTest, DirectoryInWhichSystemdStartsNothingIsRefused) {
  installation.Write(kUnit, kOlderUnit);
  for (const std::string name :
       {"quo\"te", "apo'strophe", "back\\slash", "line\nfeed", "tab\t", "del\x7F"}) {
    fs::create_directory(Path(name));
    EXPECT_THROW(registry.InstallService(kName, Path(name)), Failure) << name;
    EXPECT_EQ(Changes(), Lines{}) << name;
    EXPECT_EQ(Unit(), kOlderUnit) << name;
  }
}

// Directories in which a unit's own syntax has signs of its own.
class UnitTest : public ServiceRegistryTest, public testing::WithParamInterface<const char*> {
 protected:
  UnitTest() {
    home = Path("home/") + GetParam();
    fs::create_directories(home);
    const std::string program = home + "/quillonweb";
    installation.Write(program.substr(installation.path().size() + 1), "#!/bin/sh\n");
    fs::permissions(program, fs::perms::owner_all);
    registry.InstallService(kName, home);
  }

  std::string home;
};

// Silence is part of it: a line that systemd ignores is told in a warning and is no failure.
TEST_P(UnitTest, VerifiesWithoutAWord) {
  const Verdict verdict = Ask("systemd-analyze verify --man=no " + Quoted(Path(kUnit)));
  EXPECT_TRUE(verdict.good);
  EXPECT_EQ(verdict.output, "") << Unit();
}

TEST_P(UnitTest, IsConfined) {
  // The tool counts in tenths of its figure: 15 is an exposure of 1.5.
  const Verdict verdict = Ask("systemd-analyze security --no-pager --offline=yes --threshold=15 " +
                              Quoted(Path(kUnit)));
  EXPECT_TRUE(verdict.good) << verdict.output;
}

// A command line alone knows variables: elsewhere a doubled dollar sign is another directory.
TEST_P(UnitTest, DoublesDollarSignsInCommandsAlone) {
  std::istringstream unit(Unit());
  for (std::string line; std::getline(unit, line);) {
    if (line.starts_with("Exec")) continue;
    EXPECT_EQ(line.find("$$"), std::string::npos) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Directories, UnitTest,
                         testing::Values("plain", "with blanks in it", "100%", "a%nb%%c", "$HOME",
                                         "a$b${c}", "semi;colon", "#hash", "umlaut \xC3\xBC",
                                         " all $ % ; # of them"));

}  // namespace
}  // namespace quillon
