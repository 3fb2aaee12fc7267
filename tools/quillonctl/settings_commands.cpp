// The commands on the form's settings.
#include "quillonctl/settings_commands.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "exit_codes.h"
#include "quillonctl/command_outcome.h"
#include "quillonctl/desk.h"
#include "quillonctl/outcome_texts.h"
#include "quillonctl/settings_lock.h"
#include "quillonctl/settings_rules.h"
#include "quillonctl/site_fields.h"
#include "service/console_operations.h"

namespace quillon {
namespace {

using Kind = OutputField::Kind;

std::string YesOrNo(bool truth) {
  return truth ? "yes" : "no";
}

// The rows of the form as they are stored, by option; what is null is empty.
SettingChange StoredSettings(const std::string& directory) {
  const SqliteFile file = OpenSettings(directory);
  SettingChange stored;
  for (const auto& [table, fields] : {std::pair(kGeneralTable, &GeneralFields()),
                                      std::pair(kWebServerTable, &WebServerFields())}) {
    for (const OutputField& field : ShownRow(file, table, *fields, FirstRow(file, table))) {
      stored[field.name] = field.value;
    }
  }
  return stored;
}

// All that is wrong with the change.
std::vector<std::string> SaveComplaints(const SettingChange& stored, const SettingChange& change) {
  std::vector<std::string> complaints = Complaints(GeneralFields(), change);
  for (std::string& complaint : Complaints(WebServerFields(), change)) {
    complaints.push_back(std::move(complaint));
  }
  for (const auto& [option, value] : stored) {
    if (!value.empty() || change.contains(option)) continue;
    complaints.push_back(fmt::format("--{}: the settings have none; give it too", option));
  }
  return complaints;
}

ConsoleForm FormOf(const SettingChange& settings) {
  ConsoleForm form;
  form.chkDebugMode = settings.at("debug-mode") == "yes";
  form.cboDatumFormat = settings.at("date-format");
  form.chkEnabled = settings.at("enabled") == "yes";
  form.txtIpAddr = settings.at("address");
  form.txtListeningPort = settings.at("port");
  form.cboCharSet = settings.at("char-set");
  return form;
}

}  // namespace

int ReadSettings(const std::string& directory, OutputForm form) {
  const Desk desk(directory, DeskEvents::kOnlyHere);
  ConsoleForm read;
  cmdRead(desk.settings, read);
  PrintFields({{"debug-mode", YesOrNo(read.chkDebugMode), Kind::kTruth},
               {"date-format", read.cboDatumFormat},
               {"enabled", YesOrNo(read.chkEnabled), Kind::kTruth},
               {"address", read.txtIpAddr},
               {"port", read.txtListeningPort, Kind::kNumber},
               {"char-set", read.cboCharSet},
               {"status", read.txtStatus}},
              form);
  return kExitDone;
}

int SaveSettings(const std::string& directory, const SettingChange& change, OutputForm form) {
  if (change.empty()) {
    Complain("no option says what is to change; see 'quillonctl save --help'");
    return kExitWrongUsage;
  }
  // The whole form is written: what another console changes meanwhile would be undone.
  const SettingsLock lock(directory);
  SettingChange settings = change;
  settings.merge(StoredSettings(directory));
  CommandOutcome outcome;
  for (const std::string& complaint : SaveComplaints(settings, change)) {
    TellFailure(complaint, form, outcome);
  }
  outcome.result = CommandOutcome::Result::kRefused;
  if (outcome.failures.empty()) {
    cmdSave(Desk(directory, DeskEvents::kOnlyHere).settings, FormOf(settings));
    outcome = {CommandOutcome::Result::kDone, kSavedText, {}};
  }
  return PrintOutcome("save", outcome, form);
}

int ApplyTheme(const std::string& directory, const std::string& theme, OutputForm form) {
  CommandOutcome outcome{CommandOutcome::Result::kRefused, rules::Theme(theme), {}};
  if (outcome.message.empty()) {
    const Desk desk(directory, DeskEvents::kInTheFile);
    ConsoleForm chosen;
    chosen.cboColorTheme = theme;
    cmdApplyChanges(desk.diagnostics, chosen);
    for (const std::string& failure : desk.failures()) TellFailure(failure, form, outcome);
    outcome.result =
        desk.failures().empty() ? CommandOutcome::Result::kDone : CommandOutcome::Result::kOpen;
    if (desk.failures().empty()) outcome.message = ThemeText(theme);
  }
  return PrintOutcome("apply-changes", outcome, form);
}

}  // namespace quillon
