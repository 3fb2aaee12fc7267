// quillonctl test-mail: one mail to a real server, and what is said where it does not arrive.
#include "support/mail_reader.h"
#include "support/scripted_smtp_server.h"
#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlTestMail : public Quillonctl {
 protected:
  QuillonctlTestMail() { CreateWhole(); }

  void Set(const std::string& assignments) const {
    Sql("Quillon.mdb", "UPDATE Settings_SmtpServer SET " + assignments);
  }
  Outcome SendTo(std::int32_t port, const std::string& address = "ann@example.org") const {
    Set("MailPort = " + std::to_string(port));
    return Run("test-mail '" + address + "'");
  }
  // What went wrong, told in front of the last line.
  void ExpectNotSent(const Outcome& outcome, const std::string& reason) const {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.error.find(reason), std::string::npos) << outcome.error;
    EXPECT_TRUE(outcome.error.ends_with("\nquillonctl: the test mail was not sent\n"))
        << outcome.error;
  }
};

TEST_F(QuillonctlTestMail, MailIsMadeByTheSettings) {
  ScriptedSmtpServer server;
  Set("FromAddr = 'Quillon <reports@example.org>', Subject = 'Täglich', Priority = 'High'");
  const Outcome outcome = SendTo(server.port());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.out,
            "sent to ann@example.org by server 127.0.0.1:" + std::to_string(server.port()) + "\n");
  ASSERT_EQ(server.Sessions().size(), 1U);
  const MailPart mail(server.Sessions()[0].mail.value());
  EXPECT_EQ(AddressOf(mail.Field("from")), "reports@example.org");
  EXPECT_EQ(AddressOf(mail.Field("to")), "ann@example.org");
  EXPECT_EQ(mail.FieldText("subject"), "Täglich");
  EXPECT_EQ(mail.Field("x-priority"), "2");
  EXPECT_EQ(mail.Decoded(),
            "This is a test of Quillon Web's mail settings. Report mails reach you in the same"
            " way.\r\n\r\nQuillon Network Reporting\r\nhttps://quillon.example/\r\n");
}

TEST_F(QuillonctlTestMail, LoginIsThatOfTheSettings) {
  ScriptedSmtpServer server(Offering("AUTH LOGIN PLAIN"));
  Set("UseAuth = TRUE, AuthMode = 'AUTH LOGIN', Account = 'postman', Pass = 'secret word'");
  EXPECT_EQ(SendTo(server.port()).status, 0);
  EXPECT_EQ(server.Sessions().at(0).CommandsLike("AUTH LOGIN").size(), 1U);
}

TEST_F(QuillonctlTestMail, WhatTheServerSaysIsTold) {
  ScriptedSmtpServer server(Answering(SmtpPoint::kRecipient, "550 5.1.1 nobody of that name\r\n"));
  ExpectNotSent(SendTo(server.port()), "the server answered '550 5.1.1 nobody of that name'");
}

TEST_F(QuillonctlTestMail, OneAttemptIsMadeWhateverTheSettingsAllow) {
  ScriptedSmtpServer server(Answering(SmtpPoint::kMail, "451 later\r\n"));
  Set("Retries = 3");
  ExpectNotSent(SendTo(server.port()), "451 later");
  EXPECT_EQ(server.Sessions().size(), 1U);
}

TEST_F(QuillonctlTestMail, NegativeRetriesDoNotKeepItBack) {
  ScriptedSmtpServer server;
  Set("Retries = -1");
  EXPECT_EQ(SendTo(server.port()).status, 0);
}

TEST_F(QuillonctlTestMail, ServerThatIsNotThereIsTold) {
  const std::int32_t port = ClosedPort();
  ExpectNotSent(SendTo(port),
                "mail to ann@example.org by 127.0.0.1:" + std::to_string(port) + " was not sent: ");
}

TEST_F(QuillonctlTestMail, SilentServerIsWaitedForAsLongAsTimeOut) {
  SmtpScript script;
  script.answers[SmtpPoint::kGreeting] = SmtpAnswer::Hang();
  ScriptedSmtpServer server(script);
  Set("TimeOut = 1");
  ExpectNotSent(SendTo(server.port()), "the server took longer than TimeOut");
}

TEST_F(QuillonctlTestMail, NoAddressIsRefusedBeforeTheServerIsAsked) {
  ScriptedSmtpServer server;
  const Outcome outcome = SendTo(server.port(), "ann");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error,
            "quillonctl: 'ann' is not one mail address; write one such as noc@example.org\n");
  EXPECT_TRUE(server.Sessions().empty());
}

TEST_F(QuillonctlTestMail, SettingsThatCannotBeReadAreTold) {
  Set("FromAddr = NULL");
  const Outcome null = Run("test-mail ann@example.org");
  EXPECT_EQ(null.status, 1);
  EXPECT_NE(null.error.find("FromAddr"), std::string::npos) << null.error;
  Sql("Quillon.mdb", "DELETE FROM Settings_SmtpServer");
  const Outcome missing = Run("test-mail ann@example.org");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.error, "quillonctl: Quillon.mdb: Settings_SmtpServer has no row\n");
}

TEST_F(QuillonctlTestMail, NothingButTheMailIsLeftBehind) {
  Sql("Quillon.mdb", "UPDATE Settings_General SET DebugMode = TRUE");
  ScriptedSmtpServer server;
  EXPECT_EQ(SendTo(server.port()).status, 0);
  EXPECT_TRUE(fs::is_empty(home_ / "Debug"));
}

}  // namespace
}  // namespace quillon
