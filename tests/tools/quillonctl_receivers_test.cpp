// quillonctl receivers: who gets mails, and what is not written since nobody would get one.
#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

const std::string kNewcomer = "receivers add --name Ann --recipient ann@example.org ";

class QuillonctlReceivers : public Quillonctl {
 protected:
  QuillonctlReceivers() { CreateForCheck(); }

  void Settings(const std::string& sql) const { Sql("Quillon.mdb", sql); }
  std::vector<Row> Receivers() const {
    return Sql("Quillon.mdb", "SELECT * FROM Settings_RepReceiver ORDER BY rowid");
  }
  // The one receiver there is, after an ordinary one was made to differ in these assignments.
  void Seed(const std::string& assignments) const {
    Settings("DELETE FROM Settings_RepReceiver");
    Run(kNewcomer);
    Settings("UPDATE Settings_RepReceiver SET " + assignments);
  }
  // The command is refused with this reason, and nothing is written.
  void ExpectRefused(const std::string& arguments, const std::string& reason) const {
    const std::vector<Row> before = Receivers();
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.error, "quillonctl: " + reason + "\n") << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(Receivers(), before) << arguments;
  }
  void ExpectDone(const std::string& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << arguments;
    EXPECT_EQ(outcome.error, "") << arguments;
  }
};

TEST_F(QuillonctlReceivers, NewOneHasAValueInEveryField) {
  EXPECT_EQ(Run(kNewcomer).out, "1\n");
  EXPECT_EQ(Receivers(),
            (std::vector<Row>{{"Ann", "ann@example.org", "1", "Monday", "None", "None", "None",
                               "None", "None", "0", "0", "0", "0", "1", "0"}}));
  EXPECT_EQ(Quillondb::Run("check {}").out, "ok\n");
}

TEST_F(QuillonctlReceivers, EveryOptionHasItsField) {
  ExpectDone(
      "receivers add --name 'Büro Empfang' --recipient 'Noc <noc@example.org>' --schedule weekly"
      " --week-day Sunday --report1 'Access InVolume' --report2 'Trunk Summary'"
      " --report3 'Access OutErrors' --report4 None --report5 'Trunk InMulticast'"
      " --port-report yes --port-device 7 --port-interface 2147483647 --port-details yes"
      " --attach yes --include-url yes");
  EXPECT_EQ(Receivers(),
            (std::vector<Row>{{"Büro Empfang", "Noc <noc@example.org>", "2", "Sunday",
                               "Access InVolume", "Trunk Summary", "Access OutErrors", "None",
                               "Trunk InMulticast", "1", "7", "2147483647", "1", "1", "1"}}));
}

TEST_F(QuillonctlReceivers, ChangeTouchesWhatIsGivenAlone) {
  for (int receiver = 0; receiver < 3; ++receiver) Run(kNewcomer);
  std::vector<Row> expected = Receivers();
  expected[1][2] = "3";
  expected[1][8] = "Access Summary";
  ExpectDone("receivers change 2 --schedule monthly --report5 'Access Summary'");
  EXPECT_EQ(Receivers(), expected);
}

TEST_F(QuillonctlReceivers, NumbersStayWhenOthersGo) {
  for (const char* name : {"A", "B", "C"}) {
    Run(std::string("receivers add --recipient a@b --name ") + name);
  }
  ExpectDone("receivers remove 2");
  ExpectDone("receivers change 3 --name D");
  EXPECT_EQ(Sql("Quillon.mdb", "SELECT rowid, Name FROM Settings_RepReceiver ORDER BY rowid"),
            (std::vector<Row>{{"1", "A"}, {"3", "D"}}));
}

TEST_F(QuillonctlReceivers, NobodyOfTheNumberIsSaid) {
  const std::string reason = "there is no receiver 7; 'quillonctl receivers' lists those there are";
  ExpectRefused("receivers remove 7", reason);
  ExpectRefused("receivers change 7 --name Ann", reason);
}

TEST_F(QuillonctlReceivers, NoHundredAndFirstIsTaken) {
  Run(kNewcomer);
  Settings(
      "WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 98)"
      " INSERT INTO Settings_RepReceiver SELECT r.* FROM Settings_RepReceiver r, n");
  EXPECT_EQ(Run(kNewcomer).out, "100\n");
  ExpectRefused(kNewcomer, "there are 100 receivers already; with one more nobody would get mail");
}

