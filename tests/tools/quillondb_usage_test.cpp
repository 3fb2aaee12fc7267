// The command line of quillondb: wrong usage, help, version.
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

using QuillondbUsage = Quillondb;

TEST_F(QuillondbUsage, WrongUsageExitsWith2AndSaysWhy) {
  const std::pair<const char*, const char*> kCases[] = {
      {"", "subcommand"},
      {"explode {}", "subcommand"},
      {"create", "DIR"},
      {"create {} --replace", "--replace"},
      {"demo {} --force", "--force"},
      {"demo {} --port 0", "--port"},
      {"demo {} --port 70000", "--port"},
      {"demo {} --port http", "--port"},
      {"create {} --port 8181", "--port"},
      {"create ''", "DIR: it is empty"},
      {"check ''", "DIR: it is empty"},
      {"check {} --short", "--short"},
      {"load ports.csv {}", "--table is required"},
      {"load --table VLAN_Day01 ports.csv {}", "VLAN_Day01 not in {VLAN,MAC,HostDiskInfo}"},
      {"load --table VLAN {}", "DIR is required"},
      {"load --table VLAN '' {}", "FILE: it is empty"},
      {"load --table VLAN --table MAC ports.csv {}", "--table"},
      {"load --table VLAN ports.csv {} --replace", "--replace"},
      {"export ports.csv {}", "--table is required"},
      {"export --table General_Info ports.csv {}", "General_Info not in"},
      {"export --table VLAN ports.csv", "DIR is required"},
      {"report-done", "DIR is required"},
      {"backup {}", "TARGET is required"},
      {"backup {} ''", "TARGET: it is empty"},
      {"backup {} /nowhere /there", "/there"},
      {"restore {}", "DIR is required"},
      {"restore '' {}", "TARGET: it is empty"},
      {"restore /nowhere {} --force", "--force"},
      {"import-jet --reports a --history b {}", "--settings is required"},
      {"import-jet --reports a --settings c {}", "--history is required"},
      {"import-jet --history b --settings c {}", "--reports is required"},
      {"import-jet --reports '' --history b --settings c {}", "--reports: it is empty"},
      {"import-jet --reports a --history b --settings c", "DIR is required"},
      {"sync-jet {}", "--reports is required"},
      {"sync-jet --reports a", "DIR is required"},
      {"sync-jet --reports a --replace {}", "--replace"},
  };
  for (const auto& [arguments, word] : kCases) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.error.find(word), std::string::npos) << arguments << ": " << outcome.error;
  }
}

TEST_F(QuillondbUsage, HelpNamesEveryCommand) {
  const Outcome help = Run("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* command : {"create", "demo", "check", "load", "export", "report-done", "backup",
                              "restore", "import-jet", "sync-jet"}) {
    EXPECT_NE(help.out.find(fmt::format("\n  {} ", command)), std::string::npos) << command;
  }
}

TEST_F(QuillondbUsage, TakesATableInAnyCase) {
  CreateWhole();
  EXPECT_EQ(Run("export --table hostdiskinfo - {}").status, 0);
}

TEST_F(QuillondbUsage, VersionIsThatOfTheService) {
  const Outcome version = Run("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "9.05\n");
}

}  // namespace
}  // namespace quillon
