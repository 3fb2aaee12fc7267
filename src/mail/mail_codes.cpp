// The codes and their fallbacks.
#include "mail/mail_codes.h"

#include <string_view>

#include "platform/standard_error.h"
#include "platform/text_folding.h"

namespace quillon {
namespace {

struct PriorityName {
  std::string_view name;
  std::string_view number;
  int priority;
};

constexpr PriorityName kPriorities[] = {
    {"Highest", "1", 1}, {"High", "2", 2}, {"Normal", "3", 3}, {"Low", "4", 4}, {"Lowest", "5", 5}};
constexpr int kNormalPriority = 3;

// Null for a text that is none.
const PriorityName* FindPriority(const std::string& text) {
  for (const PriorityName& known : kPriorities) {
    if (CompareFolded(text, known.name) == 0 || text == known.number) return &known;
  }
  return nullptr;
}

void TellUnknown(const std::string& what, const std::string& code, const std::string& instead) {
  TellStandardError("mail: " + what + " '" + code + "' is not known, " + instead + " is used");
}

}  // namespace

int MailPriority(const std::string& text) {
  if (const PriorityName* const known = FindPriority(text)) return known->priority;
  if (!text.empty()) TellUnknown("Priority", text, "Normal");
  return kNormalPriority;
}

bool IsMailPriority(const std::string& text) {
  return FindPriority(text) != nullptr;
}

void CheckAttachmentEncoding(std::int32_t code) {
  if (code != 0) TellUnknown("Encoding", std::to_string(code), "0 (base64)");
}

BodyEncoding BodyEncodingOf(std::int32_t code) {
  switch (code) {
    case 0:
      return BodyEncoding::kAsNeeded;
    case 1:
      return BodyEncoding::kQuotedPrintable;
    case 2:
      return BodyEncoding::kBase64;
    default:
      TellUnknown("BodyEncoding", std::to_string(code), "0 (as needed)");
      return BodyEncoding::kAsNeeded;
  }
}

BodyFormat BodyFormatOf(std::int32_t code) {
  switch (code) {
    case 0:
      return BodyFormat::kPlain;
    case 1:
      return BodyFormat::kHtmlBeside;
    default:
      TellUnknown("BodyFormat", std::to_string(code), "0 (plain text)");
      return BodyFormat::kPlain;
  }
}

}  // namespace quillon
