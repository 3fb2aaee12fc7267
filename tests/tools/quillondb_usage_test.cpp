// The command line of quillondb: wrong usage, help, version.
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

using QuillondbUsage = Quillondb;

TEST_F(QuillondbUsage, WrongUsageExitsWith2AndSaysWhy) {
  const std::pair<const char*, const char*> kCases[] = {{"", "subcommand"},
                                                        {"explode {}", "subcommand"},
                                                        {"create", "DIR"},
                                                        {"create {} --replace", "--replace"},
                                                        {"demo {} --force", "--force"},
                                                        {"demo {} --port 0", "--port"},
                                                        {"demo {} --port 70000", "--port"},
                                                        {"demo {} --port http", "--port"},
                                                        {"create {} --port 8181", "--port"},
                                                        {"create ''", "DIR: it is empty"},
                                                        {"check ''", "DIR: it is empty"}};
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
  for (const char* command : {"create", "demo", "check", "report-done"}) {
    EXPECT_NE(help.out.find(command), std::string::npos) << command;
  }
}

TEST_F(QuillondbUsage, VersionIsThatOfTheService) {
  const Outcome version = Run("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "9.05\n");
}

}  // namespace
}  // namespace quillon
