// The mail as the service really sends it: composed by mail_message, sent by smtp_transfer.
#pragma once

#include <optional>
#include <string>

#include "mail/mail_message.h"
#include "mail/smtp_transfer.h"
#include "platform/event_loop.h"
#include "platform/smtp.h"

namespace quillon {

class SmtpClient : public Smtp {
 public:
  explicit SmtpClient(EventLoop& loop) : loop_(loop) {}

  void SetMailServer(const std::string& server) override { server_.host = server; }
  void SetMailPort(std::int32_t port) override { server_.port = port; }
  void SetFrom(const std::string& address) override { message_.from = address; }
  void SetSubject(const std::string& subject) override { message_.subject = subject; }
  void SetPriority(const std::string& priority) override { message_.priority = priority; }
  void SetCharSet(const std::string& charSet) override { message_.charSet = charSet; }
  void SetTimeOut(std::int32_t seconds) override { server_.timeOutSeconds = seconds; }
  void SetAuthMode(int mode) override;
  void SetAccount(const std::string& account) override;
  void SetPassword(const std::string& password) override;
  void SetEncoding(std::int32_t code) override { message_.encoding = code; }
  void SetBodyEncoding(std::int32_t code) override { message_.bodyEncoding = code; }
  void SetBodyFormat(std::int32_t code) override { message_.bodyFormat = code; }
  void AddRecipient(const std::string& name, const std::string& address, int type) override;
  bool AddAttachment(const std::string& path, int) override;
  void SetBodyText(const std::string& text) override { message_.body = text; }
  bool SaveMailFile(const std::string& path) override;
  int SendMessage() override;

 private:
  SmtpLogin& Login();
  const std::string& Composed();

  EventLoop& loop_;
  SmtpServer server_;
  MailMessage message_;
  std::optional<std::string> composed_;  // once, so that every attempt sends the same mail
};

}  // namespace quillon
