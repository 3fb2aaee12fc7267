// Composing and sending one mail, operation by operation.
#include "production/send_mail.h"

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/database.h"
#include "platform/files.h"
#include "production/mail_module.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kProcedure = "SendMailSMTP";
constexpr std::int16_t kPauseMs = 1000;  // spaces the mails out
constexpr std::int32_t kHttpPort = 80;

std::string SiteAddress(const Listener& tcpServer) {
  const std::int32_t port = tcpServer.LocalPort();
  return "http://" + tcpServer.LocalHost() + (port == kHttpPort ? "" : ":" + std::to_string(port)) +
         "/";
}

// Attaches a page and adds its link, unless it is none.
void AttachPage(const ProductionContext& context, const std::string& file, Smtp& mail,
                std::string& links) {
  if (file == kNoReport) return;
  mail.AddAttachment(PathBelow(context.settings, "\\WebReports\\Mail") + "/" + file, 0);
  links.append(SiteAddress(context.tcpServer)).append(file).append(kLineEnd).append(kLineEnd);
}

// True as soon as an attempt succeeds.
bool Send(Smtp& mail, std::int16_t retries) {
  for (int attempt = 0; attempt <= retries; ++attempt) {
    if (mail.SendMessage() == Smtp::kSent) return true;
  }
  return false;
}

void ComposeAndSend(ProductionContext& context, const std::string& name,
                    const std::string& recipient, const Rows<std::string, 5>& reports,
                    const std::string& portReport, bool attachReport, bool includeUrl) {
  const std::unique_ptr<Smtp> mail = context.newSmtp();
  const std::int16_t retries = PrepareMail(context.settings, name, recipient, *mail);
  std::string links;
  if (attachReport) {
    for (const std::string& report : reports) AttachPage(context, report, *mail, links);
    AttachPage(context, portReport, *mail, links);
    mail->AddAttachment(PathBelow(context.settings, "\\WebReports\\qws.css"), 0);
  }
  mail->SetBodyText((includeUrl ? links : std::string()).append(kMailSignature));
  if (context.settings.DebugMode) {
    mail->SaveMailFile(PathBelow(context.settings, "\\Debug\\SendMailSMTP.txt"));
  }
  if (!Send(*mail, retries)) {
    AppEvent(context.diagnostics, kMailModule, kProcedure, "Error Sending Mail",
             EventType::kFailedMail);
  }
}

}  // namespace

std::int16_t PrepareMail(const Settings& settings, const std::string& name,
                         const std::string& recipient, Smtp& mail) {
  Connection settingsFile;
  settingsFile.Open(settings.ConnMain);
  Recordset server;
  server.Open("Settings_SmtpServer", settingsFile, CursorType::kStatic, LockType::kReadOnly);
  mail.SetMailServer(server.Field("MailServer").AsText());
  mail.SetMailPort(server.Field("MailPort").AsLong());
  mail.SetFrom(server.Field("FromAddr").AsText());
  mail.SetSubject(server.Field("Subject").AsText());
  mail.SetPriority(server.Field("Priority").AsText());
  mail.SetCharSet(server.Field("CharSet").AsText());
  mail.SetTimeOut(server.Field("TimeOut").AsLong());
  const std::int16_t retries = server.Field("Retries").AsInteger16();
  if (server.Field("UseAuth").AsBoolean()) {
    const bool isLogin = server.Field("AuthMode").AsText() == "AUTH LOGIN";
    mail.SetAuthMode(isLogin ? Smtp::kAuthLogin : Smtp::kAuthOther);
    mail.SetAccount(server.Field("Account").AsText());
    mail.SetPassword(server.Field("Pass").AsText());
  }
  mail.SetEncoding(server.Field("Encoding").AsLong());
  mail.SetBodyEncoding(server.Field("BodyEncoding").AsLong());
  mail.SetBodyFormat(server.Field("BodyFormat").AsLong());
  mail.AddRecipient(name, recipient, Smtp::kToRecipient);
  return retries;
}

void SendMailSMTP(ProductionContext& context, const std::string& name, const std::string& recipient,
                  const Rows<std::string, 5>& reports, const std::string& portReport,
                  bool attachReport, bool includeUrl) {
  ErrorExit(context.diagnostics, kMailModule, kProcedure, [&] {
    ComposeAndSend(context, name, recipient, reports, portReport, attachReport, includeUrl);
    context.loop.DelayMs(kPauseMs);
  });
}

}  // namespace quillon
