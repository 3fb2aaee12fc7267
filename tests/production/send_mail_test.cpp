// One mail: what is asked of it, in which order, and what becomes of one that does not go out.
#include "production/send_mail.h"

#include <stdexcept>

#include "platform/failure.h"
#include "production/mail_fixture.h"
#include "support/other_writer.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

const std::string kSignature = "Quillon Network Reporting\r\nhttps://quillon.example/";

// A mail that cannot attach or save anything.
class PoorSmtp : public RecordingSmtp {
 public:
  using RecordingSmtp::RecordingSmtp;
  bool AddAttachment(const std::string& path, int type) override {
    return !RecordingSmtp::AddAttachment(path, type);
  }
  bool SaveMailFile(const std::string& path) override { return !RecordingSmtp::SaveMailFile(path); }
};

class SendMail : public MailTest {
 protected:
  SendMail() { Set("Retries = 0"); }

  void Set(const std::string& assignments) const {
    Settings("UPDATE Settings_SmtpServer SET " + assignments);
  }
  // Sends Anna a mail of these reports, all others being "None".
  void Send(const Lines& reports, const std::string& portReport, bool attachReport,
            bool includeUrl) {
    Rows<std::string, 5> five;
    five.Fill("None");
    for (std::size_t place = 0; place < reports.size(); ++place) {
      five[static_cast<long>(place) + 1] = reports[place];
    }
    SendMailSMTP(production, "Anna", "anna@example.org", five, portReport, attachReport,
                 includeUrl);
  }
  void SendSignature() { Send({}, "None", false, false); }

  std::string Body() const {
    const Lines bodies = Operations("SetBodyText ");
    return bodies.size() == 1 ? bodies[0].substr(12) : "not one body";
  }
  Lines Attachments() const {
    Lines paths;
    for (const std::string& line : Operations("AddAttachment ")) paths.push_back(line.substr(14));
    return paths;
  }
  std::size_t Attempts() const { return Operations("SendMessage").size(); }
  std::chrono::milliseconds Slept() const { return site.clock.slept(); }
};

