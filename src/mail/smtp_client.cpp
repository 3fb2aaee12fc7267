// Properties, composing once, sending as often as asked.
#include "mail/smtp_client.h"

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/standard_error.h"

namespace quillon {

void SmtpClient::SetAuthMode(int mode) {
  Login().onlyAuthLogin = mode == kAuthLogin;
}

void SmtpClient::SetAccount(const std::string& account) {
  Login().account = account;
}

void SmtpClient::SetPassword(const std::string& password) {
  Login().password = password;
}

void SmtpClient::AddRecipient(const std::string& name, const std::string& address, int) {
  message_.recipientName = name;
  message_.recipientAddress = address;
}

bool SmtpClient::AddAttachment(const std::string& path, int) {
  try {
    message_.attachments.push_back({path.substr(path.rfind('/') + 1), ReadFileBytes(path)});
    return true;
  } catch (const FileFailure&) {
    return false;
  }
}

bool SmtpClient::SaveMailFile(const std::string& path) {
  try {
    ReplaceFile(path, Composed(), OldFile::kStays);
    return true;
  } catch (const FileFailure& failure) {
    TellStandardError(std::string("mail: ") + failure.what());
    return false;
  }
}

int SmtpClient::SendMessage() {
  return SendMail(loop_, server_, message_.from, message_.recipientAddress, Composed());
}

SmtpLogin& SmtpClient::Login() {
  if (!server_.login) server_.login.emplace();
  return *server_.login;
}

const std::string& SmtpClient::Composed() {
  if (!composed_) composed_ = Compose(message_);
  return *composed_;
}

}  // namespace quillon
