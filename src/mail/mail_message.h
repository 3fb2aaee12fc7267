// Composing a mail: header, body and attachments as the text that goes over the line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

struct MailAttachment {
  std::string fileName;
  std::string bytes;
};

// Texts are UTF-8. The codes are those of docs/mail.md.
struct MailMessage {
  std::string from;  // an address, with a name or without
  std::string recipientName;
  std::string recipientAddress;
  std::string subject;
  std::string priority;
  std::string charSet;  // of the body
  std::int32_t encoding = 0;
  std::int32_t bodyEncoding = 0;
  std::int32_t bodyFormat = 0;
  std::string body;
  std::vector<MailAttachment> attachments;
};

// The mail with its date and an id of its own, lines ended by CR LF. A code or charset that means
// nothing is told on standard error and falls back. Control characters in the texts of the header
// become blanks, so that none of them can add a line.
std::string Compose(const MailMessage& message);

// The bare address of "a@b", "<a@b>" or "Name <a@b>"; empty where the text is not one such address.
std::string BareAddress(const std::string& text);

}  // namespace quillon
