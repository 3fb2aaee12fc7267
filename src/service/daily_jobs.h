// The day's work, which the hourly pass calls.
#pragma once

#include <functional>

namespace quillon {

// Each job reports its own failures and returns.
struct DailyJobs {
  std::function<void(bool& done)> Import;  // sets the flag when it has imported the day
  std::function<void()> AutoCreate;        // rebuilds the page cache
  std::function<void()> MailReports;       // mails the reports that are due
};

}  // namespace quillon
