// save and apply-changes: what is written, what is refused, and how programs are told.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlSettings : public Quillonctl {
 protected:
  QuillonctlSettings() { CreateWhole(); }

  std::vector<Row> WebServer() const {
    return Sql("Quillon.mdb", "SELECT IpAddr, TcpPort, Enabled, CharSet FROM Settings_WebServer");
  }
};

TEST_F(QuillonctlSettings, StatusThatIsNullDoesNotHinderASave) {
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET Status = NULL");
  EXPECT_EQ(Run("save --port 81").error, "");
  EXPECT_EQ(WebServer(), (std::vector<Row>{{"0.0.0.0", "81", "1", "ISO-8859-1"}}));
}

TEST_F(QuillonctlSettings, FieldThatIsNullIsMendedByGivingIt) {
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET CharSet = NULL");
  EXPECT_EQ(Run("save --port 81").error,
            "quillonctl: --char-set: the settings have none; give it too\n");
  EXPECT_EQ(WebServer(), (std::vector<Row>{{"0.0.0.0", "8080", "1", "NULL"}}));
  EXPECT_EQ(Run("save --port 81 --char-set UTF-8").status, 0);
  EXPECT_EQ(WebServer(), (std::vector<Row>{{"0.0.0.0", "81", "1", "UTF-8"}}));
}

TEST_F(QuillonctlSettings, RefusalForProgramsNamesAllThatIsWrong) {
  const Outcome outcome = Run("save --port 0 --address here --enabled no --json");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.out,
            "{\n"
            "  \"command\": \"save\",\n"
            "  \"result\": \"refused\",\n"
            "  \"message\": \"\",\n"
            "  \"failures\": [\n"
            "    \"--address: not an IP address: \\\"here\\\"\",\n"
            "    \"--port: '0' is no number from 1 to 65535\"\n"
            "  ]\n"
            "}\n");
  EXPECT_EQ(WebServer(), (std::vector<Row>{{"0.0.0.0", "8080", "1", "ISO-8859-1"}}));
}

TEST_F(QuillonctlSettings, ThemeThatIsAppliedIsToldToProgramsToo) {
  EXPECT_EQ(Run("apply-changes Gold --json").out,
            "{\n"
            "  \"command\": \"apply-changes\",\n"
            "  \"result\": \"done\",\n"
            "  \"message\": \"The site is in the theme Gold from its next page on\",\n"
            "  \"failures\": []\n"
            "}\n");
}

TEST_F(QuillonctlSettings, JobOfAServiceThatDoesNotRunIsToldToProgramsToo) {
  const Outcome outcome = Run("import --json");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error, "");
  EXPECT_NE(outcome.out.find("\"result\": \"failed\""), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("the service does not run in "), std::string::npos) << outcome.out;
}

}  // namespace
}  // namespace quillon
