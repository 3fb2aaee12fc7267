// A mail that notes what is asked of it, in place of one that goes out.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/smtp.h"

namespace quillon {

// The operations on all mails of a test, in their order: "SetMailPort 25", "AddRecipient Anna
// <anna@example.org> 1". Each mail begins with "new" and ends with "dropped".
struct MailLog {
  std::vector<std::string> operations;
  std::vector<int> statuses;                       // what SendMessage answers, one after the other
  std::function<void()> onSend;                    // runs inside SendMessage
  std::function<void(const std::string&)> onCall;  // before each operation, with its line
};

class RecordingSmtp : public Smtp {
 public:
  explicit RecordingSmtp(MailLog& log) : log_(log) { Note("new"); }
  ~RecordingSmtp() override { log_.operations.emplace_back("dropped"); }
  RecordingSmtp(const RecordingSmtp&) = delete;
  RecordingSmtp& operator=(const RecordingSmtp&) = delete;

  void SetMailServer(const std::string& server) override { Note("SetMailServer " + server); }
  void SetMailPort(std::int32_t port) override { Note("SetMailPort " + std::to_string(port)); }
  void SetFrom(const std::string& address) override { Note("SetFrom " + address); }
  void SetSubject(const std::string& subject) override { Note("SetSubject " + subject); }
  void SetPriority(const std::string& priority) override { Note("SetPriority " + priority); }
  void SetCharSet(const std::string& charSet) override { Note("SetCharSet " + charSet); }
  void SetTimeOut(std::int32_t seconds) override { Note("SetTimeOut " + std::to_string(seconds)); }
  void SetAuthMode(int mode) override { Note("SetAuthMode " + std::to_string(mode)); }
  void SetAccount(const std::string& account) override { Note("SetAccount " + account); }
  void SetPassword(const std::string& password) override { Note("SetPassword " + password); }
  void SetEncoding(std::int32_t code) override { Note("SetEncoding " + std::to_string(code)); }
  void SetBodyEncoding(std::int32_t code) override {
    Note("SetBodyEncoding " + std::to_string(code));
  }
  void SetBodyFormat(std::int32_t code) override { Note("SetBodyFormat " + std::to_string(code)); }
  void AddRecipient(const std::string& name, const std::string& address, int type) override {
    Note("AddRecipient " + name + " <" + address + "> " + std::to_string(type));
  }
  bool AddAttachment(const std::string& path, int type) override {
    Note("AddAttachment " + path + " " + std::to_string(type));
    return true;
  }
  void SetBodyText(const std::string& text) override { Note("SetBodyText " + text); }
  bool SaveMailFile(const std::string& path) override {
    Note("SaveMailFile " + path);
    return true;
  }
  int SendMessage() override {
    Note("SendMessage");
    if (log_.onSend) log_.onSend();
    if (log_.statuses.empty()) return kSent;
    const int status = log_.statuses.front();
    log_.statuses.erase(log_.statuses.begin());
    return status;
  }

 private:
  void Note(std::string operation) {
    if (log_.onCall) log_.onCall(operation);
    log_.operations.push_back(std::move(operation));
  }

  MailLog& log_;
};

}  // namespace quillon
