// What the stored codes of a mail mean; docs/mail.md tells it to administrators. A code that means
// nothing gives the ordinary one, and a line on standard error.
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

enum class BodyEncoding { kAsNeeded, kQuotedPrintable, kBase64 };
enum class BodyFormat { kPlain, kHtmlBeside };

// 1, the highest, to 5. By number or by name, without regard to case.
int MailPriority(const std::string& text);
// True of a text that is one of them.
bool IsMailPriority(const std::string& text);

// Attachments are in base64 whatever the code: nothing else brings them byte for byte.
void CheckAttachmentEncoding(std::int32_t code);
BodyEncoding BodyEncodingOf(std::int32_t code);
BodyFormat BodyFormatOf(std::int32_t code);

}  // namespace quillon
