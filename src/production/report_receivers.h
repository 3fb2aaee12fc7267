// RepReceiver: who gets report mails, and whether today is the day.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/one_based.h"
#include "service/settings.h"

namespace quillon {

struct RepReceiverEntry {
  std::string Name;       // empty: the entry is free
  std::string Recipient;  // mail address
  bool SendToday = false;
  // A choice of Settings_RepReceiver, and once its page is built, the page's file name.
  Rows<std::string, 5> Top10Rep;
  bool PortRep = false;
  std::int32_t PortRepRecNo = 0;
  std::int32_t PortRepIfIndex = 0;
  bool PortRepDetails = false;  // the port's table stands above its charts
  std::string PortRepFile;      // name of the port page, or "None"
  bool AttachReport = false;
  bool IncludeUrl = false;
};

// A row more in Settings_RepReceiver than there are entries is an IndexFailure.
using RepReceivers = Rows<RepReceiverEntry, 100>;

// Stands for no report among the choices, and for no page among the files.
inline constexpr const char* kNoReport = "None";

// The number of a weekday by its name, "Sunday" 1 to "Saturday" 7; 0 for any other text. Case
// counts.
unsigned WeekdayNumber(std::string_view name);

// Fills the entries anew from Settings_RepReceiver, in stored order: the texts are database text
// (UTF-8). `today` decides who is due: everybody with a daily mail, weekly ones on their weekday,
// monthly ones on the first. A weekday of no such name is that of the weekly row before.
void ReadRepReceivers(const Settings& settings, DateTime today, RepReceivers& receivers);

}  // namespace quillon
