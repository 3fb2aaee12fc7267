// Reading the settings tables: at the start, and again at each hourly pass.
#include "service/stored_settings.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

// Statements that change every value of the two tables.
constexpr const char* kAllChanged =
    "UPDATE Settings_SnmpAgent SET Enabled = 0, SendAppEvents = 1, TrapComm = 'secret';"
    "UPDATE Settings_General SET DebugMode = 1, DatumFormat = 'DD/MM/YYYY', SnmpcDir = '/new';"
    "UPDATE Settings_WebServer SET IpAddr = '10.1.2.3', TcpPort = 81, CharSet = 'ISO-8859-5'";

class StoredSettingsHouse : public ServiceHouse {
 public:
  StoredSettingsHouse() {
    Sql(kAllChanged);
    settings.DatumFormat = "old";
  }

  void Sql(const std::string& statements) const { installation.Sql("Quillon.mdb", statements); }

  // What a pass reads anew, as "<SendAppEvents> <DebugMode> <DatumFormat>".
  std::string Refreshed() {
    RefreshSettings(service);
    return std::string(settings.SendAppEvents ? "on " : "off ") +
           (settings.DebugMode ? "on " : "off ") + settings.DatumFormat;
  }
};

TEST(StoredSettings, PassReadsThreeValuesAnew) {
  StoredSettingsHouse house;
  EXPECT_EQ(house.Refreshed(), "on on DD/MM/YYYY");
  EXPECT_EQ(house.Events(), Lines{});
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(0));
}

TEST(StoredSettings, PassAlsoTurnsOff) {
  StoredSettingsHouse house;
  house.Refreshed();
  house.Sql(
      "UPDATE Settings_SnmpAgent SET SendAppEvents = 0;"
      "UPDATE Settings_General SET DebugMode = 0, DatumFormat = ''");
  EXPECT_EQ(house.Refreshed(), "off off ");
}

TEST(StoredSettings, EverythingElseNeedsARestart) {
  StoredSettingsHouse house;
  house.settings.MorvaneDir = "/old";
  house.settings.TrapComm = "public";
  house.installation.Write("Morvane.ini", "ServerIpAddr=10.1.2.3\r\nServerTrapPort=1162\r\n");
  house.Refreshed();
  EXPECT_EQ(house.settings.MorvaneDir, "/old");
  EXPECT_EQ(house.settings.TrapComm, "public");
  EXPECT_EQ(house.settings.CharSet, "ISO-8859-1");
  EXPECT_EQ(house.settings.ServerIpAddr, "127.0.0.1");
  EXPECT_EQ(house.settings.ServerTrapPort, 162);
  EXPECT_FALSE(house.trapTarget.SnmpAgentOpen);
  EXPECT_EQ(house.snmpAgent.openings, 0);
}

TEST(StoredSettings, FirstRowOfATableCounts) {
  StoredSettingsHouse house;
  house.Sql(
      "INSERT INTO Settings_SnmpAgent (SendAppEvents) VALUES (0);"
      "INSERT INTO Settings_General (DebugMode, DatumFormat) VALUES (0, 'second')");
  EXPECT_EQ(house.Refreshed(), "on on DD/MM/YYYY");
}

TEST(StoredSettings, FailureLeavesWhatStandsBehindItAsItWas) {
  struct Case {
    std::string statements;
    std::string refreshed;
    std::string description;
  };
  const Case cases[] = {
      {"UPDATE Settings_SnmpAgent SET SendAppEvents = NULL", "off off old",
       "field SendAppEvents holds null and not a truth value"},
      {"DELETE FROM Settings_SnmpAgent", "off off old", "Quillon.mdb: no current row"},
      {"DROP TABLE Settings_SnmpAgent", "off off old",
       "Quillon.mdb: no such table: Settings_SnmpAgent"},
      {"UPDATE Settings_General SET DebugMode = NULL", "on off old",
       "field DebugMode holds null and not a truth value"},
      {"DELETE FROM Settings_General", "on off old", "Quillon.mdb: no current row"},
      {"DROP TABLE Settings_General", "on off old", "Quillon.mdb: no such table: Settings_General"},
      {"UPDATE Settings_General SET DatumFormat = NULL", "on on old",
       "field DatumFormat holds null and not a text"},
  };
  for (const Case& row : cases) {
    StoredSettingsHouse house;
    house.Sql(row.statements);
    EXPECT_EQ(house.Refreshed(), row.refreshed) << row.statements;
    EXPECT_EQ(house.Events(), Lines{"1\tmodQuillonWeb_RefreshSettings\t" + row.description});
  }
}

TEST(StoredSettings, MissingDatabaseLeavesAllAsItWas) {
  StoredSettingsHouse house;
  house.settings.ConnMain = "Provider=SQLite;Data Source=" + house.installation.path() + "/none";
  EXPECT_EQ(house.Refreshed(), "off off old");
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodQuillonWeb_RefreshSettings\tnone: the database file is missing"});
}

TEST(StoredSettings, StartReadsTwoValuesAndHandsOutTheFolder) {
  StoredSettingsHouse house;
  EXPECT_EQ(ReadGeneralSettings(house.settings), "/new");
  EXPECT_TRUE(house.settings.DebugMode);
  EXPECT_EQ(house.settings.DatumFormat, "DD/MM/YYYY");
  EXPECT_FALSE(house.settings.SendAppEvents);
  EXPECT_EQ(house.settings.MorvaneDir, "");
}

TEST(StoredSettings, StartFailsWhereTheTableDoes) {
  for (const char* statements : {"UPDATE Settings_General SET DebugMode = NULL",
                                 "UPDATE Settings_General SET DatumFormat = NULL",
                                 "UPDATE Settings_General SET SnmpcDir = NULL",
                                 "DELETE FROM Settings_General", "DROP TABLE Settings_General"}) {
    StoredSettingsHouse house;
    house.Sql(statements);
    EXPECT_THROW(ReadGeneralSettings(house.settings), Failure) << statements;
  }
}

}  // namespace
}  // namespace quillon
