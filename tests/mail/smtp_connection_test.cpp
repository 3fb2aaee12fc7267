// Logging in and encrypting, and what the service calls itself.
#include "mail/smtp_connection.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "mail/host_name.h"
#include "mail/smtp_fixture.h"
#include "support/environment.h"
#include "support/mail_reader.h"

namespace quillon {
namespace {

using namespace std::string_literals;

class SmtpConnectionTest : public SmtpTransferTest {};

// ---- logging in

TEST_F(SmtpConnectionTest, NobodyLogsInWithoutAnAccount) {
  ScriptedSmtpServer taker(Offering("AUTH LOGIN PLAIN CRAM-MD5"));
  EXPECT_EQ(SendTo(taker), 0);
  EXPECT_EQ(taker.Sessions().at(0).CommandsLike("AUTH"), std::vector<std::string>{});
  EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
}

// Account and password that AUTH LOGIN has told.
void ExpectAuthLogin(const SmtpSession& session, const std::string& account,
                     const std::string& password) {
  const auto found = std::find_if(
      session.commands.begin(), session.commands.end(),
      [](const std::string& command) { return command.compare(0, 10, "AUTH LOGIN") == 0; });
  ASSERT_NE(found, session.commands.end());
  std::vector<std::string> told(found + 1, session.commands.end());
  // The account may stand behind the command already.
  if (found->size() > 10) told.insert(told.begin(), found->substr(11));
  ASSERT_GE(told.size(), 2U);
  EXPECT_EQ(DecodedBase64(told[0]), account);
  EXPECT_EQ(DecodedBase64(told[1]), password);
  EXPECT_TRUE(session.mail.has_value());
}

TEST_F(SmtpConnectionTest, LogsInByAuthLogin) {
  LogIn(true);
  ScriptedSmtpServer taker(Offering("AUTH LOGIN"));
  EXPECT_EQ(SendTo(taker), 0) << told;
  ExpectAuthLogin(taker.Sessions().at(0), "account", "secret");
}

TEST_F(SmtpConnectionTest, OnlyAuthLoginTakesItFromAmongOthers) {
  LogIn(true);
  for (const std::string offer : {"AUTH PLAIN LOGIN", "AUTH CRAM-MD5 DIGEST-MD5 PLAIN LOGIN"}) {
    ScriptedSmtpServer taker(Offering(offer));
    EXPECT_EQ(SendTo(taker), 0) << told;
    ExpectAuthLogin(taker.Sessions().at(0), "account", "secret");
    EXPECT_EQ(taker.Sessions().at(0).CommandsLike("AUTH").size(), 1U);
  }
}

TEST_F(SmtpConnectionTest, OnlyAuthLoginSendsNothingWhereItIsNotOffered) {
  LogIn(true);
  for (const std::string offer : {"AUTH PLAIN", "AUTH CRAM-MD5 PLAIN"}) {
    ScriptedSmtpServer taker(Offering(offer));
    ExpectFailureAt(taker, offer);
    const SmtpSession& session = taker.Sessions().at(0);
    EXPECT_EQ(session.CommandsLike("AUTH"), std::vector<std::string>{});
    EXPECT_EQ(session.CommandsLike("MAIL"), std::vector<std::string>{});
  }
}

TEST_F(SmtpConnectionTest, OtherwiseLogsInByWhatIsOffered) {
  LogIn(false);
  ScriptedSmtpServer plain(Offering("AUTH PLAIN"));
  EXPECT_EQ(SendTo(plain), 0) << told;
  const SmtpSession& session = plain.Sessions().at(0);
  const auto found = session.CommandsLike("AUTH PLAIN");
  ASSERT_EQ(found.size(), 1U);
  const auto command = std::find(session.commands.begin(), session.commands.end(), found[0]);
  EXPECT_EQ(DecodedBase64(found[0].size() > 10 ? found[0].substr(11) : *(command + 1)),
            "\0account\0secret"s);
  EXPECT_EQ(session.mail, kMail);

  ScriptedSmtpServer login(Offering("AUTH LOGIN"));
  EXPECT_EQ(SendTo(login), 0) << told;
  ExpectAuthLogin(login.Sessions().at(0), "account", "secret");
}

// The challenge, and the answer to it, are the example of RFC 2195.
TEST_F(SmtpConnectionTest, OtherwiseTheBestMechanismThatIsOfferedKeepsThePasswordBack) {
  LogIn(false, "tim", "tanstaaftanstaaf");
  ScriptedSmtpServer taker(Offering("AUTH PLAIN LOGIN CRAM-MD5"));
  EXPECT_EQ(SendTo(taker), 0) << told;
  EXPECT_EQ(taker.Sessions().at(0).CommandsLike("AUTH"), std::vector<std::string>{"AUTH CRAM-MD5"});
  EXPECT_EQ(taker.Sessions().at(0).CommandsLike("dGlt"),
            std::vector<std::string>{"dGltIGI5MTNhNjAyYzdlZGE3YTQ5NWI0ZTZlNzMzNGQzODkw"});
  EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
}

TEST_F(SmtpConnectionTest, AccountAndPasswordAreTakenAsTheyAre) {
  for (const auto& [account, password] :
       {std::pair{"user@example.com"s, "p@ss/w:rd?#%41;AUTH=PLAIN"s}, std::pair{"DOM\\user"s, " "s},
        std::pair{"user;AUTH=PLAIN"s, "\"quotes\" & blanks "s},
        std::pair{"M\u00FCller"s, "Gr\u00F6\u00DFe \u20AC"s},
        std::pair{std::string(200, 'u'), std::string(200, 'p')}}) {
    LogIn(true, account, password);
    ScriptedSmtpServer taker(Offering("AUTH LOGIN PLAIN"));
    EXPECT_EQ(SendTo(taker), 0) << told;
    ExpectAuthLogin(taker.Sessions().at(0), account, password);
  }
}

TEST_F(SmtpConnectionTest, WrongPasswordSendsNothingAndIsNotTold) {
  for (const bool onlyAuthLogin : {true, false}) {
    LogIn(onlyAuthLogin, "account", "Tr0ub4dor");
    ScriptedSmtpServer strict(With(SmtpPoint::kLogin, SmtpAnswer::Say("535 wrong password\r\n")));
    ExpectFailureAt(strict, "wrong password");
    EXPECT_EQ(told.find("Tr0ub4dor"), std::string::npos) << told;
    EXPECT_EQ(strict.Sessions().at(0).CommandsLike("MAIL"), std::vector<std::string>{});
  }
}

// ---- encryption

TEST_F(SmtpConnectionTest, EncryptsWhereTheServerOffersIt) {
  LogIn(true);
  SmtpScript script;
  script.offers = {"STARTTLS", "AUTH LOGIN"};
  // It knows no more about encryption than the word.
  script.answers[SmtpPoint::kStartTls] =
      SmtpAnswer::Say("220 go ahead\r\nand not a word of TLS\r\n");
  ScriptedSmtpServer pretender(script);
  ExpectFailureAt(pretender, "no encryption behind the offer");
  const SmtpSession& session = pretender.Sessions().at(0);
  EXPECT_EQ(session.CommandsLike("STARTTLS").size(), 1U);
  EXPECT_EQ(session.CommandsLike("AUTH"), std::vector<std::string>{});
  EXPECT_EQ(session.CommandsLike("MAIL"), std::vector<std::string>{});
}

// An offer that is taken back would bring the password over in clear text.
TEST_F(SmtpConnectionTest, RefusedEncryptionSendsNeitherPasswordNorMail) {
  LogIn(true);
  for (const std::string refusal : {"454 later\r\n", "501 what\r\n", "554-no\r\n554 never\r\n"}) {
    SmtpScript script;
    script.offers = {"AUTH LOGIN", "STARTTLS", "SIZE 1000000"};
    script.answers[SmtpPoint::kStartTls] = SmtpAnswer::Say(refusal);
    ScriptedSmtpServer refusing(script);
    ExpectFailureAt(refusing, refusal);
    EXPECT_NE(told.find("the server offers STARTTLS and refuses it"), std::string::npos) << told;
    const SmtpSession& session = refusing.Sessions().at(0);
    EXPECT_EQ(session.CommandsLike("AUTH"), std::vector<std::string>{});
    EXPECT_EQ(session.CommandsLike("MAIL"), std::vector<std::string>{});
  }
}

// Administrators know the variable from other programs.
TEST_F(SmtpConnectionTest, AuthoritiesAreThoseOfTheVariableWhereItIsSet) {
  const Environment environment({"SSL_CERT_FILE"});
  const std::string missing = "/nowhere/authorities.pem";
  for (const auto& file : {std::optional<std::string>(), std::optional(missing)}) {
    environment.Set("SSL_CERT_FILE", file);
    SmtpScript script;
    script.offers = {"STARTTLS"};
    // Byte by byte, so that encryption has begun when the second line comes.
    script.answers[SmtpPoint::kStartTls] =
        SmtpAnswer::Drip("220 go ahead\r\nno TLS\r\n", milliseconds(20));
    ScriptedSmtpServer pretender(script);
    ExpectFailureAt(pretender, "no encryption");
    EXPECT_EQ(told.find(missing) != std::string::npos, file.has_value()) << told;
  }
}

// They ask a directory, in the one thread, before they say a word.
TEST_F(SmtpConnectionTest, MechanismsOfADirectoryAreNotUsed) {
  LogIn(false, "user@example.com", "secret");
  ScriptedSmtpServer taker(Offering("AUTH GSSAPI NTLM DIGEST-MD5 PLAIN"));
  EXPECT_EQ(SendTo(taker), 0) << told;
  const auto found = taker.Sessions().at(0).CommandsLike("AUTH");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].substr(0, 10), "AUTH PLAIN");