TEST_F(SendMail, TheOperationsComeInTheirOrder) {
  Set("MailServer = 'mail.example.org', MailPort = 587, FromAddr = 'reports@example.org',"
      " Subject = 'Reports of today', Priority = 'High', CharSet = 'UTF-8', TimeOut = 45,"
      " UseAuth = TRUE, AuthMode = 'AUTH LOGIN', Account = 'postman', Pass = 'secret word',"
      " Encoding = 3, BodyEncoding = 4, BodyFormat = 5");
  site.settings.DebugMode = true;
  ListenAt("192.0.2.10", 8080);
  Send({"a.htm"}, "None", true, true);
  EXPECT_EQ(mails.operations,
            (Lines{"new",
                   "SetMailServer mail.example.org",
                   "SetMailPort 587",
                   "SetFrom reports@example.org",
                   "SetSubject Reports of today",
                   "SetPriority High",
                   "SetCharSet UTF-8",
                   "SetTimeOut 45",
                   "SetAuthMode 1",
                   "SetAccount postman",
                   "SetPassword secret word",
                   "SetEncoding 3",
                   "SetBodyEncoding 4",
                   "SetBodyFormat 5",
                   "AddRecipient Anna <anna@example.org> 1",
                   "AddAttachment " + PathOfPage("a.htm") + " 0",
                   "AddAttachment " + PathOfStylesheet() + " 0",
                   "SetBodyText http://192.0.2.10:8080/a.htm\r\n\r\n" + kSignature,
                   "SaveMailFile " + site.installation.path() + "/Debug/SendMailSMTP.txt",
                   "SendMessage",
                   "dropped"}));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(SendMail, WithoutAuthenticationNothingIsSaidOfIt) {
  Set("UseAuth = FALSE, AuthMode = NULL, Account = NULL, Pass = NULL");
  SendSignature();
  EXPECT_EQ(mails.operations,
            (Lines{"new", "SetMailServer 127.0.0.1", "SetMailPort 25", "SetFrom quillon@localhost",
                   "SetSubject Quillon Network Report", "SetPriority Normal",
                   "SetCharSet ISO-8859-1", "SetTimeOut 30", "SetEncoding 0", "SetBodyEncoding 0",
                   "SetBodyFormat 0", "AddRecipient Anna <anna@example.org> 1",
                   "SetBodyText " + kSignature, "SendMessage", "dropped"}));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(SendMail, OnlyAuthLoginIsTheFirstMode) {
  const struct {
    const char* stored;
    const char* mode;
  } kCases[] = {{"AUTH LOGIN", "1"}, {"auth login", "2"},  {"Auth Login", "2"}, {"LOGIN", "2"},
                {"AUTH PLAIN", "2"}, {"AUTH LOGIN ", "2"}, {"", "2"},           {"CRAM-MD5", "2"}};
  for (const auto& row : kCases) {
    mails.operations.clear();
    Set("UseAuth = TRUE, AuthMode = '" + std::string(row.stored) + "'");
    SendSignature();
    EXPECT_EQ(Operations("SetAuthMode"), Lines{std::string("SetAuthMode ") + row.mode})
        << row.stored;
  }
}

TEST_F(SendMail, TextsOfTheMailAreDatabaseText) {
  Set("FromAddr = 'zürich@example.org', Subject = 'Übersicht für Łódź', UseAuth = TRUE,"
      " Account = 'jürgen', Pass = 'schlüssel'");
  Rows<std::string, 5> none;
  none.Fill("None");
  SendMailSMTP(production, "Łucja Müller", "müller@bücher.example", none, "None", false, false);
  EXPECT_EQ(Operations("SetFrom"), Lines{"SetFrom zürich@example.org"});
  EXPECT_EQ(Operations("SetSubject"), Lines{"SetSubject Übersicht für Łódź"});
  EXPECT_EQ(Operations("SetAccount"), Lines{"SetAccount jürgen"});
  EXPECT_EQ(Operations("SetPassword"), Lines{"SetPassword schlüssel"});
  EXPECT_EQ(Operations("AddRecipient"),
            Lines{"AddRecipient Łucja Müller <müller@bücher.example> 1"});
}

TEST_F(SendMail, OfSeveralRowsTheFirstCounts) {
  Settings(
      "INSERT INTO Settings_SmtpServer SELECT * FROM Settings_SmtpServer;"
      "UPDATE Settings_SmtpServer SET MailServer = 'second' WHERE rowid = 2;");
  SendSignature();
  EXPECT_EQ(Operations("SetMailServer"), Lines{"SetMailServer 127.0.0.1"});
}

TEST_F(SendMail, EachMailReadsTheSettingsAnew) {
  SendSignature();
  Set("MailServer = 'other'");
  SendSignature();
  EXPECT_EQ(Operations("SetMailServer"), (Lines{"SetMailServer 127.0.0.1", "SetMailServer other"}));
}

TEST_F(SendMail, PagesAreAttachedInTheirOrderAndTheStylesheetLast) {
  Send({"e.htm", "d.htm", "c.htm", "b.htm", "a.htm"}, "hist45-1-2.htm", true, false);
  EXPECT_EQ(Attachments(), (Lines{PathOfPage("e.htm") + " 0", PathOfPage("d.htm") + " 0",
                                  PathOfPage("c.htm") + " 0", PathOfPage("b.htm") + " 0",
                                  PathOfPage("a.htm") + " 0", PathOfPage("hist45-1-2.htm") + " 0",
                                  PathOfStylesheet() + " 0"}));
}

TEST_F(SendMail, WhatIsNoneIsNotAttached) {
  Send({"None", "b.htm", "None", "d.htm", "None"}, "None", true, false);
  EXPECT_EQ(Attachments(), (Lines{PathOfPage("b.htm") + " 0", PathOfPage("d.htm") + " 0",
                                  PathOfStylesheet() + " 0"}));
}

TEST_F(SendMail, ThePortPageMayComeAlone) {
  ListenAt("192.0.2.10", 8080);
  Send({}, "hist45-1-2.htm", true, true);
  EXPECT_EQ(Attachments(), (Lines{PathOfPage("hist45-1-2.htm") + " 0", PathOfStylesheet() + " 0"}));
  EXPECT_EQ(Body(), "http://192.0.2.10:8080/hist45-1-2.htm\r\n\r\n" + kSignature);
}

TEST_F(SendMail, WithoutAnyPageTheStylesheetComesAlone) {
  Send({}, "None", true, true);
  EXPECT_EQ(Attachments(), Lines{PathOfStylesheet() + " 0"});
  EXPECT_EQ(Body(), kSignature);
}

TEST_F(SendMail, EveryPageHasItsLinkAboveTheSignature) {
  ListenAt("reports.example.org", 8088);
  Send({"a.htm", "None", "c.htm", "c.htm"}, "hist45-1-2.htm", true, true);
  EXPECT_EQ(Body(),
            "http://reports.example.org:8088/a.htm\r\n"
            "\r\n"
            "http://reports.example.org:8088/c.htm\r\n"
            "\r\n"
            "http://reports.example.org:8088/c.htm\r\n"
            "\r\n"
            "http://reports.example.org:8088/hist45-1-2.htm\r\n"
            "\r\n"
            "Quillon Network Reporting\r\n"
            "https://quillon.example/");
}

TEST_F(SendMail, ThePort80IsNotTold) {
  ListenAt("192.0.2.10", 80);
  Send({"a.htm"}, "None", true, true);
  EXPECT_EQ(Body(), "http://192.0.2.10/a.htm\r\n\r\n" + kSignature);
}

TEST_F(SendMail, OtherPortsAreTold) {
  for (const int port : {8080, 8, 800, 180, 443, 65535}) {
    mails.operations.clear();
    ListenAt("192.0.2.10", port);
    Send({"a.htm"}, "None", true, true);
    EXPECT_EQ(Body(), "http://192.0.2.10:" + std::to_string(port) + "/a.htm\r\n\r\n" + kSignature);
  }
}

TEST_F(SendMail, TheLinksAreThoseOfTheOpenListener) {
  const std::string port = std::to_string(site.tcpServer.LocalPort());
  Send({"a.htm"}, "None", true, true);
  EXPECT_EQ(Body(), "http://127.0.0.1:" + port + "/a.htm\r\n\r\n" + kSignature);
}

TEST_F(SendMail, WithoutLinksTheBodyIsTheSignature) {
  Send({"a.htm"}, "hist45-1-2.htm", true, false);
  EXPECT_EQ(Body(), kSignature);
  EXPECT_EQ(Attachments().size(), 3u);
}

TEST_F(SendMail, WithoutAttachmentsThereAreNoLinksEither) {
  Send({"a.htm"}, "hist45-1-2.htm", false, true);
  EXPECT_EQ(Body(), kSignature);
  EXPECT_EQ(Attachments(), Lines{});
  EXPECT_EQ(Attempts(), 1u);
}

TEST_F(SendMail, APageThatCannotBeAttachedKeepsItsLinkAndTheMailGoesOut) {
  production.newSmtp = [this] { return std::make_unique<PoorSmtp>(mails); };
  site.settings.DebugMode = true;
  ListenAt("192.0.2.10", 80);
  Send({"gone.htm", "b.htm"}, "None", true, true);
  EXPECT_EQ(Attachments().size(), 3u);
  EXPECT_EQ(Body(),
            "http://192.0.2.10/gone.htm\r\n\r\nhttp://192.0.2.10/b.htm\r\n\r\n" + kSignature);
  EXPECT_EQ(Attempts(), 1u);
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(SendMail, TheMessageIsSavedOnceBeforeItsFirstAttempt) {
  site.settings.DebugMode = true;
  Set("Retries = 2");
  mails.statuses = {1, 1, 0};
  SendSignature();
  const Lines& all = mails.operations;
  ASSERT_GE(all.size(), 6u);
  const std::string path = site.installation.path() + "/Debug/SendMailSMTP.txt";
  EXPECT_EQ(Lines(all.end() - 6, all.end()),
            (Lines{"SetBodyText " + kSignature, "SaveMailFile " + path, "SendMessage",
                   "SendMessage", "SendMessage", "dropped"}));
}

TEST_F(SendMail, WithoutDebugModeTheMessageIsNotSaved) {
  SendSignature();
  EXPECT_EQ(Operations("SaveMailFile"), Lines{});
}

TEST_F(SendMail, RetriesAreAttemptsAfterTheFirst) {
  const struct {
    int retries;
    std::vector<int> statuses;
    std::size_t attempts;
    bool sent;
  } kCases[] = {
      {0, {}, 1, true},          {0, {1}, 1, false},       {1, {1}, 2, true},
      {1, {1, 1}, 2, false},     {2, {}, 1, true},         {2, {1}, 2, true},
      {2, {-1, 5}, 3, true},     {2, {1, 2, 3}, 3, false}, {5, {1, 1, 1, 1, 1}, 6, true},
      {2, {1, 1, -1}, 3, false},
  };
  for (const auto& row : kCases) {
    mails.operations.clear();
    site.ForgetEvents();
    Set("Retries = " + std::to_string(row.retries));
    mails.statuses = row.statuses;
    SendSignature();
    EXPECT_EQ(Attempts(), row.attempts) << row.retries;
    EXPECT_EQ(site.Events(),
              row.sent ? Lines{} : Lines{"2\tmodMail_SendMailSMTP\tError Sending Mail"})
        << row.retries;
    EXPECT_EQ(Operations("new").size(), 1u) << "one object for all attempts";
    EXPECT_EQ(Operations("SetBodyText").size(), 1u);
  }
}

// Nobody has got the mail then, and the operator is told so.
TEST_F(SendMail, NegativeRetriesAreNoAttemptAndAMailThatWasNotSent) {
  Set("Retries = -1");
  SendSignature();
  EXPECT_EQ(Attempts(), 0u);
  EXPECT_EQ(site.Events(), Lines{"2\tmodMail_SendMailSMTP\tError Sending Mail"});
  EXPECT_EQ(Slept(), std::chrono::milliseconds(1500));
}

TEST_F(SendMail, ASecondPassesAfterAMailWithoutItsObject) {
  std::chrono::milliseconds dropped{-1};
  mails.onSend = [&] {
    site.Once([this] { return !Operations("dropped").empty(); }, [&] { dropped = Slept(); });
  };
  SendSignature();
  EXPECT_EQ(Slept(), std::chrono::milliseconds(1000));
  EXPECT_EQ(dropped, std::chrono::milliseconds(10)) << "before the first events of the wait";
}

TEST_F(SendMail, AMailThatIsNotSentIsReportedBeforeItsObjectGoes) {
  mails.statuses = {1};
  std::chrono::milliseconds dropped{-1};
  mails.onSend = [&] {
    site.Once([this] { return !Operations("dropped").empty(); }, [&] { dropped = Slept(); });
  };
  SendSignature();
  EXPECT_EQ(Slept(), std::chrono::milliseconds(500 + 1000));
  EXPECT_EQ(dropped, std::chrono::milliseconds(510));
}

TEST_F(SendMail, ASentMailIsNoEvent) {
  SendSignature();
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(SendMail, TheSettingsAreClosedWhileTheMailIsOnItsWay) {
  std::vector<bool> alone;
  mails.onCall = [&](const std::string& line) {
    if (line == "SendMessage" || line.starts_with("SetBodyText")) {
      alone.push_back(OtherWriter::IsAlone(site.installation.path() + "/Quillon.mdb"));
    }
  };
  SendSignature();
  EXPECT_EQ(alone, (std::vector<bool>{true, true}));
}

TEST_F(SendMail, WithoutARowNothingIsSentAndThatIsReported) {
  Settings("DELETE FROM Settings_SmtpServer");
  SendSignature();
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"});
  EXPECT_EQ(Attempts(), 0u);
  EXPECT_EQ(mails.operations.back(), "dropped");
}

TEST_F(SendMail, ANullIsReportedAndNothingIsSent) {
  for (const char* field : {"MailServer", "MailPort", "FromAddr", "Subject", "Priority", "CharSet",
                            "TimeOut", "Retries", "UseAuth", "AuthMode", "Account", "Pass",
                            "Encoding", "BodyEncoding", "BodyFormat"}) {
    Settings("CREATE TABLE Kept AS SELECT * FROM Settings_SmtpServer;");
    Set("UseAuth = TRUE");
    Set(std::string(field) + " = NULL");
    mails.operations.clear();
    site.ForgetEvents();
    SendSignature();
    EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"}) << field;
    EXPECT_TRUE(Holds(site.installation.Read("Debug/AppEventWeb.txt"), field)) << field;
    EXPECT_EQ(Attempts(), 0u) << field;
    EXPECT_EQ(Operations("dropped").size(), Operations("new").size()) << field;
    Settings(
        "DELETE FROM Settings_SmtpServer;"
        "INSERT INTO Settings_SmtpServer SELECT * FROM Kept; DROP TABLE Kept;");
  }
}

TEST_F(SendMail, ANumberBeyondItsRangeIsReported) {
  for (const char* field : {"MailPort", "TimeOut", "Encoding", "BodyEncoding", "BodyFormat"}) {
    Set(std::string(field) + " = 3000000000");
    site.ForgetEvents();
    SendSignature();
    EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"}) << field;
    Set(std::string(field) + " = 1");
  }
  EXPECT_EQ(Attempts(), 0u);
}

TEST_F(SendMail, WithoutItsTableOrItsFileTheMailIsReported) {
  Settings("DROP TABLE Settings_SmtpServer");
  SendSignature();
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"});
  site.ForgetEvents();
  site.installation.Remove("Quillon.mdb");
  SendSignature();
  EXPECT_EQ(EventHeads(), Lines{"1\tmodMail_SendMailSMTP"});
  EXPECT_EQ(Attempts(), 0u);
}

TEST_F(SendMail, AMailThatCannotBeMadeIsReported) {
  production.newSmtp = []() -> std::unique_ptr<Smtp> { throw std::runtime_error("no mail today"); };
  SendSignature();
  EXPECT_EQ(site.Events(), Lines{"1\tmodMail_SendMailSMTP\tno mail today"});
}

TEST_F(SendMail, AFailureInAnyOperationIsReportedAndEndsTheMail) {
  Set("UseAuth = TRUE, Retries = 2");
  site.settings.DebugMode = true;
  Send({"a.htm"}, "None", true, true);
  const Lines all = mails.operations;
  ASSERT_EQ(all.size(), 21u);
  for (std::size_t failing = 1; failing + 1 < all.size(); ++failing) {
    mails.operations.clear();
    site.ForgetEvents();
    mails.onCall = [&](const std::string& line) {
      if (line == all[failing]) throw FileFailure("it broke");
    };
    Send({"a.htm"}, "None", true, true);
    EXPECT_EQ(site.Events(), Lines{"1\tmodMail_SendMailSMTP\tit broke"}) << all[failing];
    EXPECT_EQ(Operations("SendMessage"), Lines{}) << all[failing];
    EXPECT_EQ(mails.operations.back(), "dropped") << all[failing];
  }
}

TEST_F(SendMail, AFailureHasTheHalfSecondOfItsEventAlone) {
  Settings("DELETE FROM Settings_SmtpServer");
  SendSignature();
  EXPECT_EQ(Slept(), std::chrono::milliseconds(500));
}

TEST_F(SendMail, RequestsAreAnsweredInTheWaitAfterAMail) {
  const auto client = site.Connect();
  mails.onSend = [&] { client->Send(Site::Request("")); };
  SendSignature();
  EXPECT_EQ(client->ReceivedNow(), DefaultResponse(site.render));
}

TEST_F(SendMail, AStopInTheWaitEndsTheMailAsItStands) {
  mails.onSend = [&] { site.loop.Post([this] { site.loop.Quit(); }); };
  EXPECT_THROW(SendSignature(), LoopEnded);
  EXPECT_EQ(Slept(), std::chrono::milliseconds(10));
  EXPECT_EQ(mails.operations.back(), "dropped");
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(SendMail, AStopWhileTheMailIsOnItsWayIsNoFailureAndNotTriedAgain) {
  Set("Retries = 2");
  mails.onSend = [&] {
    site.loop.Quit();
    site.loop.DelayMs(10);
  };
  EXPECT_THROW(SendSignature(), LoopEnded);
  EXPECT_EQ(Attempts(), 1u);
  EXPECT_EQ(mails.operations.back(), "dropped");
  EXPECT_EQ(site.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
