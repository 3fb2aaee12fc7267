// The rows of Settings_SmtpServer and Settings_SnmpAgent, and the one field of Settings_General
// that the form does not have.
#include "quillonctl/row_commands.h"

#include "exit_codes.h"
#include "mail/mail_codes.h"
#include "mail/smtp_server.h"
#include "platform/files.h"
#include "quillonctl/password.h"
#include "quillonctl/settings_rules.h"
#include "quillonctl/site_fields.h"

namespace quillon {
namespace {

using Kind = SettingField::Kind;

constexpr const char* kSmtpTable = "Settings_SmtpServer";
constexpr const char* kSnmpTable = "Settings_SnmpAgent";

std::string Server(const std::string& text) {
  return IsMailHost(text) ? "" : "'" + text + "' is neither a name nor an address of a machine";
}

std::string Priority(const std::string& text) {
  if (IsMailPriority(text)) return {};
  return "'" + text + "' is no priority; write Highest, High, Normal, Low, Lowest or 1 to 5";
}

// Beyond an hour the mails of a day with a server that is silent would reach into the next one.
std::string TimeOut(const std::string& text) {
  constexpr std::int64_t kHour = 3600;
  return rules::Number(text, 0, kHour);
}

// Each attempt may last as long as the time-out, and the mails behind it wait. Below 0 no mail
// would go out at all.
std::string Retries(const std::string& text) {
  constexpr std::int64_t kMost = 10;
  return rules::Number(text, 0, kMost);
}

// Every text but the first is another mode to the service: a slip in it would loosen the login.
std::string AuthMode(const std::string& text) {
  return text == "AUTH LOGIN" || text == "other"
             ? ""
             : "'" + text + "' is no mode; write AUTH LOGIN, or other for the best one offered";
}

// Managers store it in so many bytes. An empty one is nobody's.
std::string Community(const std::string& text) {
  constexpr std::size_t kLongest = 255;
  return !text.empty() && text.size() <= kLongest ? "" : "a community has 1 to 255 bytes";
}

// The service ends at its start where it does not find the file.
std::string MorvaneFolder(const std::string& text) {
  if (!text.starts_with('/')) return "'" + text + "' does not begin with a slash";
  return FileExists(text + "/Morvane.ini") ? "" : "there is no Morvane.ini in '" + text + "'";
}

int Show(const std::string& directory, const char* table, const SettingFieldList& fields,
         OutputForm form) {
  const SqliteFile file = OpenSettings(directory);
  PrintFields(ShownRow(file, table, fields, FirstRow(file, table)), form);
  return kExitDone;
}

// `saved` says when it takes effect, for the operator.
int Set(const std::string& directory, const char* table, const SettingFieldList& fields,
        const SettingChange& change, const char* saved) {
  const SqliteFile file = OpenSettings(directory);
  SqliteTransaction transaction(file);
  StoreChange(file, table, fields, change, FirstRow(file, table));
  transaction.Commit();
  PrintLine(saved);
  return kExitDone;
}

}  // namespace

const SettingFieldList& SmtpFields() {
  static const SettingFieldList kFields = {
      {"server", "MailServer", Kind::kText, "Name or address of the mail server", Server},
      {"port", "MailPort", Kind::kNumber, "Its port, 25 or 587 mostly", rules::Port},
      {"from", "FromAddr", Kind::kText, "Mail address of the sender", rules::MailAddress},
      {"subject", "Subject", Kind::kText, "Subject of every mail", nullptr},
      {"priority", "Priority", Kind::kText, "Highest, High, Normal, Low, Lowest, or 1 to 5",
       Priority},
      {"char-set", "CharSet", Kind::kText, "Charset of the mails, such as UTF-8", rules::CharSet},
      {"time-out", "TimeOut", Kind::kNumber, "Seconds for an attempt, up to 3600; 0 for a minute",
       TimeOut},
      {"retries", "Retries", Kind::kNumber, "Further attempts, 0 to 10", Retries},
      {"login", "UseAuth", Kind::kTruth, "Log in to the server", nullptr},
      {"auth-mode", "AuthMode", Kind::kText, "\"AUTH LOGIN\" alone, or other", AuthMode},
      {"account", "Account", Kind::kText, "Account at the server", nullptr},
      {"password", "Pass", Kind::kSecret, "Password of the account", nullptr},
      {"encoding", "Encoding", Kind::kNumber, "Code of the attachments' encoding: 0",
       [](const std::string& text) { return rules::Number(text, 0, 0); }},
      {"body-encoding", "BodyEncoding", Kind::kNumber,
       "Code of the body's encoding: 0 as needed, 1 quoted-printable, 2 base64",
       [](const std::string& text) { return rules::Number(text, 0, 2); }},
      {"body-format", "BodyFormat", Kind::kNumber,
       "Code of the body's format: 0 plain text, 1 HTML beside it",
       [](const std::string& text) { return rules::Number(text, 0, 1); }},
  };
  return kFields;
}

const SettingFieldList& SnmpFields() {
  static const SettingFieldList kFields = {
      {"enabled", "Enabled", Kind::kTruth, "Open the agent with the service", nullptr},
      {"send-events", "SendAppEvents", Kind::kTruth, "Send events as traps", nullptr},
      {"community", "TrapComm", Kind::kText, "Community of the traps", Community},
  };
  return kFields;
}

const SettingFieldList& MorvaneFields() {
  static const SettingFieldList kFields = {
      {"folder", "SnmpcDir", Kind::kText, "Folder of its Morvane.ini", MorvaneFolder},
  };
  return kFields;
}

int ShowSmtp(const std::string& directory, OutputForm form) {
  return Show(directory, kSmtpTable, SmtpFields(), form);
}

int SetSmtp(const std::string& directory, SettingChange change, bool askPassword) {
  if (!IsAccepted(Complaints(SmtpFields(), change))) return kExitFailed;
  if (askPassword) {
    change["password"] = AskPassword();
    if (!IsAccepted(Complaints(SmtpFields(), change))) return kExitFailed;
  }
  return Set(directory, kSmtpTable, SmtpFields(), change, "Saved for the next mail");
}

int ShowSnmp(const std::string& directory, OutputForm form) {
  SettingFieldList fields = SnmpFields();
  fields.push_back({"status", "Status", Kind::kText, "Written by the service", nullptr});
  return Show(directory, kSnmpTable, fields, form);
}

int SetSnmp(const std::string& directory, const SettingChange& change) {
  if (!IsAccepted(Complaints(SnmpFields(), change))) return kExitFailed;
  return Set(directory, kSnmpTable, SnmpFields(), change,
             "Saved; the service takes send-events within the hour, the rest at its next start");
}

int ShowMorvane(const std::string& directory, OutputForm form) {
  return Show(directory, kGeneralTable, MorvaneFields(), form);
}

int SetMorvane(const std::string& directory, const SettingChange& change) {
  if (!IsAccepted(Complaints(MorvaneFields(), change))) return kExitFailed;
  return Set(directory, kGeneralTable, MorvaneFields(), change, "Saved for the next start");
}

}  // namespace quillon
