// The run over the receivers.
#include "production/mail_reports.h"

#include <algorithm>

#include "platform/files.h"
#include "production/mail_module.h"
#include "production/mail_pages.h"
#include "production/send_mail.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

bool IsDue(const RepReceiverEntry& receiver) {
  return !receiver.Name.empty() && receiver.SendToday;
}

}  // namespace

void MailReports(ProductionContext& context) {
  ErrorExit(context.diagnostics, kMailModule, "MailReports", [&] {
    DeleteMatching(PathBelow(context.settings, "\\WebReports\\Mail"), "*.htm");
    ReadRepReceivers(context.settings, context.clock.Now(), context.RepReceiver);
    const auto due = static_cast<int>(std::ranges::count_if(context.RepReceiver, IsDue));
    int number = 0;
    for (RepReceiverEntry& receiver : context.RepReceiver) {
      if (!IsDue(receiver)) continue;
      TellProgress(context.diagnostics, JobUnit::kReceiver, ++number, due);
      BuildChosenPages(context, receiver);
      BuildPortPage(context, receiver);
      SendMailSMTP(context, receiver.Name, receiver.Recipient, receiver.Top10Rep,
                   receiver.PortRepFile, receiver.AttachReport, receiver.IncludeUrl);
    }
  });
}

}  // namespace quillon
