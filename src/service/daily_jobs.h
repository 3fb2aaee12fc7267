// The day's work, which the hourly pass calls, and the operator by hand.
#pragma once

#include <cstdint>
#include <functional>

namespace quillon {

// Each job reports its own failures and returns.
struct DailyJobs {
  std::function<void(bool& done)> Import;  // sets the flag when it has imported the day
  std::function<void()> AutoCreate;        // rebuilds the page cache
  std::function<void()> MailReports;       // mails the reports that are due
  // Sets the marks of a report that ended at this hour of today: of the operator's import alone.
  std::function<void(std::int16_t hour)> UpdateHistory_Db = nullptr;
};

}  // namespace quillon
