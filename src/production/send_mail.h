// One report mail.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/smtp.h"
#include "production/production_context.h"
#include "service/settings.h"

namespace quillon {

// Ends every mail.
inline constexpr std::string_view kMailSignature =
    "Quillon Network Reporting\r\nhttps://quillon.example/";

// Sets the mail up as Settings_SmtpServer has it, for this recipient, and returns how many further
// attempts the settings allow. Fails where the row is missing or a field is null.
std::int16_t PrepareMail(const Settings& settings, const std::string& name,
                         const std::string& recipient, Smtp& mail);

// Composes the mail by Settings_SmtpServer and sends it, with as many further attempts as Retries
// tells, then waits a second. A negative number is no attempt at all, and a mail that was not sent.
// `reports` and `portReport` are names of pages in the mail folder or "None". Without
// `attachReport` the mail is its signature alone; with it the pages and their stylesheet are
// attached, and with `includeUrl` too, the body has their links. With DebugMode on, the mail is
// also written to \Debug\SendMailSMTP.txt. Events run while it is on its way. A mail that cannot be
// sent is an event of type 2, a failure one of type 1; both return normally.
void SendMailSMTP(ProductionContext& context, const std::string& name, const std::string& recipient,
                  const Rows<std::string, 5>& reports, const std::string& portReport,
                  bool attachReport, bool includeUrl);

}  // namespace quillon
