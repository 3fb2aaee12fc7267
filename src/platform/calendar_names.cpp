// Names out of the C library's locales.
#include "platform/calendar_names.h"

#include <langinfo.h>

#include <clocale>

#include "platform/text_encoding.h"
#include "platform/text_folding.h"

namespace quillon {
namespace {

constexpr std::array kEnglishWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                         "Thursday", "Friday", "Saturday"};
constexpr std::array kEnglishMonths = {"January",   "February", "March",    "April",
                                       "May",       "June",     "July",     "August",
                                       "September", "October",  "November", "December"};

// A locale's items for the names, in the same order.
constexpr std::array<nl_item, 7> kWeekdayItems = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};
constexpr std::array<nl_item, 12> kMonthItems = {MON_1, MON_2, MON_3, MON_4,  MON_5,  MON_6,
                                                 MON_7, MON_8, MON_9, MON_10, MON_11, MON_12};

// The locale that the environment names for dates; none where the system does not have it.
class EnvironmentLocale {
 public:
  EnvironmentLocale() : locale_(newlocale(LC_TIME_MASK, "", nullptr)) {}
  ~EnvironmentLocale() {
    if (locale_ != nullptr) freelocale(locale_);
  }
  EnvironmentLocale(const EnvironmentLocale&) = delete;
  EnvironmentLocale& operator=(const EnvironmentLocale&) = delete;

  bool known() const { return locale_ != nullptr; }
  // A name in UTF-8, whatever charset the locale is written in.
  std::string Name(nl_item item) const {
    return Capitalized(DatabaseText(nl_langinfo_l(item, locale_), Text(_NL_TIME_CODESET)));
  }

 private:
  std::string Text(nl_item item) const { return nl_langinfo_l(item, locale_); }

  locale_t locale_;
};

}  // namespace

CalendarNames::CalendarNames() {
  for (std::size_t i = 0; i < weekdays_.size(); ++i) weekdays_[i] = kEnglishWeekdays[i];
  for (std::size_t i = 0; i < months_.size(); ++i) months_[i] = kEnglishMonths[i];
}

CalendarNames CalendarNames::OfEnvironment() {
  CalendarNames names;
  const EnvironmentLocale locale;
  if (!locale.known()) return names;
  for (std::size_t i = 0; i < kWeekdayItems.size(); ++i) {
    names.weekdays_[i] = locale.Name(kWeekdayItems[i]);
  }
  for (std::size_t i = 0; i < kMonthItems.size(); ++i) {
    names.months_[i] = locale.Name(kMonthItems[i]);
  }
  return names;
}

CalendarNames CalendarNames::InCharSet(const std::string& charSet) const {
  CalendarNames names = *this;
  for (std::string& name : names.weekdays_) name = PageText(name, charSet);
  for (std::string& name : names.months_) name = PageText(name, charSet);
  return names;
}

const std::string& CalendarNames::Weekday(DateTime day) const {
  return weekdays_[WeekdayOf(day)];
}

const std::string& CalendarNames::Month(DateTime day) const {
  return months_[static_cast<std::size_t>(PartsOf(day).month - 1)];
}

}  // namespace quillon
