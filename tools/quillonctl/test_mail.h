// test-mail: one mail by the settings of the mail server, sent by this program itself, so that it
// can say what the server said.
#pragma once

#include <string>

namespace quillon {

// Sends the mail, which says what it is, to the address, once. 1, with the reason on standard
// error, where it cannot be sent.
int SendTestMail(const std::string& directory, const std::string& address);

}  // namespace quillon
