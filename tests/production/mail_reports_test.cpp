// The run: who is due gets a mail with the pages chosen, one after the other.
#include "production/mail_reports.h"

#include <filesystem>

#include "production/mail_fixture.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

const std::string kVolumes = "switch-access-port-top10-involume.htm";
const std::string kErrors = "switch-trunk-port-top10-outerrors.htm";
const Columns kTwoReports = {{"Top10Rep1", "'Access InVolume'"},
                             {"Top10Rep3", "'Trunk OutErrors'"}};

class MailRun : public MailTest {
 protected:
  void Run() { MailReports(production); }

  // Runs the action at the first attempt to send a mail.
  void AtFirstSend(std::function<void()> action) {
    mails.onSend = [this, action = std::move(action)] {
      const auto run = action;  // which outlives what it is taken from
      mails.onSend = nullptr;
      run();
    };
  }
  // Runs the action in the wait after the first mail.
  void BetweenMails(std::function<void()> action) {
    AtFirstSend([this, action = std::move(action)] {
      site.Once([this] { return !Operations("dropped").empty(); }, action);
    });
  }

  static Lines Rep(const RepReceiverEntry& receiver) {
    return {receiver.Top10Rep.begin(), receiver.Top10Rep.end()};
  }
};

TEST_F(MailRun, WithoutReceiversNothingHappens) {
  Run();
  EXPECT_EQ(mails.operations, Lines{});
  EXPECT_EQ(site.Events(), Lines{});
  EXPECT_EQ(site.clock.slept(), std::chrono::milliseconds(0));
}

TEST_F(MailRun, AReceiverGetsThePagesChosenAndThePortPage) {
  AddReceiver(
      With(With(kTwoReports, PortReport(11, 4, true)), {{"Top10Rep5", "'Access Summary'"}}));
  ListenAt("192.0.2.10", 8080);
  Run();
  const std::string summary = "switch-access-port-summary.htm";
  const std::string port = "hist45-11-4.htm";
  EXPECT_EQ(MailFiles(), (Lines{port, summary, kVolumes, kErrors}));
  EXPECT_EQ(Mailed(kVolumes), ListPage("access", "InHCOctetsMb24H"));
  EXPECT_EQ(Mailed(kErrors), ListPage("trunk", "OutErrorsTot24H"));
  EXPECT_EQ(Mailed(summary), SummaryPage("access"));
  EXPECT_EQ(Mailed(port), PortPage(11, 4, "Desk11", "Gi0/1", Search{"Desk11", "Gi0/1"}));
  EXPECT_EQ(Operations("AddAttachment"), (Lines{"AddAttachment " + PathOfPage(kVolumes) + " 0",
                                                "AddAttachment " + PathOfPage(kErrors) + " 0",
                                                "AddAttachment " + PathOfPage(summary) + " 0",
                                                "AddAttachment " + PathOfPage(port) + " 0",
                                                "AddAttachment " + PathOfStylesheet() + " 0"}));
  EXPECT_EQ(Operations("SetBodyText"),
            (Lines{"SetBodyText http://192.0.2.10:8080/" + kVolumes +
                   "\r\n\r\nhttp://192.0.2.10:8080/" + kErrors + "\r\n\r\nhttp://192.0.2.10:8080/" +
                   summary + "\r\n\r\nhttp://192.0.2.10:8080/" + port +
                   "\r\n\r\nQuillon Network Reporting\r\nhttps://quillon.example/"}));
  EXPECT_EQ(Operations("AddRecipient"), Lines{"AddRecipient Anna <anna@example.org> 1"});
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailRun, TheEntriesHoldTheNamesOfThePagesAfterwards) {
  AddReceiver(With(kTwoReports, PortReport(11, 4, false)));
  AddReceiverNamed("Berta", {{"Top10Rep1", "'rubbish'"}});
  AddReceiverNamed("Cleo", With(kTwoReports, {{"TimeSchedule", "3"}}));
  Run();
  EXPECT_EQ(Rep(RepReceiver[1]), (Lines{kVolumes, "None", kErrors, "None", "None"}));
  EXPECT_EQ(RepReceiver[1].PortRepFile, "hist45-11-4.htm");
  EXPECT_TRUE(RepReceiver[1].SendToday);
  EXPECT_EQ(Rep(RepReceiver[2]), Lines(5, "None"));
  EXPECT_EQ(RepReceiver[2].PortRepFile, "None");
  EXPECT_EQ(RepReceiver[3].Name, "Cleo");
  EXPECT_FALSE(RepReceiver[3].SendToday);
  EXPECT_EQ(Rep(RepReceiver[3]),
            (Lines{"Access InVolume", "None", "Trunk OutErrors", "None", "None"}));
  EXPECT_EQ(RepReceiver[4].Name, "");
}

