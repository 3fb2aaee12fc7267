// What the program finds in this module by its name.
#include "mail/smtp_client.h"
#include "platform/mail_module.h"

extern "C" quillon::Smtp* QuillonNewSmtp(quillon::EventLoop& loop) {
  return new quillon::SmtpClient(loop);
}
