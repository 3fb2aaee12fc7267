// The buttons of the console: what they read and write in which order, and which jobs they run.
#include "service/console_operations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "render/stylesheet.h"
#include "service/stored_settings.h"
#include "support/refusal.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

// Settings that differ from those of a new installation, and verbs that tell what became of them.
class ConsoleHouse : public ServiceHouse {
 public:
  ConsoleHouse() {
    Sql("UPDATE Settings_WebServer SET IpAddr = '10.1.2.3', TcpPort = 8081, Enabled = 1,"
        " Status = 'Listening', CharSet = 'ISO-8859-5';"
        "UPDATE Settings_General SET DebugMode = 1, DatumFormat = 'MM/DD/YYYY',"
        " SnmpcDir = '/product'");
  }

  void Sql(const std::string& statements) const { installation.Sql("Quillon.mdb", statements); }
  Lines Rows(const std::string& select) const { return installation.Select("Quillon.mdb", select); }

  // Both rows as they are stored: "<IpAddr>|<TcpPort>|...".
  std::string Stored() const { return StoredWebServer() + " " + StoredGeneral(); }
  std::string StoredWebServer() const {
    return Rows("SELECT IpAddr, TcpPort, Enabled, Status, CharSet FROM Settings_WebServer")[0];
  }
  std::string StoredGeneral() const {
    return Rows("SELECT DebugMode, DatumFormat, SnmpcDir FROM Settings_General")[0];
  }

  // A replayed day without a period: then cmdSetRepDate acts.
  void Replay(const std::string& date) {
    settings.RepDateOverride = true;
    settings.txtRepDate = date;
    period = {};
  }
  std::string Period() const { return period.ReportStart + "|" + period.ReportEnd; }
};

const std::string kWebServer = "10.1.2.3|8081|1|Listening|ISO-8859-5";
const std::string kGeneral = "1|MM/DD/YYYY|/product";

// A form that differs from the stored rows in every field.
ConsoleForm OtherForm() {
  ConsoleForm form;
  form.chkDebugMode = false;
  form.cboDatumFormat = "DD/MM/YYYY";
  form.chkEnabled = false;
  form.txtIpAddr = "192.0.2.7";
  form.txtListeningPort = "80";
  form.txtStatus = "shown alone";
  form.cboCharSet = "ISO-8859-2";
  form.cboColorTheme = "Gold";
  return form;
}
ConsoleForm FormWithPort(const std::string& port) {
  ConsoleForm form = OtherForm();
  form.txtListeningPort = port;
  return form;
}

// What the two tables give, in the order in which they are read.
std::string TextOf(const ConsoleForm& form) {
  return form.txtIpAddr + "|" + form.txtListeningPort + "|" + (form.chkEnabled ? "1" : "0") + "|" +
         form.txtStatus + "|" + form.cboCharSet + "|" + (form.chkDebugMode ? "1" : "0") + "|" +
         form.cboDatumFormat;
}

TEST(ConsoleOperations, ReadFillsTheFormFromBothTables) {
  ConsoleHouse house;
  ConsoleForm form;
  form.cboColorTheme = "Gold";
  cmdRead(house.settings, form);
  EXPECT_EQ(TextOf(form), "10.1.2.3|8081|1|Listening|ISO-8859-5|1|MM/DD/YYYY");
  EXPECT_EQ(form.cboColorTheme, "Gold");
  EXPECT_EQ(house.Stored(), kWebServer + " " + kGeneral);
}

TEST(ConsoleOperations, ReadTakesWhateverIsStored) {
  ConsoleHouse house;
  house.Sql(
      "UPDATE Settings_WebServer SET IpAddr = 'no address', TcpPort = 70000, Enabled = 0,"
      " Status = '', CharSet = 'B\xC3\xBCro';"
      "UPDATE Settings_General SET DebugMode = 0, DatumFormat = ''");
  ConsoleForm form;
  form.chkEnabled = form.chkDebugMode = true;
  cmdRead(house.settings, form);
  EXPECT_EQ(TextOf(form), "no address|70000|0||B\xC3\xBCro|0|");
}

