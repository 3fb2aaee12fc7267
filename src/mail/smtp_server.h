// Where mails are brought to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillon {

struct SmtpLogin {
  bool onlyAuthLogin = false;  // else also CRAM-MD5 and PLAIN, the best one offered
  std::string account;
  std::string password;
};

struct SmtpServer {
  std::string host;  // name or address
  std::int32_t port = 25;
  std::int32_t timeOutSeconds = 0;  // below 1: a minute
  std::optional<SmtpLogin> login;
};

}  // namespace quillon