TEST_F(QuillonctlReceivers, WhatNoMailCanComeOfIsRefused) {
  const std::string choices =
      "'; write None, or Access or Trunk and one of InVolume, OutVolume, InBroadcast,"
      " InMulticast, InErrors, OutErrors, Summary";
  const auto address = [](const std::string& text) {
    return "--recipient: '" + text +
           "' is not one mail address; write one such as"
           " noc@example.org";
  };
  const auto number = [](const std::string& option, const std::string& text) {
    return "--" + option + ": '" + text + "' is no number from 1 to 2147483647";
  };
  const std::pair<const char*, std::string> kWrong[] = {
      {"--name ''", "--name: it is empty; who has no name gets no mail"},
      {"--name 'a\nb'", "--name: the text has control characters"},
      {"--name '\xff'", "--name: the text is not in UTF-8"},
      {"--recipient ann", address("ann")},
      {"--recipient ''", address("")},
      {"--recipient 'a@b, c@d'", address("a@b, c@d")},
      {"--recipient 'änn@example.org'", address("änn@example.org")},
      {"--schedule Weekly", "--schedule: 'Weekly' is none of daily, weekly, monthly"},
      {"--schedule 2", "--schedule: '2' is none of daily, weekly, monthly"},
      {"--week-day monday", "--week-day: 'monday' is no weekday; write Monday to Sunday"},
      {"--report1 none", "--report1: no report is called 'none" + choices},
      {"--report1 'Trunk Access InVolume'",
       "--report1: no report is called 'Trunk Access InVolume" + choices},
      {"--report1 'Access InVolume OutErrors'",
       "--report1: no report is called 'Access InVolume OutErrors" + choices},
      {"--report1 'Access  InVolume'",
       "--report1: no report is called 'Access  InVolume" + choices},
      {"--report5 'Access inerrors'", "--report5: no report is called 'Access inerrors" + choices},
      {"--report2 'access InErrors'", "--report2: no report is called 'access InErrors" + choices},
      {"--port-device 0", number("port-device", "0")},
      {"--port-device 2147483648", number("port-device", "2147483648")},
      {"--port-interface 4x", number("port-interface", "4x")},
  };
  Run(kNewcomer);
  for (const auto& [options, reason] : kWrong) {
    ExpectRefused(std::string("receivers change 1 ") + options, reason);
  }
}

TEST_F(QuillonctlReceivers, AllThatIsWrongIsSaidAtOnceAndNothingWritten) {
  ExpectRefused("receivers add --name Ann --recipient ann --schedule never",
                "--recipient: 'ann' is not one mail address; write one such as noc@example.org\n"
                "quillonctl: --schedule: 'never' is none of daily, weekly, monthly");
}

TEST_F(QuillonctlReceivers, FieldsAreJudgedTogetherAsTheyWouldBe) {
  const std::string weekDay = "--week-day: a weekly mail needs it; write Monday to Sunday";
  const std::string device = "--port-device: the report of a port needs it";
  const std::string interface = "--port-interface: the report of a port needs it";
  const struct {
    const char* before;
    const char* options;
    std::string reason;
  } kWrong[] = {
      {"WeekDay = 'Someday'", "--schedule weekly", weekDay},
      {"WeekDay = NULL", "--schedule weekly", weekDay},
      {"Name = Name", "--port-report yes --port-device 4", interface},
      {"Name = Name", "--port-report yes --port-interface 4", device},
      {"PortRep = TRUE, PortRepIfIndex = NULL", "--port-device 4", interface},
      {"PortRepRecNo = 4, PortRepIfIndex = 4, PortRepDetails = NULL", "--port-report yes",
       "--port-details: the report of a port needs it; write yes or no"},
  };
  for (const auto& [before, options, reason] : kWrong) {
    SCOPED_TRACE(before);
    Seed(before);
    ExpectRefused(std::string("receivers change 1 ") + options, reason);
  }
}