TEST(ConsoleOperations, SettingsOfTheServiceStayAsTheyAreWhenTheFormIsReadOrSaved) {
  ConsoleHouse house;
  ConsoleForm form;
  cmdRead(house.settings, form);
  cmdSave(house.settings, OtherForm());
  EXPECT_FALSE(house.settings.DebugMode);
  EXPECT_EQ(house.settings.DatumFormat, "YYYY-MM-DD");
  EXPECT_EQ(house.settings.CharSet, "ISO-8859-1");
  EXPECT_EQ(house.settings.txtRepDate, "2014-11-07");
}

TEST(ConsoleOperations, ReadThatFailsHasFilledTheFieldsBeforeTheFailure) {
  struct Case {
    const char* statement;
    const char* form;
  };
  const Case cases[] = {
      {"DROP TABLE Settings_WebServer", "o|o|0|o|o|0|o"},
      {"DELETE FROM Settings_WebServer", "o|o|0|o|o|0|o"},
      {"UPDATE Settings_WebServer SET IpAddr = NULL", "o|o|0|o|o|0|o"},
      {"UPDATE Settings_WebServer SET TcpPort = NULL", "10.1.2.3|o|0|o|o|0|o"},
      {"UPDATE Settings_WebServer SET Enabled = NULL", "10.1.2.3|8081|0|o|o|0|o"},
      {"UPDATE Settings_WebServer SET Status = NULL", "10.1.2.3|8081|1|o|o|0|o"},
      {"UPDATE Settings_WebServer SET CharSet = NULL", "10.1.2.3|8081|1|Listening|o|0|o"},
      {"DROP TABLE Settings_General", "10.1.2.3|8081|1|Listening|ISO-8859-5|0|o"},
      {"DELETE FROM Settings_General", "10.1.2.3|8081|1|Listening|ISO-8859-5|0|o"},
      {"UPDATE Settings_General SET DebugMode = NULL", "10.1.2.3|8081|1|Listening|ISO-8859-5|0|o"},
      {"UPDATE Settings_General SET DatumFormat = NULL",
       "10.1.2.3|8081|1|Listening|ISO-8859-5|1|o"},
  };
  for (const Case& row : cases) {
    ConsoleHouse house;
    house.Sql(row.statement);
    ConsoleForm form;
    form.txtIpAddr = form.txtListeningPort = form.txtStatus = form.cboCharSet =
        form.cboDatumFormat = "o";
    EXPECT_THROW(cmdRead(house.settings, form), Failure) << row.statement;
    EXPECT_EQ(TextOf(form), row.form) << row.statement;
    EXPECT_EQ(house.Events(), Lines{}) << row.statement;
  }
}

TEST(ConsoleOperations, SaveWritesBothRowsWithoutTheStatus) {
  ConsoleHouse house;
  cmdSave(house.settings, OtherForm());
  EXPECT_EQ(house.Stored(), "192.0.2.7|80|0|Listening|ISO-8859-2 0|DD/MM/YYYY|/product");
  EXPECT_EQ(house.Events(), Lines{});
}

TEST(ConsoleOperations, SaveJudgesNothingButTheFormOfThePort) {
  ConsoleHouse house;
  ConsoleForm form = OtherForm();
  form.txtIpAddr = "no 'address'";
  form.cboCharSet = "B\xC3\xBCro";
  form.cboDatumFormat = "";
  cmdSave(house.settings, form);
  EXPECT_EQ(house.Stored(), "no 'address'|80|0|Listening|B\xC3\xBCro 0||/product");
}

TEST(ConsoleOperations, WhatIsSavedIsRead) {
  ConsoleHouse house;
  ConsoleForm form;
  cmdSave(house.settings, OtherForm());
  cmdRead(house.settings, form);
  EXPECT_EQ(TextOf(form), "192.0.2.7|80|0|Listening|ISO-8859-2|0|DD/MM/YYYY");
}

