// The fields with their rules.
#include "quillonctl/form/form_check.h"

#include <array>

#include "quillonctl/settings_rules.h"

namespace quillon {
namespace {

struct Rule {
  Control control;
  const char* label;
  std::string ConsoleForm::*field;
  std::string (*complaint)(const std::string& text);
};

constexpr std::array<Rule, 4> kRules = {{
    {Control::kDateFormat, captions::lblUseDateFormat, &ConsoleForm::cboDatumFormat,
     rules::DateFormat},
    {Control::kAddress, captions::lblBindToAddress, &ConsoleForm::txtIpAddr, rules::Address},
    {Control::kPort, captions::lblListeningPort, &ConsoleForm::txtListeningPort, rules::Port},
    {Control::kCharSet, captions::lblCharSet, &ConsoleForm::cboCharSet, rules::CharSet},
}};

}  // namespace

std::optional<FormComplaint> SettingsComplaint(const Contents& contents) {
  for (const Rule& rule : kRules) {
    const std::string complaint = rule.complaint(contents.form.*rule.field);
    if (complaint.empty()) continue;
    return FormComplaint{rule.control, std::string(rule.label) + " " + complaint};
  }
  return std::nullopt;
}

std::optional<FormComplaint> DateComplaint(const Contents& contents) {
  const std::string complaint = rules::Day(contents.txtRepDate);
  if (complaint.empty()) return std::nullopt;
  return FormComplaint{Control::kRepDate, std::string(captions::cmdSetRepDate) + ": " + complaint};
}

}  // namespace quillon