TEST_F(MailRun, AReceiverWithoutAnyReportGetsTheSignature) {
  AddReceiver({{"AttachReport", "FALSE"}});
  Run();
  EXPECT_EQ(Served(), Lines{"Anna"});
  EXPECT_EQ(Operations("SetBodyText"),
            Lines{"SetBodyText Quillon Network Reporting\r\nhttps://quillon.example/"});
  EXPECT_EQ(Operations("AddAttachment"), Lines{});
  EXPECT_EQ(MailFiles(), Lines{});
}

TEST_F(MailRun, PagesAreBuiltForMailsWithoutAttachmentsToo) {
  AddReceiver(With(kTwoReports, {{"AttachReport", "FALSE"}}));
  Run();
  EXPECT_EQ(MailFiles(), (Lines{kVolumes, kErrors}));
  EXPECT_EQ(Operations("AddAttachment"), Lines{});
}

TEST_F(MailRun, AReceiverHasHisOwnFlags) {
  ListenAt("192.0.2.10", 80);
  AddReceiver(With(kTwoReports, {{"IncludeUrl", "FALSE"}}));
  AddReceiverNamed("Berta", kTwoReports);
  AddReceiverNamed("Cleo", With(kTwoReports, {{"AttachReport", "FALSE"}}));
  Run();
  const std::string signature = "Quillon Network Reporting\r\nhttps://quillon.example/";
  EXPECT_EQ(Operations("SetBodyText"),
            (Lines{"SetBodyText " + signature,
                   "SetBodyText http://192.0.2.10/" + kVolumes + "\r\n\r\nhttp://192.0.2.10/" +
                       kErrors + "\r\n\r\n" + signature,
                   "SetBodyText " + signature}));
  EXPECT_EQ(Operations("AddAttachment").size(), 6u);
}

TEST_F(MailRun, OnlyReceiversWhoAreDueAndHaveANameGetAMail) {
  AddReceiverNamed("daily");
  AddReceiverNamed("weekly", {{"TimeSchedule", "2"}, {"WeekDay", "'Thursday'"}});
  AddReceiverNamed("another day", {{"TimeSchedule", "2"}, {"WeekDay", "'Friday'"}});
  AddReceiverNamed("inherits Friday", {{"TimeSchedule", "2"}, {"WeekDay", "'?'"}});
  AddReceiverNamed("monthly", With(kTwoReports, {{"TimeSchedule", "3"}}));
  AddReceiverNamed("", kTwoReports);
  AddReceiverNamed("never", With(kTwoReports, {{"TimeSchedule", "4"}}));
  AddReceiverNamed("last");
  Run();
  EXPECT_EQ(Served(), (Lines{"daily", "weekly", "last"}));
  EXPECT_EQ(MailFiles(), Lines{}) << "no page for those who get none";
  mails.operations.clear();
  site.clock.Set("2024-06-01 12:00:00");
  Run();
  EXPECT_EQ(Served(), (Lines{"daily", "monthly", "last"}));
}

TEST_F(MailRun, AReplayedDayDoesNotChangeWhoIsDue) {
  AddReceiverNamed("weekly", {{"TimeSchedule", "2"}, {"WeekDay", "'Thursday'"}});
  AddReceiverNamed("Saturday", {{"TimeSchedule", "2"}, {"WeekDay", "'Saturday'"}});
  AddReceiverNamed("monthly", {{"TimeSchedule", "3"}});
  site.settings.RepDateOverride = true;
  site.settings.txtRepDate = "2014-11-01";  // a Saturday
  Run();
  EXPECT_EQ(Served(), Lines{"weekly"});
}