TEST(ConsoleOperations, SaveWritesOverNulls) {
  ConsoleHouse house;
  house.Sql(
      "UPDATE Settings_WebServer SET IpAddr = NULL, TcpPort = NULL, Enabled = NULL,"
      " Status = NULL, CharSet = NULL;"
      "UPDATE Settings_General SET DebugMode = NULL, DatumFormat = NULL");
  cmdSave(house.settings, OtherForm());
  EXPECT_EQ(house.Stored(), "192.0.2.7|80|0|NULL|ISO-8859-2 0|DD/MM/YYYY|/product");
}

TEST(ConsoleOperations, FirstRowOfATableCounts) {
  ConsoleHouse house;
  house.Sql(
      "INSERT INTO Settings_WebServer (IpAddr) VALUES ('second');"
      "INSERT INTO Settings_General (DatumFormat) VALUES ('second')");
  ConsoleForm form;
  cmdRead(house.settings, form);
  EXPECT_EQ(TextOf(form), "10.1.2.3|8081|1|Listening|ISO-8859-5|1|MM/DD/YYYY");
  cmdSave(house.settings, OtherForm());
  EXPECT_EQ(house.Rows("SELECT IpAddr, TcpPort FROM Settings_WebServer"),
            (Lines{"192.0.2.7|80", "second|NULL"}));
  EXPECT_EQ(house.Rows("SELECT DatumFormat FROM Settings_General"),
            (Lines{"DD/MM/YYYY", "second"}));
}

// Triggers note each update with what it leaves.
TEST(ConsoleOperations, EachTableGetsOneUpdateAndTheWebServerTheFirst) {
  ConsoleHouse house;
  house.Sql(
      "CREATE TABLE Writes (Row TEXT);"
      "CREATE TRIGGER NoteWebServer AFTER UPDATE ON Settings_WebServer BEGIN INSERT INTO Writes"
      " VALUES (NEW.IpAddr || ' ' || NEW.TcpPort || ' ' || NEW.Enabled || ' ' || NEW.CharSet); END;"
      "CREATE TRIGGER NoteGeneral AFTER UPDATE ON Settings_General BEGIN INSERT INTO Writes"
      " VALUES (NEW.DebugMode || ' ' || NEW.DatumFormat); END");
  cmdSave(house.settings, OtherForm());
  EXPECT_EQ(house.Rows("SELECT Row FROM Writes ORDER BY rowid"),
            (Lines{"192.0.2.7 80 0 ISO-8859-2", "0 DD/MM/YYYY"}));
}

TEST(ConsoleOperations, SaveThatFailsAtTheFirstTableWritesNothing) {
  for (const std::string& statement :
       {Refusal("UPDATE", "Settings_WebServer"), std::string("DELETE FROM Settings_WebServer"),
        std::string("DROP TABLE Settings_WebServer")}) {
    ConsoleHouse house;
    house.Sql(statement);
    EXPECT_THROW(cmdSave(house.settings, OtherForm()), DatabaseFailure) << statement;
    EXPECT_EQ(house.StoredGeneral(), kGeneral) << statement;
    EXPECT_EQ(house.Events(), Lines{}) << statement;
  }
}

TEST(ConsoleOperations, SaveThatFailsAtTheSecondTableHasWrittenTheFirst) {
  for (const std::string& statement :
       {Refusal("UPDATE", "Settings_General"), std::string("DELETE FROM Settings_General"),
        std::string("DROP TABLE Settings_General")}) {
    ConsoleHouse house;
    house.Sql(statement);
    EXPECT_THROW(cmdSave(house.settings, OtherForm()), DatabaseFailure) << statement;
    EXPECT_EQ(house.StoredWebServer(), "192.0.2.7|80|0|Listening|ISO-8859-2") << statement;
  }
}

