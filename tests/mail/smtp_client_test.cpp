// The operations of a mail, from its settings to the server that takes it.
#include "mail/smtp_client.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/mail_reader.h"
#include "support/open_descriptors.h"
#include "support/scripted_smtp_server.h"
#include "support/standard_error.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

using namespace std::string_literals;

class SmtpClientTest : public testing::Test {
 protected:
  // All that a mail needs, in the order in which the report mails set it.
  void Prepare(Smtp& mail, const ScriptedSmtpServer& server) {
    mail.SetMailServer("127.0.0.1");
    mail.SetMailPort(server.port());
    mail.SetFrom("reports@example.com");
    mail.SetSubject("Daily reports");
    mail.SetPriority("3");
    mail.SetCharSet("ISO-8859-1");
    mail.SetTimeOut(20);
    mail.SetEncoding(0);
    mail.SetBodyEncoding(0);
    mail.SetBodyFormat(0);
    mail.AddRecipient("Operator", "operator@example.org", Smtp::kToRecipient);
  }

  std::string WriteFile(const std::string& name, const std::string& bytes) const {
    const std::string path = folder.path() + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  static std::string ReadFile(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
  }

  std::string SavedFile() const { return folder.path() + "/saved.txt"; }

  // The status; what is told stands in `told`.
  int Send(Smtp& mail) {
    std::optional<int> status;
    told = StandardErrorOf([&] { status = mail.SendMessage(); });
    return status.value();
  }

  // Not sent, and why stands in one line.
  void ExpectNotSent(Smtp& mail, const std::string& what) {
    EXPECT_NE(Send(mail), Smtp::kSent) << what;
    EXPECT_TRUE(IsOneLine(told)) << what << " gave " << testing::PrintToString(told);
  }

  TemporaryFolder folder;
  SystemClock clock;
  EventLoop loop{clock};
  SmtpClient client{loop};
  std::string told;
};

TEST_F(SmtpClientTest, MailArrivesAsItWasSet) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.SetPriority("High");
  client.SetSubject("T\u00E4gliche Berichte");
  EXPECT_TRUE(client.AddAttachment(WriteFile("a.htm", "<html>\r\n\xE4\n.\r\n"), 0));
  EXPECT_TRUE(client.AddAttachment(WriteFile("qws.css", "body {}"), 0));
  client.SetBodyText("Gr\u00F6\u00DFe\r\n.\r\nend");
  EXPECT_EQ(Send(client), Smtp::kSent);
  EXPECT_EQ(told, "");

  ASSERT_EQ(server.Sessions().size(), 1U);
  const SmtpSession& session = server.Sessions()[0];
  EXPECT_EQ(session.CommandsLike("MAIL FROM:<reports@example.com>").size(), 1U);
  EXPECT_EQ(session.CommandsLike("RCPT"),
            std::vector<std::string>{"RCPT TO:<operator@example.org>"});
  const MailPart mail(session.mail.value_or(""));
  EXPECT_EQ(AddressOf(mail.Field("From")), "reports@example.com");
  EXPECT_EQ(NameOf(mail.Field("To")), "Operator");
  EXPECT_EQ(AddressOf(mail.Field("To")), "operator@example.org");
  EXPECT_EQ(mail.FieldText("Subject"), "T\u00E4gliche Berichte");
  EXPECT_EQ(mail.Field("X-Priority"), "2");
  const std::vector<MailPart> parts = mail.Parts();
  ASSERT_EQ(parts.size(), 3U);
  EXPECT_EQ(InLowerCase(parts[0].Parameter("charset")), "iso-8859-1");
  EXPECT_EQ(parts[0].Decoded(), "Gr\xF6\xDF"s + "e\r\n.\r\nend");
  EXPECT_EQ(parts[1].Parameter("filename", "Content-Disposition"), "a.htm");
  EXPECT_EQ(parts[1].Decoded(), "<html>\r\n\xE4\n.\r\n");
  EXPECT_EQ(parts[2].Parameter("filename", "Content-Disposition"), "qws.css");
  EXPECT_EQ(parts[2].Decoded(), "body {}");
}

TEST_F(SmtpClientTest, CodesReachTheMail) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.SetBodyEncoding(2);
  client.SetBodyFormat(1);
  client.SetBodyText("text");
  EXPECT_EQ(Send(client), Smtp::kSent);
  const MailPart mail(server.Sessions().at(0).mail.value_or(""));
  EXPECT_EQ(mail.Type(), "multipart/alternative");
  for (const MailPart& part : mail.Parts()) EXPECT_EQ(part.Encoding(), "base64");
}

TEST_F(SmtpClientTest, SavedFileIsTheMailThatIsSent) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.AddAttachment(WriteFile("a.htm", "page"), 0);
  client.SetBodyText("text \u00FC\r\n.\r\n");
  EXPECT_TRUE(client.SaveMailFile(SavedFile()));
  EXPECT_EQ(Send(client), Smtp::kSent);
  EXPECT_EQ(server.Sessions().at(0).mail, ReadFile(SavedFile()));
}

