// Mails over real sockets to servers that take them, refuse them, or are no servers to speak of.
#include "mail/smtp_transfer.h"

#include <csignal>
#include <limits>

#include "mail/smtp_fixture.h"
#include "support/environment.h"
#include "support/mail_reader.h"
#include "support/open_descriptors.h"

namespace quillon {
namespace {

using namespace std::string_literals;

// ---- what arrives

TEST_F(SmtpTransferTest, MailArrives) {
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0);
  EXPECT_EQ(told, "");
  ASSERT_EQ(taker.Sessions().size(), 1U);
  EXPECT_EQ(taker.Sessions()[0].mail, kMail);
}

TEST_F(SmtpTransferTest, GreetsAndNamesSenderAndReceiver) {
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0);
  const SmtpSession& session = taker.Sessions().at(0);
  const auto greetings = session.CommandsLike("EHLO ");
  ASSERT_EQ(greetings.size(), 1U);
  EXPECT_GT(greetings[0].size(), 5U);
  const auto senders = session.CommandsLike("MAIL FROM:");
  ASSERT_EQ(senders.size(), 1U);
  EXPECT_EQ(senders[0].substr(0, senders[0].find('>') + 1), "MAIL FROM:<reports@example.com>");
  EXPECT_EQ(session.CommandsLike("RCPT"),
            std::vector<std::string>{"RCPT TO:<operator@example.org>"});
  EXPECT_EQ(session.CommandsLike("DATA").size(), 1U);
}

TEST_F(SmtpTransferTest, LinesThatBeginWithADotArriveAsTheyAre) {
  for (const std::string& mail :
       {".\r\n"s, "..\r\n"s, "a: b\r\n\r\n.\r\n"s, "a: b\r\n\r\n.\r\n.\r\nQUIT\r\n"s,
        "a: b\r\n\r\n..\r\n...\r\n.a\r\n.. b\r\n"s, "a: b\r\n\r\na.\r\n.\r\n\r\n.\r\n"s,
        ".a: b\r\n\r\n."s + "x\r\n"}) {
    ScriptedSmtpServer taker;
    EXPECT_EQ(SendTo(taker, mail), 0);
    EXPECT_EQ(taker.Sessions().at(0).mail, mail);
    EXPECT_TRUE(taker.Sessions().at(0).CommandsLike("QUIT").size() <= 1);
  }
}

// The dot that ends a mail stands on a line of its own.
TEST_F(SmtpTransferTest, LastLineWithoutAnEndGetsOne) {
  for (const std::string& mail : {"a: b\r\n\r\nx"s, "a: b\r\n\r\n."s, "a: b"s}) {
    ScriptedSmtpServer taker;
    EXPECT_EQ(SendTo(taker, mail), 0) << told;
    EXPECT_EQ(taker.Sessions().at(0).mail, mail + "\r\n");
  }
}

// Dots at every distance from one another, so that the ends of the pieces in which the text goes
// out fall on each side of them.
TEST_F(SmtpTransferTest, LargeMailFullOfDotsArrivesAsItIs) {
  std::string mail = "a: b\r\n\r\n";
  for (std::size_t i = 0; mail.size() < 3'000'000; ++i) {
    mail += "." + std::string(i % 77, '.') + std::to_string(i) + "\r\n" +
            (i % 5 == 0   ? ".\r\n"s
             : i % 7 == 0 ? "\r\n"s
                          : ""s);
  }
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker, mail), 0);
  EXPECT_TRUE(taker.Sessions().at(0).mail == mail);
}

TEST_F(SmtpTransferTest, EveryByteArrives) {
  std::string mail = "a: b\r\n\r\n";
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\r' && byte != '\n') mail += static_cast<char>(byte);
  }
  mail += "\r\n";
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker, mail), 0);
  EXPECT_EQ(taker.Sessions().at(0).mail, mail);
}

TEST_F(SmtpTransferTest, EachMailHasAConnectionOfItsOwn) {
  ScriptedSmtpServer taker;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(SendTo(taker, kMail + std::to_string(i) + "\r\n"), 0);
  ASSERT_EQ(taker.Sessions().size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(taker.Sessions()[i].mail, kMail + std::to_string(i) + "\r\n");
    EXPECT_EQ(taker.Sessions()[i].CommandsLike("MAIL").size(), 1U);
  }
}