TEST(ConsoleOperations, PortThatIsNoNumberOfItsFieldIsAFailureAndNothingIsWritten) {
  ConsoleHouse house;
  for (const char* port : {"", " ", "http", "80a", "8 0", "1,000", "0x50", "--1"}) {
    EXPECT_THROW(cmdSave(house.settings, FormWithPort(port)), ConversionFailure) << port;
  }
  for (const char* port : {"2147483648", "-2147483649", "99999999999999999999", "1e300"}) {
    EXPECT_THROW(cmdSave(house.settings, FormWithPort(port)), OverflowFailure) << port;
  }
  EXPECT_EQ(house.Stored(), kWebServer + " " + kGeneral);
}

TEST(ConsoleOperations, PortsBeyondSixteenBitsAreWritten) {
  ConsoleHouse house;
  for (const std::string port : {"0", "32768", "65535", "70000", "2147483647"}) {
    cmdSave(house.settings, FormWithPort(port));
    EXPECT_EQ(house.WebServer("TcpPort"), port);
  }
}

TEST(ConsoleOperations, ChangesAreAppliedInTheColoursOfTheFormsTheme) {
  ConsoleHouse house;
  for (const char* theme : lists::cboColorTheme) {
    ConsoleForm form;
    form.cboColorTheme = theme;
    cmdApplyChanges(house.diagnostics, form);
    EXPECT_EQ(house.installation.Read("WebReports/qws.css"), StylesheetText(FindTheme(theme)))
        << theme;
  }
  EXPECT_EQ(house.Events(), Lines{});
}

TEST(ConsoleOperations, StylesheetThatCannotBeWrittenIsAnEvent) {
  ConsoleHouse house;
  std::filesystem::remove_all(house.installation.path() + "/WebReports");
  cmdApplyChanges(house.diagnostics, ConsoleForm());
  ASSERT_EQ(house.Events().size(), 1u);
  EXPECT_TRUE(house.Events()[0].starts_with("1\tmodHtml_CreateCss\t")) << house.Events()[0];
}

TEST(ConsoleOperations, ImportFollowsTheMarksOfAReportOfThree) {
  for (const bool isDue : {false, true}) {
    ConsoleHouse house;
    house.importIsDue = isDue;
    EXPECT_EQ(cmdImport(house.operators), "ok 0");
    EXPECT_EQ(house.jobCalls, (Lines{"UpdateHistory_Db 3", "Import"})) << isDue;
  }
}

TEST(ConsoleOperations, MillisecondsAreThoseOfTheImportAlone) {
  ConsoleHouse house;
  house.jobs.UpdateHistory_Db = [&](std::int16_t) { house.clock.Advance(milliseconds(5000)); };
  house.jobs.Import = [&](bool&) {
    house.clock.Advance(milliseconds(1234));
    house.clock.Set("2001-01-01 00:00:00");  // the tick goes on when the clock is put back
  };
  EXPECT_EQ(cmdImport(house.operators), "ok 1234");
}

TEST(ConsoleOperations, FlagOfTheImportIsDownWhenItIsCalled) {
  ConsoleHouse house;
  bool flagBefore = true;
  house.jobs.Import = [&](bool& done) { flagBefore = done; };
  cmdImport(house.operators);
  EXPECT_FALSE(flagBefore);
}

TEST(ConsoleOperations, PagesAreBuiltWithoutImportAndMails) {
  ConsoleHouse house;
  cmdAutoCreate(house.operators);
  EXPECT_EQ(house.jobCalls, Lines{"AutoCreate"});
  EXPECT_FALSE(house.settings.DebugMode);
}

TEST(ConsoleOperations, MailsLeaveTheirTraceUntilTheNextPassReadsTheSettings) {
  ConsoleHouse house;
  house.SetGeneral("DebugMode", "0");
  bool inTheJob = false;
  house.jobs.MailReports = [&] { inTheJob = house.settings.DebugMode; };
  cmdMailCreate(house.operators);
  EXPECT_TRUE(inTheJob);
  EXPECT_TRUE(house.settings.DebugMode);
  EXPECT_EQ(house.StoredGeneral(), "0|MM/DD/YYYY|/product");
  RefreshSettings(house.service);
  EXPECT_FALSE(house.settings.DebugMode);
}

