// The demonstration's own receiver of report mails.
#pragma once

#include <string>

namespace quillon {

// Gives the demonstration one receiver, who gets a mail each day with lists, a summary and a port
// of the demonstration, and lets all mails go to `mailPort` of this machine. With 0 the receiver
// of an earlier demonstration goes, and the mail server stays. Other receivers stay in both cases.
void SetDemoReceiver(const std::string& directory, int mailPort);

}  // namespace quillon
