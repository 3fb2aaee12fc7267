// One attempt, by the same steps as a report mail.
#include "quillonctl/test_mail.h"

#include <fmt/format.h>

#include "exit_codes.h"
#include "mail/smtp_client.h"
#include "production/send_mail.h"
#include "quillonctl/desk.h"
#include "quillonctl/output.h"
#include "quillonctl/setting_fields.h"
#include "quillonctl/settings_rules.h"

namespace quillon {
namespace {

constexpr std::string_view kBody =
    "This is a test of Quillon Web's mail settings. Report mails reach you in the same "
    "way.\r\n\r\n";

// "host:port", as the settings have it.
std::string ServerName(const std::string& directory) {
  constexpr const char* kTable = "Settings_SmtpServer";
  const SqliteFile file = OpenSettings(directory);
  SqliteStatement row = file.Prepare(
      fmt::format("SELECT MailServer || ':' || MailPort FROM {} WHERE rowid = ?", kTable));
  row.Bind(1, FirstRow(file, kTable));
  row.Step();
  return row.Text(0);
}

}  // namespace

int SendTestMail(const std::string& directory, const std::string& address) {
  if (const std::string complaint = rules::MailAddress(address); !complaint.empty()) {
    Complain(complaint);
    return kExitFailed;
  }
  const std::string server = ServerName(directory);
  Desk desk(directory, DeskEvents::kOnlyHere);
  SmtpClient mail(desk.loop);
  PrepareMail(desk.settings, "", address, mail);
  mail.SetBodyText(std::string(kBody).append(kMailSignature));
  if (mail.SendMessage() != Smtp::kSent) {
    Complain("the test mail was not sent");
    return kExitFailed;
  }
  PrintLine(fmt::format("sent to {} by server {}", address, server));
  return kExitDone;
}

}  // namespace quillon