TEST_F(MailRun, AMailGoesOutWheneverItRuns) {
  AddReceiver(kTwoReports);
  Run();
  Run();
  EXPECT_EQ(Served(), (Lines{"Anna", "Anna"}));
  EXPECT_EQ(Operations("AddAttachment").size(), 6u) << "with its pages both times";
}

TEST_F(MailRun, AReceiverWhoIsTakenAwayGetsNoMoreMails) {
  AddReceivers(3);
  Run();
  Settings("DELETE FROM Settings_RepReceiver WHERE Name = 'R2'");
  mails.operations.clear();
  Run();
  EXPECT_EQ(Served(), (Lines{"R1", "R3"}));
}

TEST_F(MailRun, TheMailsAreASecondApartAndEachIsAnObjectOfItsOwn) {
  AddReceivers(3);
  std::vector<std::chrono::milliseconds> moments;
  mails.onSend = [&] { moments.push_back(site.clock.slept()); };
  Run();
  using std::chrono::milliseconds;
  EXPECT_EQ(moments, (std::vector{milliseconds(0), milliseconds(1000), milliseconds(2000)}));
  EXPECT_EQ(site.clock.slept(), milliseconds(3000));
  Lines lives;
  for (const std::string& line : mails.operations) {
    if (line == "new" || line == "dropped" || line == "SendMessage") lives.push_back(line);
  }
  EXPECT_EQ(lives, (Lines{"new", "SendMessage", "dropped", "new", "SendMessage", "dropped", "new",
                          "SendMessage", "dropped"}));
}

TEST_F(MailRun, APageIsBuiltWhenItsReceiversTurnComes) {
  AddReceiver({{"Top10Rep1", "'Access InVolume'"}});
  AddReceiverNamed("Berta", {{"Top10Rep1", "'Trunk OutErrors'"}});
  std::vector<Lines> files;
  mails.onSend = [&] { files.push_back(MailFiles()); };
  Run();
  EXPECT_EQ(files, (std::vector<Lines>{{kVolumes}, {kVolumes, kErrors}}));
}

TEST_F(MailRun, APageThatTwoReceiversWantIsBuiltForEach) {
  AddReceiver({{"Top10Rep2", "'Access InVolume'"}});
  AddReceiverNamed("Berta", {{"Top10Rep4", "'InVolume, Access'"}});
  std::string first;
  AtFirstSend([&] {
    first = Mailed(kVolumes);
    Reports("DELETE FROM VLAN WHERE RecNo = 12");
  });
  Run();
  EXPECT_NE(Mailed(kVolumes), first);
  EXPECT_EQ(Mailed(kVolumes), ListPage("access", "InHCOctetsMb24H"));
  EXPECT_EQ(Operations("AddAttachment " + PathOfPage(kVolumes)).size(), 2u);
}

TEST_F(MailRun, ThePagesStayUntilTheNextRun) {
  AddReceiver(kTwoReports);
  Run();
  EXPECT_EQ(MailFiles(), (Lines{kVolumes, kErrors}));
  Settings("UPDATE Settings_RepReceiver SET Top10Rep1 = 'None'");
  Run();
  EXPECT_EQ(MailFiles(), Lines{kErrors});
  Settings("DELETE FROM Settings_RepReceiver");
  Run();
  EXPECT_EQ(MailFiles(), Lines{}) << "also where nobody is left";
}

TEST_F(MailRun, OnlyPagesAreClearedAwayAndOnlyFromTheMailFolder) {
  for (const char* file : {"Mail/a.htm", "Mail/.htm", "Mail/notes.txt", "Mail/a.htm.old",
                           "Mail/ahtm", "Cache/a.htm", "a.htm"}) {
    site.installation.Write(std::string("WebReports/") + file, "old");
  }
  Run();
  EXPECT_EQ(MailFiles(), (Lines{"a.htm.old", "ahtm", "notes.txt"}));
  EXPECT_EQ(CacheFiles(), Lines{"a.htm"});
  EXPECT_TRUE(site.installation.Exists("WebReports/a.htm"));
}

