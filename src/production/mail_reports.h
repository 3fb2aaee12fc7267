// The report mails of a day.
#pragma once

#include "production/production_context.h"

namespace quillon {

// Empties the mail folder, reads the receivers, and builds and sends the mail of each one who is
// due by the server's clock, one after the other. A failure is reported and ends the run: those
// behind it get no mail. A mail that could not be sent is no failure here.
void MailReports(ProductionContext& context);

}  // namespace quillon
