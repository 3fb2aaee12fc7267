// The names of weekdays and months in the language of the server.
#pragma once

#include <array>
#include <string>

#include "platform/date_time.h"

namespace quillon {

class CalendarNames {
 public:
  // The English names.
  CalendarNames();

  // The names of the environment's locale (LC_ALL, LC_TIME, LANG, in this order); the English ones
  // where it names none, or none that the system has.
  static CalendarNames OfEnvironment();

  // The same names as bytes of a charset.
  CalendarNames InCharSet(const std::string& charSet) const;

  // The whole name, its first letter in upper case: some languages write them small. UTF-8, but
  // behind InCharSet.
  const std::string& Weekday(DateTime day) const;
  const std::string& Month(DateTime day) const;

 private:
  std::array<std::string, 7> weekdays_;  // from Sunday
  std::array<std::string, 12> months_;   // from January
};

}  // namespace quillon