TEST_F(MailRun, WithoutItsFolderThePagesAreReportedAndTheMailGoesOut) {
  AddReceiver({{"Top10Rep1", "'Access InVolume'"}});
  std::filesystem::remove(site.installation.path() + "/WebReports/Mail");
  Run();
  EXPECT_EQ(EventHeads(), Lines{"1\tmodHtml_SaveForMail"});
  EXPECT_EQ(Served(), Lines{"Anna"});
}

TEST_F(MailRun, APageThatCannotBeSavedDoesNotKeepTheMail) {
  AddReceiver(kTwoReports);
  AddReceiverNamed("Berta", kTwoReports);
  std::filesystem::create_directory(PathOfPage(kVolumes));
  Run();
  EXPECT_EQ(EventHeads(), Lines(2, "1\tmodHtml_SaveForMail"));
  EXPECT_EQ(Served(), (Lines{"Anna", "Berta"}));
  EXPECT_EQ(Operations("AddAttachment").size(), 6u);
  EXPECT_EQ(Mailed(kErrors), ListPage("trunk", "OutErrorsTot24H"));
}

TEST_F(MailRun, APortThatIsGoneDoesNotKeepTheMail) {
  AddReceiver(PortReport(66, 3, true));
  Run();
  EXPECT_EQ(Served(), Lines{"Anna"});
  EXPECT_EQ(Mailed("hist45-66-3.htm"), PortPage(66, 3, "n/a", "n/a", Search{"n/a", "n/a"}));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailRun, AReportThatFailsInItsQueryDoesNotKeepTheMail) {
  AddReceiver(With(kTwoReports, PortReport(11, 4, true)));
  AddReceiverNamed("Berta");
  for (const char* name : {"Reports.mdb", "History.mdb"}) site.installation.Remove(name);
  Run();
  EXPECT_EQ(Served(), (Lines{"Anna", "Berta"}));
  EXPECT_EQ(EventHeads(),
            (Lines{"1\tmodSelectSql_SqlTop10SwitchStats", "1\tmodSelectSql_SqlTop10SwitchStats",
                   "1\tmodSelectSql_SqlPortNameLookup", "1\tmodSelectSql_SqlSearchDevicePort",
                   "1\tmodSelectSql_SqHist45SwitchControl"}));
  EXPECT_EQ(Operations("AddAttachment").size(), 5u);
}

TEST_F(MailRun, AHundredReceiversAreServed) {
  AddReceivers(100);
  Run();
  const Lines served = Served();
  ASSERT_EQ(served.size(), 100u);
  EXPECT_EQ(served.front(), "R1");
  EXPECT_EQ(served.back(), "R100");
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailRun, WithAHundredAndOneRowsNobodyIsServed) {
  site.installation.Write("WebReports/Mail/old.htm", "old");
  AddReceivers(100);
  AddReceiverNamed("");
  Run();
  EXPECT_EQ(mails.operations, Lines{});
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_MailReports"});
  EXPECT_EQ(MailFiles(), Lines{}) << "the pages of the run before are gone all the same";
}

TEST_F(MailRun, ANullInARowKeepsTheMailsOfAllReceivers) {
  AddReceivers(2);
  AddReceiverNamed("", {{"Recipient", "NULL"}});
  Run();
  EXPECT_EQ(mails.operations, Lines{});
  ASSERT_EQ(EventHeads(), Lines{"1\tmodMail_MailReports"});
  EXPECT_TRUE(Holds(site.Events()[0], "Recipient"));
}

TEST_F(MailRun, WithoutItsTableTheRunIsReported) {
  AddReceivers(2);
  Run();
  ASSERT_EQ(Served().size(), 2u);
  mails.operations.clear();
  Settings("DROP TABLE Settings_RepReceiver");
  Run();
  EXPECT_EQ(mails.operations, Lines{}) << "nor do those of the run before get a mail";
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_MailReports"});
}