TEST_F(SmtpClientTest, SavedFileReplacesTheOneBefore) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.SetBodyText("text");
  WriteFile("saved.txt", std::string(100'000, 'x'));
  EXPECT_TRUE(client.SaveMailFile(SavedFile()));
  EXPECT_EQ(MailPart(ReadFile(SavedFile())).Field("Subject"), "Daily reports");
  EXPECT_EQ(ReadFile(SavedFile()).find(std::string(20, 'x')), std::string::npos);
}

TEST_F(SmtpClientTest, FileThatCannotBeSavedIsToldAndTheMailGoesAllTheSame) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.SetBodyText("text");
  for (const std::string& path : {folder.path() + "/none/saved.txt", folder.path()}) {
    bool saved = true;
    const std::string line = StandardErrorOf([&] { saved = client.SaveMailFile(path); });
    EXPECT_FALSE(saved);
    EXPECT_TRUE(IsOneLine(line)) << testing::PrintToString(line);
  }
  EXPECT_EQ(Send(client), Smtp::kSent);
}

TEST_F(SmtpClientTest, EachAttemptIsAConnectionWithTheSameMail) {
  ScriptedSmtpServer server({Answering(SmtpPoint::kRecipient, "450 later\r\n"),
                             Answering(SmtpPoint::kTextEnd, "451 later\r\n"), SmtpScript{},
                             SmtpScript{}});
  Prepare(client, server);
  client.SetBodyText("text");
  ExpectNotSent(client, "receiver refused");
  ExpectNotSent(client, "mail refused");
  EXPECT_EQ(Send(client), Smtp::kSent);
  EXPECT_EQ(Send(client), Smtp::kSent);
  const std::vector<SmtpSession>& sessions = server.Sessions();
  ASSERT_EQ(sessions.size(), 4U);
  EXPECT_EQ(sessions[0].mail, std::nullopt);
  ASSERT_TRUE(sessions[1].mail.has_value());
  EXPECT_EQ(sessions[2].mail, sessions[1].mail);
  EXPECT_EQ(sessions[3].mail, sessions[1].mail);
}

TEST_F(SmtpClientTest, TwoMailsHaveIdsOfTheirOwn) {
  ScriptedSmtpServer server;
  SmtpClient second(loop);
  for (SmtpClient* mail : {&client, &second}) {
    Prepare(*mail, server);
    EXPECT_EQ(Send(*mail), Smtp::kSent);
  }
  ASSERT_EQ(server.Sessions().size(), 2U);
  EXPECT_NE(MailPart(server.Sessions()[0].mail.value_or("")).Field("Message-ID"),
            MailPart(server.Sessions()[1].mail.value_or("")).Field("Message-ID"));
}

TEST_F(SmtpClientTest, AttachmentIsTheFileAsItWas) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  EXPECT_TRUE(client.AddAttachment(WriteFile("a.htm", "first"), 0));
  EXPECT_TRUE(client.AddAttachment(WriteFile("b.htm", "second"), 0));
  WriteFile("a.htm", "changed");
  std::filesystem::remove(folder.path() + "/b.htm");
  EXPECT_EQ(Send(client), Smtp::kSent);
  const std::vector<MailPart> parts = MailPart(server.Sessions().at(0).mail.value_or("")).Parts();
  ASSERT_EQ(parts.size(), 3U);
  EXPECT_EQ(parts[1].Decoded(), "first");
  EXPECT_EQ(parts[2].Decoded(), "second");
}

TEST_F(SmtpClientTest, MailGoesWithoutAFileThatIsMissing) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  EXPECT_FALSE(client.AddAttachment(folder.path() + "/none.htm", 0));
  EXPECT_FALSE(client.AddAttachment(folder.path() + "/none/a.htm", 0));
  EXPECT_FALSE(client.AddAttachment(folder.path(), 0));
  EXPECT_TRUE(client.AddAttachment(WriteFile("a.htm", ""), 0));
  EXPECT_EQ(Send(client), Smtp::kSent);
  const std::vector<MailPart> parts = MailPart(server.Sessions().at(0).mail.value_or("")).Parts();
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(parts[1].Parameter("filename", "Content-Disposition"), "a.htm");
  EXPECT_EQ(parts[1].Decoded(), "");
}

TEST_F(SmtpClientTest, EnvelopeHoldsBareAddresses) {
  ScriptedSmtpServer server;
  Prepare(client, server);
  client.SetFrom("Quillon Reports <reports@mail.example.com>");
  EXPECT_EQ(Send(client), Smtp::kSent);
  EXPECT_EQ(server.Sessions().at(0).CommandsLike("MAIL FROM:<reports@mail.example.com>").size(),
            1U);
}

TEST_F(SmtpClientTest, AddressOfTheReceiverMayHaveBrackets) {
  for (const std::string address : {"<operator@example.org>", "Boss <operator@example.org>"}) {
    ScriptedSmtpServer server;
    SmtpClient mail(loop);
    Prepare(mail, server);
    mail.AddRecipient("Operator", address, Smtp::kToRecipient);
    EXPECT_EQ(Send(mail), Smtp::kSent) << told;
    const SmtpSession& session = server.Sessions().at(0);
    EXPECT_EQ(session.CommandsLike("RCPT"),
              std::vector<std::string>{"RCPT TO:<operator@example.org>"});
    EXPECT_EQ(AddressOf(MailPart(session.mail.value_or("")).Field("To")), "operator@example.org");
  }
}