  ScriptedSmtpServer other(Offering("AUTH GSSAPI NTLM"));
  ExpectFailureAt(other, "nothing else");
  EXPECT_EQ(other.Sessions().at(0).CommandsLike("AUTH"), std::vector<std::string>{});
}

TEST_F(SmtpConnectionTest, CallsItselfByTheNameOfTheMachine) {
  std::array<char, 256> name{};
  ASSERT_EQ(gethostname(name.data(), name.size() - 1), 0);
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0);
  EXPECT_EQ(taker.Sessions().at(0).CommandsLike("EHLO"),
            std::vector<std::string>{"EHLO "s + name.data()});
}

// Some servers take no mail from a short one.
TEST_F(SmtpConnectionTest, CallsItselfByTheFullNameOfTheMachineWhereItHasOne) {
  const HostName name("reports.example.net");
  if (!name.isOther()) GTEST_SKIP() << "this user may not name the machine";
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0);
  EXPECT_EQ(taker.Sessions().at(0).CommandsLike("EHLO"),
            std::vector<std::string>{"EHLO reports.example.net"});
}

TEST_F(SmtpConnectionTest, NameOfTheMachineThatIsNoneOfAHostIsNotPutIntoTheAddress) {
  const HostName name("reports.example/?#@x");
  if (!name.isOther()) GTEST_SKIP() << "this user may not name the machine";
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0) << told;
  const SmtpSession& session = taker.Sessions().at(0);
  EXPECT_EQ(session.CommandsLike("EHLO"), std::vector<std::string>{"EHLO reports"});
  EXPECT_EQ(session.mail, kMail);
}

// ---- lines

TEST_F(SmtpConnectionTest, LineOfAnAnswerMayEndInALineFeedAlone) {
  SmtpScript script;
  for (const SmtpPoint point : {SmtpPoint::kMail, SmtpPoint::kRecipient, SmtpPoint::kTextEnd}) {
    script.answers[point] = SmtpAnswer::Say("250-go\n250 on\n");
  }
  script.answers[SmtpPoint::kData] = SmtpAnswer::Say("354 go on\n");
  ScriptedSmtpServer unix(script);
  EXPECT_EQ(SendTo(unix), 0) << told;
  EXPECT_EQ(unix.Sessions().at(0).mail, kMail);

  ScriptedSmtpServer refusing(Answering(SmtpPoint::kRecipient, "550 nobody\n"));
  ExpectFailureAt(refusing, "refusal");
  EXPECT_NE(told.find("'550 nobody'"), std::string::npos) << told;
}

}  // namespace
}  // namespace quillon