TEST_F(MailRun, AReceiverWhoseMailIsNotSentDoesNotKeepTheOthers) {
  Settings("UPDATE Settings_SmtpServer SET Retries = 1");
  AddReceivers(3);
  mails.statuses = {0, 1, 1, 0};
  Run();
  EXPECT_EQ(Served(), (Lines{"R1", "R2", "R2", "R3"}));
  EXPECT_EQ(site.Events(), Lines{"2\tmodMail_SendMailSMTP\tError Sending Mail"});
}

TEST_F(MailRun, AMailThatFailsDoesNotKeepTheOthers) {
  AddReceivers(3);
  AtFirstSend([] { throw std::runtime_error("it broke"); });
  Run();
  EXPECT_EQ(Served(), (Lines{"R1", "R2", "R3"}));
  EXPECT_EQ(site.Events(), Lines{"1\tmodMail_SendMailSMTP\tit broke"});
}

TEST_F(MailRun, WithoutAMailServerEachMailIsReported) {
  Settings("DELETE FROM Settings_SmtpServer");
  AddReceivers(2);
  Run();
  EXPECT_EQ(EventHeads(), Lines(2, "1\tmodMail_SendMailSMTP"));
  EXPECT_EQ(Served(), Lines{});
}

TEST_F(MailRun, TheReceiverBehindAMailThatFailedIsServed) {
  Settings("UPDATE Settings_SmtpServer SET Subject = NULL");
  AddReceivers(3);
  site.Once([this] { return !site.Events().empty(); },
            [this] { Settings("UPDATE Settings_SmtpServer SET Subject = 'again'"); });
  Run();
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"});
  EXPECT_EQ(Served(), (Lines{"R2", "R3"}));
  EXPECT_EQ(Operations("SetSubject"), (Lines{"SetSubject again", "SetSubject again"}));
}

TEST_F(MailRun, WhoIsServedIsSettledBeforeTheFirstMail) {
  AddReceivers(2);
  BetweenMails([this] {
    Settings("DELETE FROM Settings_RepReceiver;" + InsertReceiver({{"Name", "'late'"}}));
    site.clock.Set("2024-06-01 12:00:00");
  });
  Run();
  EXPECT_EQ(Served(), (Lines{"R1", "R2"}));
}

TEST_F(MailRun, RequestsAreAnsweredBetweenTwoMails) {
  AddReceivers(2);
  const auto client = site.Connect();
  std::string answer;
  std::size_t sent = 0;
  AtFirstSend([&] {
    client->Send(Site::Request(""));
    mails.onSend = [&] {
      answer = client->ReceivedNow();
      sent = Served().size();
    };
  });
  Run();
  EXPECT_EQ(sent, 2u);
  EXPECT_EQ(answer, DefaultResponse(site.render));
}

TEST_F(MailRun, NamesAndAddressesReachTheMailAsTheyAreStored) {
  AddReceiver({{"Name", "'Łucja Müller'"}, {"Recipient", "'müller@bücher.example'"}});
  Run();
  EXPECT_EQ(Operations("AddRecipient"),
            Lines{"AddRecipient Łucja Müller <müller@bücher.example> 1"});
}

TEST_F(MailRun, AStopInTheWaitAfterAMailEndsTheRun) {
  AddReceivers(3);
  BetweenMails([this] { site.loop.Quit(); });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_EQ(Served(), Lines{"R1"});
  EXPECT_EQ(mails.operations.back(), "dropped");
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailRun, AStopWhileAMailIsOnItsWayEndsTheRun) {
  AddReceivers(3);
  AtFirstSend([this] {
    site.loop.Quit();
    site.loop.DelayMs(10);
  });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_EQ(Served(), Lines{"R1"});
  EXPECT_EQ(mails.operations.back(), "dropped");
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailRun, AStopWhileAPageIsBuiltEndsTheRun) {
  AddReceiver(With(kTwoReports, PortReport(11, 4, true)));
  site.loop.Post([this] { site.loop.Quit(); });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_EQ(mails.operations, Lines{});
  EXPECT_EQ(MailFiles(), (Lines{kVolumes, kErrors})) << "whole, and no part of the next one";
  EXPECT_EQ(Mailed(kErrors), ListPage("trunk", "OutErrorsTot24H"));
  EXPECT_EQ(site.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
