// The dialogue of one mail.
#include "mail/smtp_transfer.h"

#include <algorithm>

#include "mail/mail_message.h"
#include "mail/smtp_connection.h"
#include "platform/files.h"
#include "platform/smtp.h"
#include "platform/standard_error.h"

namespace quillon {
namespace {

constexpr int kNotSent = 1;
// Replies by the first digit of their codes: done, go on with the text.
constexpr char kDone = '2';
constexpr char kGoOn = '3';

// The envelope goes out as it stands here, and so can hold nothing but an ASCII address.
std::string EnvelopeAddress(const std::string& text, const std::string& whose) {
  std::string address = BareAddress(text);
  const bool isAscii =
      std::all_of(address.begin(), address.end(), [](char c) { return (c & 0x80) == 0; });
  if (address.empty() || !isAscii) throw SmtpFailure(whose + " is no mail address");
  return address;
}

// The last line of a reply, "250 OK": those before it have a dash behind their code. A server that
// never comes to the last one is left.
std::string ReadReply(SmtpConnection& connection) {
  constexpr std::size_t kCodeLength = 3;
  constexpr int kMostLines = 100;
  for (int lines = 0; lines < kMostLines; ++lines) {
    std::string line = connection.ReadLine();
    if (line.size() <= kCodeLength || line[kCodeLength] != '-') return line;
  }
  throw SmtpFailure("the server's answer has no end");
}

// Reads the reply to what was sent; SmtpRefusal with its text for one of another kind.
void Expect(SmtpConnection& connection, char kind) {
  const std::string reply = ReadReply(connection);
  if (!reply.starts_with(kind)) throw SmtpRefusal("the server answered '" + reply + "'");
}

// The mail as it goes over the line, with its end. A line that begins with a dot gets another one,
// since a dot alone ends the mail.
std::string Input(std::string_view mail) {
  std::string text;
  text.reserve(mail.size() + kLineEnd.size() * 2 + 1);
  if (mail.starts_with('.')) text += '.';
  for (std::size_t dot = 0; (dot = mail.find("\n.")) != std::string_view::npos;) {
    text.append(mail.substr(0, dot + 2)).append(".");
    mail.remove_prefix(dot + 2);
  }
  text += mail;
  if (!text.ends_with(kLineEnd)) text += kLineEnd;
  return text.append(".").append(kLineEnd);
}

void Transfer(SmtpConnection& connection, const std::string& sender, const std::string& recipient,
              std::string_view mail) {
  connection.Send("MAIL FROM:<" + sender + ">\r\n");
  Expect(connection, kDone);
  connection.Send("RCPT TO:<" + recipient + ">\r\n");
  Expect(connection, kDone);
  connection.Send("DATA\r\n");
  Expect(connection, kGoOn);
  connection.Send(Input(mail));
  Expect(connection, kDone);
}

// Whether the server has taken the mail or not, it may be gone by now.
void Leave(SmtpConnection& connection) {
  try {
    connection.Quit();
  } catch (const SmtpFailure&) {
  }
}

void TransferAndLeave(SmtpConnection& connection, const std::string& sender,
                      const std::string& recipient, std::string_view mail) {
  try {
    Transfer(connection, sender, recipient, mail);
  } catch (const SmtpRefusal&) {
    Leave(connection);
    throw;
  }
  Leave(connection);
}

}  // namespace

int SendMail(EventLoop& loop, const SmtpServer& server, const std::string& sender,
             const std::string& recipient, const std::string& mail) {
  try {
    const std::string from = EnvelopeAddress(sender, "the sender");
    const std::string to = EnvelopeAddress(recipient, "the recipient");
    SmtpConnection connection(loop, server);
    TransferAndLeave(connection, from, to, mail);
    return Smtp::kSent;
  } catch (const SmtpFailure& failure) {
    TellStandardError("mail to " + recipient + " by " + server.host + ":" +
                      std::to_string(server.port) + " was not sent: " + failure.what());
    return kNotSent;
  }
}

}  // namespace quillon