TEST_F(SmtpClientTest, AddressThatIsNoneMakesNoConnection) {
  ScriptedSmtpServer server;
  for (const std::string& address :
       {""s, "operator"s, "@example.org"s, "operator@"s, "a@b, c@d"s, "a b@c"s,
        "a@b>\r\nRCPT TO:<c@d"s, "a@b\r\nDATA"s, "Name <>"s}) {
    SmtpClient from(loop);
    Prepare(from, server);
    from.SetFrom(address);
    ExpectNotSent(from, "from " + testing::PrintToString(address));
    SmtpClient to(loop);
    Prepare(to, server);
    to.AddRecipient("Operator", address, Smtp::kToRecipient);
    ExpectNotSent(to, "to " + testing::PrintToString(address));
  }
  EXPECT_TRUE(server.Sessions().empty());
}

TEST_F(SmtpClientTest, MailOfWhichNothingIsSetIsNotSent) {
  ExpectNotSent(client, "empty mail");
}

TEST_F(SmtpClientTest, NobodyLogsInUnlessAskedTo) {
  ScriptedSmtpServer server(Offering("AUTH LOGIN PLAIN"));
  Prepare(client, server);
  EXPECT_EQ(Send(client), Smtp::kSent);
  EXPECT_EQ(server.Sessions().at(0).CommandsLike("AUTH"), std::vector<std::string>{});
}

class SmtpClientLoginTest : public SmtpClientTest {
 protected:
  void PrepareLogin(const ScriptedSmtpServer& server, int mode) {
    Prepare(client, server);
    client.SetAuthMode(mode);
    client.SetAccount("M\u00FCller");
    client.SetPassword("p@ss w\u00F6rd");
  }
};

TEST_F(SmtpClientLoginTest, ModeOneIsAuthLogin) {
  ScriptedSmtpServer server(Offering("AUTH PLAIN LOGIN CRAM-MD5"));
  PrepareLogin(server, Smtp::kAuthLogin);
  EXPECT_EQ(Send(client), Smtp::kSent) << told;
  const std::vector<std::string>& commands = server.Sessions().at(0).commands;
  const auto command = std::find(commands.begin(), commands.end(), "AUTH LOGIN");
  ASSERT_GE(commands.end() - command, 3);
  EXPECT_EQ(DecodedBase64(command[1]), "M\u00FCller");
  EXPECT_EQ(DecodedBase64(command[2]), "p@ss w\u00F6rd");
}

TEST_F(SmtpClientLoginTest, ModeOneIsNothingElse) {
  ScriptedSmtpServer server(Offering("AUTH PLAIN"));
  PrepareLogin(server, Smtp::kAuthLogin);
  ExpectNotSent(client, "AUTH PLAIN alone");
  EXPECT_EQ(server.Sessions().at(0).CommandsLike("MAIL"), std::vector<std::string>{});
}

TEST_F(SmtpClientLoginTest, ModeTwoIsWhatTheServerOffers) {
  ScriptedSmtpServer server(Offering("AUTH PLAIN"));
  PrepareLogin(server, Smtp::kAuthOther);
  EXPECT_EQ(Send(client), Smtp::kSent) << told;
  EXPECT_EQ(server.Sessions().at(0).CommandsLike("AUTH PLAIN").size(), 1U);
  EXPECT_TRUE(server.Sessions().at(0).mail.has_value());
}

TEST_F(SmtpClientTest, ServerAndPortAndTimeAreThoseThatWereSet) {
  SmtpScript silence;
  silence.answers[SmtpPoint::kGreeting] = SmtpAnswer::Hang();
  ScriptedSmtpServer silent(silence);
  Prepare(client, silent);
  client.SetTimeOut(1);
  const auto begin = std::chrono::steady_clock::now();
  ExpectNotSent(client, "silent server");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));

  client.SetMailServer("no-such-host.invalid");
  ExpectNotSent(client, "unknown name");
  client.SetMailServer("127.0.0.1");
  client.SetMailPort(ClosedPort());
  ExpectNotSent(client, "closed port");
  ScriptedSmtpServer taker;
  client.SetMailPort(taker.port());
  EXPECT_EQ(Send(client), Smtp::kSent) << told;
}

TEST_F(SmtpClientTest, LeavesNoDescriptorOpen) {
  const std::string page = WriteFile("a.htm", "page");
  const std::size_t before = OpenDescriptors();
  {
    ScriptedSmtpServer server;
    for (int i = 0; i < 10; ++i) {
      SmtpClient mail(loop);
      Prepare(mail, server);
      mail.AddAttachment(page, 0);
      mail.AddAttachment(page + ".none", 0);
      mail.SaveMailFile(SavedFile());
      EXPECT_EQ(Send(mail), Smtp::kSent);
    }
    EXPECT_EQ(server.Sessions().size(), 10U);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace quillon