TEST_F(SmtpTransferTest, ServerWithoutExtensionsIsGreetedTheOldWay) {
  SmtpScript script;
  script.answers[SmtpPoint::kEhlo] = SmtpAnswer::Say("502 no such command\r\n");
  ScriptedSmtpServer old(script);
  EXPECT_EQ(SendTo(old), 0);
  EXPECT_EQ(old.Sessions().at(0).CommandsLike("HELO ").size(), 1U);
  EXPECT_EQ(old.Sessions().at(0).mail, kMail);
}

TEST_F(SmtpTransferTest, AnswersMayHaveManyLines) {
  SmtpScript script;
  script.offers = {"SIZE 100000000", "8BITMIME", "PIPELINING", "ENHANCEDSTATUSCODES"};
  script.answers = {
      {SmtpPoint::kGreeting, SmtpAnswer::Say("220-server.example\r\n220-welcomes\r\n220 you\r\n")},
      {SmtpPoint::kMail, SmtpAnswer::Say("250-2.1.0\r\n250 ok\r\n")},
      {SmtpPoint::kRecipient, SmtpAnswer::Say("251-2.1.5\r\n251 will forward\r\n")},
      {SmtpPoint::kTextEnd, SmtpAnswer::Say("250-2.0.0\r\n250 queued\r\n")}};
  ScriptedSmtpServer talker(script);
  EXPECT_EQ(SendTo(talker), 0) << told;
  EXPECT_EQ(talker.Sessions().at(0).mail, kMail);
}

TEST_F(SmtpTransferTest, AnswersMayComeInPieces) {
  const auto pause = milliseconds(2);
  SmtpScript script;
  script.answers = {{SmtpPoint::kGreeting, SmtpAnswer::Drip("220 ready\r\n", pause)},
                    {SmtpPoint::kEhlo, SmtpAnswer::Drip("250-me\r\n250 8BITMIME\r\n", pause)},
                    {SmtpPoint::kData, SmtpAnswer::Drip("354 go on\r\n", pause)},
                    {SmtpPoint::kTextEnd, SmtpAnswer::Drip("250 taken\r\n", pause)}};
  ScriptedSmtpServer slow(script);
  EXPECT_EQ(SendTo(slow), 0) << told;
  EXPECT_EQ(slow.Sessions().at(0).mail, kMail);
}

TEST_F(SmtpTransferTest, HostMayBeAName) {
  for (const std::string name : {"localhost", "LOCALHOST"}) {
    server.host = name;
    ScriptedSmtpServer taker;
    EXPECT_EQ(SendTo(taker), 0) << told;
    EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
  }
}

TEST_F(SmtpTransferTest, HostMayBeAnAddressOfVersion6) {
  std::unique_ptr<ScriptedSmtpServer> taker;
  try {
    taker = std::make_unique<ScriptedSmtpServer>(SmtpScript{}, "::1");
  } catch (const std::runtime_error&) {
    GTEST_SKIP() << "the machine has no address of version 6";
  }
  server.host = "::1";
  EXPECT_EQ(SendTo(*taker), 0) << told;
  EXPECT_EQ(taker->Sessions().at(0).mail, kMail);
}

TEST_F(SmtpTransferTest, TimeLimitBelowOneIsAMinute) {
  for (const std::int32_t limit : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    server.timeOutSeconds = limit;
    ScriptedSmtpServer taker;
    EXPECT_EQ(SendTo(taker), 0) << limit << ": " << told;
    EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
  }
}

TEST_F(SmtpTransferTest, TimeLimitMayBeAsLargeAsItsTypeAllows) {
  server.timeOutSeconds = std::numeric_limits<std::int32_t>::max();
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0) << told;
  EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
}

// Where a mail goes stands in the settings and nowhere else.
TEST_F(SmtpTransferTest, ProxiesOfTheEnvironmentAreNotAsked) {
  const std::vector<std::string> names = {"all_proxy",  "ALL_PROXY",  "smtp_proxy", "SMTP_PROXY",
                                          "http_proxy", "HTTP_PROXY", "no_proxy",   "NO_PROXY"};
  const Environment environment(names);
  const std::string proxy = "http://127.0.0.1:" + std::to_string(ClosedPort());
  for (std::size_t i = 0; i < 6; ++i) environment.Set(names[i], proxy);
  ScriptedSmtpServer taker;
  EXPECT_EQ(SendTo(taker), 0) << told;
  EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
}

// ---- refusals

struct Point {
  SmtpPoint point;
  std::string name;
};