TEST(ConsoleOperations, MailsAreAllThatMailCreateRuns) {
  ConsoleHouse house;
  cmdMailCreate(house.operators);
  EXPECT_EQ(house.jobCalls, Lines{"MailReports"});
}

TEST(ConsoleOperations, PeriodOfAReplayedDayEndsOnItAtThree) {
  struct Case {
    const char* date;
    const char* format;
    const char* period;
  };
  const Case cases[] = {
      {"2014-11-07", "YYYY-MM-DD", "2014-11-06&nbsp;&nbsp03:00|2014-11-07&nbsp;&nbsp03:00"},
      {"2014-11-07", "MM/DD/YYYY", "11/06/2014&nbsp;&nbsp03:00|11/07/2014&nbsp;&nbsp03:00"},
      {"2014-11-07", "DD/MM/YYYY", "06/11/2014&nbsp;&nbsp03:00|07/11/2014&nbsp;&nbsp03:00"},
      {"2024-03-01", "YYYY-MM-DD", "2024-02-29&nbsp;&nbsp03:00|2024-03-01&nbsp;&nbsp03:00"},
      {"2023-03-01", "YYYY-MM-DD", "2023-02-28&nbsp;&nbsp03:00|2023-03-01&nbsp;&nbsp03:00"},
      {"2024-01-01", "DD/MM/YYYY", "31/12/2023&nbsp;&nbsp03:00|01/01/2024&nbsp;&nbsp03:00"},
      {"2014-11-07 22:59:59", "YYYY-MM-DD",
       "2014-11-06&nbsp;&nbsp03:00|2014-11-07&nbsp;&nbsp03:00"},
      {"2014-11-07 23:00:00", "YYYY-MM-DD",
       "2014-11-07&nbsp;&nbsp03:00|2014-11-07&nbsp;&nbsp03:00"},
  };
  for (const Case& row : cases) {
    ConsoleHouse house;
    house.settings.DatumFormat = row.format;
    house.Replay(row.date);
    EXPECT_TRUE(cmdSetRepDate(house.operators)) << row.date;
    EXPECT_EQ(house.Period(), row.period) << row.date << " " << row.format;
    EXPECT_EQ(house.jobCalls, Lines{}) << row.date;
  }
}

TEST(ConsoleOperations, ReportDateActsOnlyInAReplayThatHasNoPeriodYet) {
  struct Case {
    bool isReplayed;
    const char* start;
    const char* end;
    bool acts;
  };
  const Case cases[] = {
      {true, "", "", true},         {true, "", "an end", true},
      {true, "a start", "", false}, {true, "a start", "an end", false},
      {false, "", "", false},       {false, "a start", "an end", false},
  };
  for (const Case& row : cases) {
    ConsoleHouse house;
    house.Replay("2014-11-07");
    house.settings.RepDateOverride = row.isReplayed;
    house.period = {row.start, row.end};
    EXPECT_EQ(cmdSetRepDate(house.operators), row.acts) << row.start << row.end;
    const std::string before = std::string(row.start) + "|" + row.end;
    EXPECT_EQ(house.Period(),
              row.acts ? "2014-11-06&nbsp;&nbsp03:00|2014-11-07&nbsp;&nbsp03:00" : before);
  }
}

TEST(ConsoleOperations, ReportDateThatIsNoDateIsAFailureAndLeavesThePeriod) {
  for (const char* date : {"", "soon", "2014-13-07", "2014-02-29", "07/11/2014", "2014-11-07x"}) {
    ConsoleHouse house;
    house.Replay(date);
    EXPECT_THROW(cmdSetRepDate(house.operators), ConversionFailure) << date;
    EXPECT_EQ(house.Period(), "|") << date;
  }
}

TEST(ConsoleOperations, ReportDateIsNotLookedAtWhereItDoesNotAct) {
  ConsoleHouse house;
  house.Replay("soon");
  house.settings.RepDateOverride = false;
  EXPECT_FALSE(cmdSetRepDate(house.operators));
}

}  // namespace
}  // namespace quillon