TEST_F(QuillonctlReceivers, WrongRowCanBeChangedForTheBetter) {
  const std::pair<const char*, const char*> kCases[] = {
      {"Recipient = 'ann', Top10Rep1 = NULL", "--name Bob"},
      {"TimeSchedule = 2, WeekDay = 'Someday'", "--report1 'Access InVolume'"},
      {"TimeSchedule = 2, WeekDay = 'Someday'", "--schedule daily"},
      {"TimeSchedule = 2, WeekDay = NULL", "--week-day Friday"},
      {"TimeSchedule = 9", "--schedule monthly"},
      {"PortRep = TRUE, PortRepRecNo = NULL", "--name Bob"},
      {"PortRep = TRUE, PortRepRecNo = NULL", "--port-report no"},
      {"PortRep = TRUE, PortRepRecNo = NULL", "--port-device 4 --port-interface 5"},
  };
  for (const auto& [before, options] : kCases) {
    SCOPED_TRACE(before);
    Seed(before);
    ExpectDone(std::string("receivers change 1 ") + options);
  }
}

TEST_F(QuillonctlReceivers, ListHasTheNumbersAndTheWordsOfTheOptions) {
  Run(kNewcomer + "--schedule weekly --report1 'Access InVolume'");
  Run("receivers add --name 'B, C' --recipient b@example.org --port-report yes --port-device 3"
      " --port-interface 12");
  ExpectDone("receivers remove 1");
  Run(kNewcomer);
  const std::string head =
      "number,name,recipient,schedule,week-day,report1,report2,report3,report4,report5,"
      "port-report,port-device,port-interface,port-details,attach,include-url\n";
  EXPECT_EQ(
      Run("receivers list --csv").out,
      head +
          "2,\"B, C\",b@example.org,daily,Monday,None,None,None,None,None,yes,3,12,no,yes,no\n"
          "3,Ann,ann@example.org,daily,Monday,None,None,None,None,None,no,0,0,no,yes,no\n");
}

TEST_F(QuillonctlReceivers, ListForPeopleHasOneColumnForWhatIsOneThing) {
  Run(kNewcomer + "--schedule weekly --report1 'Access InVolume' --report3 'Trunk Summary'");
  Run("receivers add --name Bob --recipient b@example.org --schedule monthly --port-report yes"
      " --port-device 3 --port-interface 12 --include-url yes");
  const std::string list =
      "number  name  recipient        schedule       reports                         port  attach"
      "  include-url\n"
      "     1  Ann   ann@example.org  weekly Monday  Access InVolume, Trunk Summary        yes"
      "     no\n"
      "     2  Bob   b@example.org    monthly                                        3/12  yes"
      "     yes\n";
  EXPECT_EQ(Run("receivers").out, list);
  EXPECT_EQ(Run("receivers list").out, list);
}

TEST_F(QuillonctlReceivers, ListForProgramsHasNumbersAndTruths) {
  Run(kNewcomer + "--port-report yes --port-device 3 --port-interface 12");
  const std::string json = Run("receivers list --json").out;
  for (const char* line : {"\"number\": 1,", "\"schedule\": \"daily\",", "\"port-report\": true,",
                           "\"port-device\": 3,", "\"include-url\": false\n"}) {
    EXPECT_NE(json.find(line), std::string::npos) << line << " in " << json;
  }
}

TEST_F(QuillonctlReceivers, ListTakesWhateverIsStored) {
  Settings(
      "INSERT INTO Settings_RepReceiver (Name, TimeSchedule, PortRepRecNo)"
      " VALUES ('', 'often', 'first')");
  const Outcome list = Run("receivers list --csv");
  EXPECT_EQ(list.status, 0) << list.error;
  EXPECT_EQ(list.out.substr(list.out.find('\n') + 1), "1,,,often,,,,,,,,first,,,,\n");
  EXPECT_EQ(Run("receivers list").status, 0);
  EXPECT_EQ(Run("receivers list --json").status, 0);
}

TEST_F(QuillonctlReceivers, NamesGoIntoTheDatabaseAsTheyStand) {
  ExpectDone(
      "receivers add --recipient a@b --name \"x', 1); DROP TABLE Settings_RepReceiver; --\"");
  EXPECT_EQ(Receivers().at(0).at(0), "x', 1); DROP TABLE Settings_RepReceiver; --");
}

TEST_F(QuillonctlReceivers, WhatIsNoCommandLineIsWrongUsage) {
  for (const char* arguments :
       {"receivers add --name Ann", "receivers add --recipient a@b", "receivers change 1",
        "receivers change", "receivers change one --name Ann", "receivers remove",
        "receivers add --name Ann --recipient a@b --attach maybe",
        "receivers remove 1 --name Ann"}) {
    EXPECT_EQ(Run(arguments).status, 2) << arguments;
  }
}

}  // namespace
}  // namespace quillon