void PrintTo(const Point& point, std::ostream* out) {
  *out << point.name;
}

const std::vector<Point> kPointsBeforeTheMailIsTaken = {
    {SmtpPoint::kGreeting, "Greeting"}, {SmtpPoint::kEhlo, "Ehlo"},
    {SmtpPoint::kHelo, "Helo"},         {SmtpPoint::kStartTls, "StartTls"},
    {SmtpPoint::kAuth, "Auth"},         {SmtpPoint::kLogin, "Login"},
    {SmtpPoint::kMail, "Mail"},         {SmtpPoint::kRecipient, "Recipient"},
    {SmtpPoint::kData, "Data"},         {SmtpPoint::kText, "Text"},
    {SmtpPoint::kTextEnd, "TextEnd"}};

std::string NameOfPoint(const testing::TestParamInfo<Point>& info) {
  return info.param.name;
}

class SmtpPointTest : public SmtpTransferTest, public testing::WithParamInterface<Point> {
 protected:
  SmtpPointTest() {
    if (GetParam().point == SmtpPoint::kAuth || GetParam().point == SmtpPoint::kLogin) LogIn(true);
  }
};

class SmtpRefusalTest : public SmtpPointTest {};

TEST_P(SmtpRefusalTest, LeavesTheMailUnsent) {
  for (const std::string answer :
       {"421 not now\r\n", "554 never\r\n", "554-never\r\n554 ever\r\n"}) {
    ScriptedSmtpServer refuser(With(GetParam().point, SmtpAnswer::Say(answer)));
    ExpectFailureAt(refuser, answer);
    // What is refused once is not tried again on its own, nor on another connection.
    ASSERT_EQ(refuser.Sessions().size(), 1U);
    if (GetParam().point != SmtpPoint::kTextEnd) {
      EXPECT_EQ(refuser.Sessions()[0].mail, std::nullopt);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    At, SmtpRefusalTest,
    testing::Values(Point{SmtpPoint::kGreeting, "Greeting"}, Point{SmtpPoint::kHelo, "Helo"},
                    Point{SmtpPoint::kAuth, "Auth"}, Point{SmtpPoint::kLogin, "Login"},
                    Point{SmtpPoint::kMail, "Mail"}, Point{SmtpPoint::kRecipient, "Recipient"},
                    Point{SmtpPoint::kData, "Data"}, Point{SmtpPoint::kTextEnd, "TextEnd"}),
    NameOfPoint);

class SmtpHangUpTest : public SmtpPointTest {};

TEST_P(SmtpHangUpTest, LeavesTheMailUnsent) {
  ScriptedSmtpServer quitter(With(GetParam().point, SmtpAnswer::Close()));
  const auto begin = Steady::now();
  ExpectFailureAt(quitter, GetParam().name);
  // The time limit, which is longer, has nothing to do with it.
  EXPECT_LT(Steady::now() - begin, seconds(15));
}

INSTANTIATE_TEST_SUITE_P(At, SmtpHangUpTest, testing::ValuesIn(kPointsBeforeTheMailIsTaken),
                         NameOfPoint);

TEST_F(SmtpTransferTest, FarewellIsSaidAfterARefusalToo) {
  for (const SmtpPoint point :
       {SmtpPoint::kMail, SmtpPoint::kRecipient, SmtpPoint::kData, SmtpPoint::kTextEnd}) {
    ScriptedSmtpServer refusing(With(point, SmtpAnswer::Say("550 no\r\n")));
    ExpectFailureAt(refusing, "refusal");
    EXPECT_NE(told.find("the server answered '550 no'"), std::string::npos) << told;
    EXPECT_EQ(refusing.Sessions().at(0).commands.back(), "QUIT");
  }
}

TEST_F(SmtpTransferTest, FirstDigitOfAnAnswerDecides) {
  for (const SmtpPoint point : {SmtpPoint::kMail, SmtpPoint::kRecipient, SmtpPoint::kTextEnd}) {
    ScriptedSmtpServer taker(With(point, SmtpAnswer::Say("252 as you like\r\n")));
    EXPECT_EQ(SendTo(taker), 0) << told;
    EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
  }
}

TEST_F(SmtpTransferTest, AnswerMayBeACodeAlone) {
  SmtpScript script;
  for (const SmtpPoint point : {SmtpPoint::kMail, SmtpPoint::kRecipient, SmtpPoint::kTextEnd}) {
    script.answers[point] = SmtpAnswer::Say("250\r\n");
  }
  script.answers[SmtpPoint::kData] = SmtpAnswer::Say("354\r\n");
  ScriptedSmtpServer terse(script);
  EXPECT_EQ(SendTo(terse), 0) << told;
  EXPECT_EQ(terse.Sessions().at(0).mail, kMail);
  for (const std::string answer : {"550\r\n", "5\r\n", "\r\n", "-\r\n"}) {
    ScriptedSmtpServer refusing(With(SmtpPoint::kRecipient, SmtpAnswer::Say(answer)));
    ExpectFailureAt(refusing, answer);
    EXPECT_EQ(refusing.Sessions().at(0).mail, std::nullopt);
  }
}

TEST_F(SmtpTransferTest, RefusalOfTheFarewellChangesNothing) {
  for (const SmtpAnswer& answer : {SmtpAnswer::Say("421 not now\r\n"),
                                   SmtpAnswer::Say("554 never\r\n"), SmtpAnswer::Close()}) {
    ScriptedSmtpServer rude(With(SmtpPoint::kQuit, answer));
    EXPECT_EQ(SendTo(rude), 0) << told;
    EXPECT_EQ(told, "");
    EXPECT_EQ(rude.Sessions().at(0).mail, kMail);
  }
}

TEST_F(SmtpTransferTest, PortWhereNobodyListensFails) {
  server.port = ClosedPort();
  ExpectFailure("closed port");
}

TEST_F(SmtpTransferTest, UnknownNameFails) {
  server.host = "no-such-host.invalid";
  server.port = 25;
  ExpectFailure("unknown name");
}

TEST_F(SmtpTransferTest, PortThatIsNoneFails) {
  for (const std::int32_t port : {0, -1, 65'536, 70'000, std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int32_t>::max()}) {
    server.port = port;
    ExpectFailure(std::to_string(port));
  }
}

// Only its low 16 bits are the port of a server that would take the mail.
TEST_F(SmtpTransferTest, PortBeyondTheRangeIsNotCutDown) {
  ScriptedSmtpServer taker;
  server.port = taker.port() + 65'536;
  ExpectFailure("port and 65536");
  EXPECT_TRUE(taker.Sessions().empty());
}

// Each would lead to a server that takes the mail, were it taken for a part of an URL.
TEST_F(SmtpTransferTest, HostThatIsNoneFailsWithoutAConnection) {
  ScriptedSmtpServer taker;
  const std::string port = std::to_string(taker.port());
  server.port = taker.port();
  for (const std::string& host : {""s,
                                  " "s,
                                  "127.0.0.1 x"s,
                                  "x 127.0.0.1"s,
                                  "/"s,
                                  "127.0.0.1/"s,
                                  "127.0.0.1/x"s,
                                  "127.0.0.1\\x"s,
                                  "127.0.0.1?x"s,
                                  "127.0.0.1#x"s,
                                  "x@127.0.0.1"s,
                                  "x:y@127.0.0.1"s,
                                  "127.0.0.1:" + port,
                                  "127.0.0.1:" + port + "/",
                                  "127.0.0.1:" + port + "#",
                                  "smtp://127.0.0.1"s,
                                  "127.0.0.1\r\n"s,
                                  "127.0.0.1\n"s,
                                  "127.0.0.1\0x"s,
                                  "[127.0.0.1]"s,
                                  "127.0.0.1,x"s,
                                  "%31"s,
                                  "file:///etc/passwd"s}) {
    server.host = host;
    ExpectFailure(testing::PrintToString(host));
  }
  EXPECT_TRUE(taker.Sessions().empty());
}

// ---- servers that let wait

class SmtpHangTest : public SmtpTransferTest {
 protected:
  SmtpHangTest() { server.timeOutSeconds = 1; }

  // Fails, at the time limit and not before, while the events of the loop run.
  void ExpectEndAtTheLimit(const std::string& mail = kMail) {
    int ticks = 0;
    int posted = 0;
    const auto timer = loop.Every(milliseconds(10), [&] { ++ticks; });
    loop.Post([&] { ++posted; });
    const auto begin = Steady::now();
    const int status = Send(mail);
    const auto lasted = Steady::now() - begin;
    EXPECT_NE(status, 0);
    EXPECT_TRUE(IsOneLine(told)) << testing::PrintToString(told);
    EXPECT_GE(lasted, milliseconds(900));
    EXPECT_LT(lasted, seconds(1) + kBeyondTheLimit);
    EXPECT_GE(ticks, 20);  // of a hundred
    EXPECT_EQ(posted, 1);
  }

  void ExpectEndAtTheLimit(const ScriptedSmtpServer& at, const std::string& mail = kMail) {
    server.port = at.port();
    ExpectEndAtTheLimit(mail);
  }
};

class SmtpHangAtPointTest : public SmtpHangTest, public testing::WithParamInterface<Point> {};

TEST_P(SmtpHangAtPointTest, EndsAtTheTimeLimitWhileEventsRun) {
  if (GetParam().point == SmtpPoint::kAuth || GetParam().point == SmtpPoint::kLogin) LogIn(true);
  ScriptedSmtpServer silent(With(GetParam().point, SmtpAnswer::Hang()));
  // More than the sockets between hold back, so that a server that reads nothing is felt.
  std::string mail = kMail;
  if (GetParam().point == SmtpPoint::kText) {
    for (int i = 0; i < 500'000; ++i) mail += std::string(78, 'x') + "\r\n";
  }
  ExpectEndAtTheLimit(silent, mail);
}

INSTANTIATE_TEST_SUITE_P(At, SmtpHangAtPointTest, testing::ValuesIn(kPointsBeforeTheMailIsTaken),
                         NameOfPoint);

TEST_F(SmtpHangTest, ConnectionThatDoesNotComeEndsAtTheTimeLimit) {
  const FullPort full;
  server.port = full.port();
  ExpectEndAtTheLimit();
}

// The limit is one for all of it, and does not begin anew with each byte.
TEST_F(SmtpHangTest, DrippingServerEndsAtTheTimeLimit) {
  for (const SmtpPoint point : {SmtpPoint::kGreeting, SmtpPoint::kEhlo, SmtpPoint::kTextEnd}) {
    ScriptedSmtpServer dripping(
        With(point, SmtpAnswer::Drip("220" + std::string(200, '-') + "\r\n", milliseconds(100))));
    ExpectEndAtTheLimit(dripping);
  }
}

TEST_F(SmtpHangTest, LimitIsForAllCommandsTogether) {
  SmtpScript script;
  for (const SmtpPoint point :
       {SmtpPoint::kGreeting, SmtpPoint::kEhlo, SmtpPoint::kMail, SmtpPoint::kRecipient}) {
    const std::string code = point == SmtpPoint::kGreeting ? "220" : "250";
    script.answers[point] = SmtpAnswer::Drip(code + " ok\r\n", milliseconds(80));
  }
  ScriptedSmtpServer slow(script);
  ExpectEndAtTheLimit(slow);
}

// A server that never comes to the end of its answer, and one that never ends the line.
TEST_F(SmtpHangTest, FloodOfAnswersEndsAtTheTimeLimitAtTheLatest) {
  std::string lines;
  for (int i = 0; i < 10'000; ++i) lines += "250-and\r\n";
  for (const std::string& flood : {lines, std::string(100'000, 'x')}) {
    for (const SmtpPoint point : {SmtpPoint::kGreeting, SmtpPoint::kEhlo, SmtpPoint::kMail,
                                  SmtpPoint::kData, SmtpPoint::kTextEnd}) {
      ScriptedSmtpServer babbler(With(point, SmtpAnswer::Flood(flood)));
      server.port = babbler.port();
      const auto begin = Steady::now();
      const std::string what =
          flood.substr(0, 7) + " at " + std::to_string(static_cast<int>(point));
      ExpectFailure(what);
      EXPECT_LT(Steady::now() - begin, seconds(1) + kBeyondTheLimit) << what;
    }
  }
}

TEST_F(SmtpHangTest, SilenceAtTheFarewellHoldsNothingUp) {
  server.timeOutSeconds = 20;
  ScriptedSmtpServer silent(With(SmtpPoint::kQuit, SmtpAnswer::Hang()));
  int ticks = 0;
  std::optional<Steady::time_point> last;
  Steady::duration longest{0};
  const auto timer = loop.Every(milliseconds(10), [&] {
    const auto now = Steady::now();
    if (last) longest = std::max(longest, now - *last);
    last = now;
    ++ticks;
  });
  loop.DelayMs(50);
  const auto begin = Steady::now();
  EXPECT_EQ(SendTo(silent), 0) << told;
  EXPECT_EQ(told, "");
  EXPECT_LT(Steady::now() - begin, seconds(15));
  loop.DelayMs(50);
  EXPECT_GE(ticks, 3);
  // A second would be felt by whoever asks for a page meanwhile.
  EXPECT_LT(longest, milliseconds(900));
  EXPECT_EQ(silent.Sessions().at(0).mail, kMail);
}

// ---- the loop

TEST_F(SmtpTransferTest, MailMayBeSentWhileAnotherOneIsOnItsWay) {
  ScriptedSmtpServer silent(With(SmtpPoint::kGreeting, SmtpAnswer::Hang()));
  ScriptedSmtpServer taker;
  SmtpServer other = server;
  other.port = taker.port();
  std::optional<int> nested;
  loop.Post([&] { nested = SendMail(loop, other, kSender, kReceiver, kMail); });
  server.timeOutSeconds = 1;
  EXPECT_NE(SendTo(silent), 0);
  EXPECT_EQ(nested, 0);
  EXPECT_EQ(taker.Sessions().at(0).mail, kMail);
}

// Within a wait the end of the loop is thrown.
TEST_F(SmtpTransferTest, EndOfTheServiceEndsTheTransfer) {
  const std::size_t before = OpenDescriptors();
  {
    ScriptedSmtpServer silent(With(SmtpPoint::kGreeting, SmtpAnswer::Hang()));
    server.port = silent.port();
    bool ended = false;
    const auto begin = Steady::now();
    loop.Post([&] {
      try {
        SendMail(loop, server, kSender, kReceiver, kMail);
      } catch (const LoopEnded&) {
        ended = true;
        throw;
      }
    });
    loop.Post([&] { loop.Quit(); });
    loop.Run();
    EXPECT_TRUE(ended);
    EXPECT_LT(Steady::now() - begin, seconds(15));
    EXPECT_EQ(silent.Sessions().size(), 1U);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

// ---- what is left behind

// The time of the machine, but shorter sleeps: it is not the waiting that is of interest here.
class HastyClock : public SystemClock {
 public:
  void Sleep(milliseconds) override { SystemClock::Sleep(milliseconds(1)); }
};

TEST_F(SmtpTransferTest, MailsLeaveNoDescriptorOpen) {
  HastyClock hasty;
  EventLoop hurried(hasty);
  const auto send = [&](const SmtpServer& to) {
    return SendMail(hurried, to, kSender, kReceiver, kMail);
  };
  SmtpServer closed = server;
  closed.port = ClosedPort();
  StandardErrorOf([&] { send(closed); });  // what is opened once and for all
  const std::size_t before = OpenDescriptors();
  {
    ScriptedSmtpServer taker;
    ScriptedSmtpServer refuser(With(SmtpPoint::kRecipient, SmtpAnswer::Say("550 no\r\n")));
    SmtpServer taking = server;
    taking.port = taker.port();
    SmtpServer refusing = server;
    refusing.port = refuser.port();
    int sent = 0;
    StandardErrorOf([&] {
      for (int i = 0; i < 200; ++i) {
        if (send(taking) == 0) ++sent;
        if (i % 4 == 0) send(refusing);
        if (i % 4 == 0) send(closed);
      }
    });
    EXPECT_EQ(sent, 200);
    EXPECT_EQ(taker.Sessions().size(), 200U);
    EXPECT_EQ(refuser.Sessions().size(), 50U);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(SmtpTransferTest, TransferThatRanOutOfTimeLeavesNoDescriptorOpen) {
  server.timeOutSeconds = 1;
  const std::size_t before = OpenDescriptors();
  {
    ScriptedSmtpServer silent(With(SmtpPoint::kData, SmtpAnswer::Hang()));
    EXPECT_NE(SendTo(silent), 0);
    EXPECT_EQ(silent.Sessions().size(), 1U);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

// A write to a server that has gone raises it where nobody prevents that.
TEST_F(SmtpTransferTest, BrokenPipeOfASocketRaisesNoSignal) {
  static volatile std::sig_atomic_t raised = 0;
  raised = 0;
  const auto before = std::signal(SIGPIPE, [](int) { raised = 1; });
  std::string mail = kMail;
  for (int i = 0; i < 100'000; ++i) mail += std::string(78, 'x') + "\r\n";
  ScriptedSmtpServer quitter(With(SmtpPoint::kText, SmtpAnswer::Close()));
  EXPECT_NE(SendTo(quitter, mail), 0);
  std::signal(SIGPIPE, before);
  EXPECT_EQ(raised, 0);
}

}  // namespace
}  // namespace quillon
