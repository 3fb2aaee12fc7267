// Bringing a composed mail to its server.
#pragma once

#include <string>

#include "mail/smtp_server.h"
#include "platform/event_loop.h"

namespace quillon {

// Sends the mail on a connection of its own, encrypted where the server offers it, with steps of
// the loop's wait in between. 0 where the server has taken it, within the time; else another
// status, and why on standard error.
int SendMail(EventLoop& loop, const SmtpServer& server, const std::string& sender,
             const std::string& recipient, const std::string& mail);

}  // namespace quillon
