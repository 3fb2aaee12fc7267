// The rules. Where the service has a judge of its own, he is asked.
#include "quillonctl/settings_rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <string_view>

#include "platform/date_time.h"
#include "platform/socket_errors.h"
#include "platform/text_encoding.h"
#include "platform/text_lines.h"
#include "receiver_rules.h"
#include "service/console_form.h"

namespace quillon::rules {
namespace {

// A name of UTF-8 by which a text is converted all the same, so that what is no UTF-8 changes. By
// the usual one it is left as it is.
constexpr const char* kConvertedUtf8 = "UTF8";

constexpr std::uint16_t kHighestPort = std::numeric_limits<std::uint16_t>::max();

template <std::size_t count>
std::string OneOf(const char* const (&offered)[count], const std::string& text) {
  if (std::ranges::find(offered, text) != std::end(offered)) return {};
  return fmt::format("'{}' is not known; write one of {}", text,
                     fmt::join(std::begin(offered), std::end(offered), ", "));
}

// Of the registered names. Anything else has a meaning of its own for the library: "//TRANSLIT".
bool IsOfCharsetName(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' || c == ':';
}

bool IsCharset(const std::string& name) {
  return std::ranges::all_of(name, IsOfCharsetName) && IsKnownCharset(name);
}

// Judged by all of its characters that stand in pages and mails. The one behind them is none of it:
// a text of ASCII alone would never be converted.
bool HoldsAscii(const std::string& charSet) {
  std::string ascii = "\t\r\n";
  for (char c = ' '; c <= '~'; ++c) ascii += c;
  return PageText(ascii + "\u00E9", charSet).starts_with(ascii);
}

}  // namespace

std::string PlainText(const std::string& text) {
  if (PageText(text, kConvertedUtf8) != text) return "the text is not in UTF-8";
  if (OneLine(text) != text) return "the text has control characters";
  return {};
}

std::string Number(const std::string& text, std::int64_t lowest, std::int64_t highest) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, number);
  const bool isRight = error == std::errc() && next == end && number >= lowest && number <= highest;
  if (isRight) return {};
  return fmt::format("'{}' is no number from {} to {}", text, lowest, highest);
}

std::string Address(const std::string& text) {
  try {
    AddressToBind(text);
    return {};
  } catch (const SocketFailure& failure) {
    return failure.what();
  }
}

std::string Port(const std::string& text) {
  return Number(text, 1, kHighestPort);
}

std::string DateFormat(const std::string& text) {
  return OneOf(lists::cboDatumFormat, text);
}

std::string CharSet(const std::string& text) {
  if (!IsCharset(text)) {
    return fmt::format(
        "'{}' is a charset that this machine does not know; write a name out of 'iconv -l'", text);
  }
  if (HoldsAscii(text)) return {};
  return fmt::format(
      "'{}' has letters and signs at other places than ASCII, so neither pages nor mails can be in "
      "it; write UTF-8, say",
      text);
}

std::string MailAddress(const std::string& text) {
  if (IsMailAddress(text)) return {};
  return fmt::format("'{}' is not one mail address; write one such as noc@example.org", text);
}

std::string Theme(const std::string& text) {
  return OneOf(lists::cboColorTheme, text);
}

std::string Day(const std::string& text) {
  const std::optional<DateTime> day = ParseDateTime(text);
  if (day && DayText(*day) == text && *day > ZeroDate()) return {};
  return fmt::format("'{}' is no day; write it as YYYY-MM-DD", text);
}

}  // namespace quillon::rules
