// A mail on its way: the operations that the report mails use, in the order in which they use them.
// One object is one mail. Texts are UTF-8. Nothing is judged before the mail is composed or sent.
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

class Smtp {
 public:
  // Status of a mail that the server has taken; any other one tells that it was not sent.
  static constexpr int kSent = 0;
  static constexpr int kAuthLogin = 1;  // AUTH LOGIN alone
  static constexpr int kAuthOther = 2;  // or CRAM-MD5 or PLAIN, the best one that the server offers
  static constexpr int kToRecipient = 1;

  virtual ~Smtp() = default;

  virtual void SetMailServer(const std::string& server) = 0;
  virtual void SetMailPort(std::int32_t port) = 0;
  virtual void SetFrom(const std::string& address) = 0;
  virtual void SetSubject(const std::string& subject) = 0;
  virtual void SetPriority(const std::string& priority) = 0;
  virtual void SetCharSet(const std::string& charSet) = 0;
  virtual void SetTimeOut(std::int32_t seconds) = 0;  // for one SendMessage

  // Without these three, nobody logs in.
  virtual void SetAuthMode(int mode) = 0;
  virtual void SetAccount(const std::string& account) = 0;
  virtual void SetPassword(const std::string& password) = 0;

  // Codes; see docs/mail.md. One that means nothing falls back, with a line on standard error.
  virtual void SetEncoding(std::int32_t code) = 0;
  virtual void SetBodyEncoding(std::int32_t code) = 0;
  virtual void SetBodyFormat(std::int32_t code) = 0;

  virtual void AddRecipient(const std::string& name, const std::string& address, int type) = 0;

  // Takes the bytes of the file as they are now. False where there is no such file; the mail goes
  // without it then. The second argument is always 0.
  virtual bool AddAttachment(const std::string& path, int) = 0;

  virtual void SetBodyText(const std::string& text) = 0;

  // Writes the composed message. False where that is not possible, with a line on standard error.
  virtual bool SaveMailFile(const std::string& path) = 0;

  // Sends the composed message on a connection of its own and returns kSent, or tells on standard
  // error why not. Events run while it waits for the server. May be called again.
  virtual int SendMessage() = 0;
};

}  // namespace quillon
