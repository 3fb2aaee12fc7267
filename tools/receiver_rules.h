// What a receiver's row may hold: the rules that all tools have alike. Here they judge single
// texts; how rows are read and what is said of them is the tools' own.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "mail/mail_message.h"
#include "production/report_choice.h"
#include "production/report_receivers.h"

namespace quillon {

// When a receiver's mail goes out: the word, and its number in TimeSchedule.
struct MailSchedule {
  std::string_view word;
  std::string_view number;
};

inline constexpr MailSchedule kMailSchedules[] = {
    {"daily", "1"}, {"weekly", "2"}, {"monthly", "3"}};

// One address, with a name or without. The address is one of ASCII: nothing else can be told to a
// mail server.
inline bool IsMailAddress(const std::string& text) {
  const std::string address = BareAddress(text);
  return !address.empty() && std::ranges::all_of(address, [](char c) { return (c & 0x80) == 0; });
}

// A text that names a report, or that wants none.
inline bool IsReportChoice(std::string_view text) {
  return text == kNoReport || ParseReportChoice(text).has_value();
}

}  // namespace quillon
