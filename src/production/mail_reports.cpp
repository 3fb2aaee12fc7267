// The run over the receivers.
#include "production/mail_reports.h"

#include "platform/files.h"
#include "production/mail_module.h"
#include "production/mail_pages.h"
#include "production/send_mail.h"
#include "service/error_exit.h"

namespace quillon {

void MailReports(ProductionContext& context) {
  ErrorExit(context.diagnostics, kMailModule, "MailReports", [&] {
    DeleteMatching(PathBelow(context.settings, "\\WebReports\\Mail"), "*.htm");
    ReadRepReceivers(context.settings, context.clock.Now(), context.RepReceiver);
    for (RepReceiverEntry& receiver : context.RepReceiver) {
      if (receiver.Name.empty() || !receiver.SendToday) continue;
      BuildChosenPages(context, receiver);
      BuildPortPage(context, receiver);
      SendMailSMTP(context, receiver.Name, receiver.Recipient, receiver.Top10Rep,
                   receiver.PortRepFile, receiver.AttachReport, receiver.IncludeUrl);
    }
  });
}

}  // namespace quillon
