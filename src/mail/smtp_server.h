// Where mails are brought to.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

// True of a name, an IPv4 or an IPv6 address, by its characters: what else an URL may have at that
// place leads elsewhere.
inline bool IsMailHost(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & 0x80) != 0;
    return isLetter || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_' || c == ':';
  });
}

}  // namespace quillon
