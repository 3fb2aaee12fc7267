// Transfers of mails over real sockets, to servers that follow a script.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "mail/smtp_transfer.h"
#include "support/scripted_smtp_server.h"
#include "support/standard_error.h"

namespace quillon {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Steady = std::chrono::steady_clock;

inline const std::string kSender = "reports@example.com";
inline const std::string kReceiver = "operator@example.org";
inline const std::string kMail =
    "From: reports@example.com\r\nSubject: Daily reports\r\n\r\nOne line\r\nand another\r\n";

// Far more than the second that a transfer may take beyond its time limit: the machine may be busy.
// A limit that begins anew at each byte or command, or a default, lasts longer by far.
inline constexpr auto kBeyondTheLimit = seconds(5);

inline SmtpScript With(SmtpPoint point, const SmtpAnswer& answer) {
  SmtpScript script;
  if (point == SmtpPoint::kHelo) {
    script.answers[SmtpPoint::kEhlo] = SmtpAnswer::Say("500 what\r\n");
  }
  if (point == SmtpPoint::kStartTls) script.offers = {"STARTTLS"};
  if (point == SmtpPoint::kAuth || point == SmtpPoint::kLogin) script.offers = {"AUTH LOGIN"};
  script.answers[point] = answer;
  return script;
}

class SmtpTransferTest : public testing::Test {
 protected:
  int Send(const std::string& mail = kMail) {
    std::optional<int> status;
    told = StandardErrorOf([&] { status = SendMail(loop, server, kSender, kReceiver, mail); });
    return status.value();
  }

  int SendTo(const ScriptedSmtpServer& to, const std::string& mail = kMail) {
    server.port = to.port();
    return Send(mail);
  }

  // Not sent, and why stands in one line.
  void ExpectFailure(const std::string& what) {
    const int status = Send();
    EXPECT_NE(status, 0) << what;
    EXPECT_TRUE(IsOneLine(told)) << what << " gave " << testing::PrintToString(told);
  }

  void ExpectFailureAt(const ScriptedSmtpServer& to, const std::string& what) {
    server.port = to.port();
    ExpectFailure(what);
  }

  void LogIn(bool onlyAuthLogin, const std::string& account = "account",
             const std::string& password = "secret") {
    server.login = SmtpLogin{onlyAuthLogin, account, password};
  }

  SystemClock clock;
  EventLoop loop{clock};
  SmtpServer server{"127.0.0.1", 0, 20, std::nullopt};
  std::string told;  // on standard error by the last transfer
};

}  // namespace quillon
