// Times the daily import of an installation inside this process. Its pauses are counted and not
// slept, so that what is left is its work.
//
//   import_night DIRECTORY            one import
//   import_night DIRECTORY --trends   and the trends of its storages alone, once more
//   import_night DIRECTORY --days N   an import on each of so many days that follow each other
//
// Prints "work <ms>" and "pauses <ms>" of the first import, "trends <ms>", "private <day> <KB>"
// on the first day and each hundredth one, and "imported". Fails where an import was not due or
// anything was reported.
#include <fmt/core.h>

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "import/disk_trends.h"
#include "import/import.h"
#include "import/report_marks.h"
#include "in_process.h"
#include "support/reporting.h"
#include "support/sql_rows.h"

namespace {

using namespace quillon;

constexpr std::int16_t kReportHour = 3;
constexpr int kDaysBetweenFigures = 100;

// A clock of which whole days can be skipped.
class NightClock : public SleeplessClock {
 public:
  DateTime Now() const override { return SleeplessClock::Now() + skipped_; }

  void SkipDay() { skipped_ += std::chrono::days(1); }

 private:
  std::chrono::days skipped_{0};
};

// What an import touches, in an installation whose figures are of today.
class Night {
 public:
  explicit Night(const std::string& directory) : settings_(SettingsOf(directory)) {}

  Milliseconds ImportDay() {
    UpdateHistory_Db(context_, kReportHour);
    bool imported = false;
    const Milliseconds work = TimeOf([&] { Import(context_, imported); });
    ExpectNoEvent(settings_);
    if (!imported) throw std::runtime_error("the import was not due");
    return work;
  }

  Milliseconds FixTrends() {
    const Milliseconds work = TimeOf([&] { DiskFixTrendValues(context_); });
    ExpectNoEvent(settings_);
    return work;
  }

  // The next day, with figures of that day.
  void SkipDay() {
    clock_.SkipDay();
    SqlRows(settings_.AppPath + "/Reports.mdb",
            "UPDATE VLAN SET InOctetsDate = datetime(InOctetsDate, '+1 day'),"
            " LastUpdate = datetime(LastUpdate, '+1 day');"
            "UPDATE HostDiskInfo SET LastUpdate = datetime(LastUpdate, '+1 day')");
  }

  std::chrono::milliseconds slept() const { return clock_.slept(); }

 private:
  NightClock clock_;
  Settings settings_;
  ReportPeriod period_;
  EventLoop loop_{clock_};
  Reporting reporting_{settings_, clock_};
  ImportContext context_{reporting_.diagnostics(), settings_, clock_, loop_, period_};
};

// What this process shares with no other.
std::int64_t PrivateKilobytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  std::int64_t sum = 0;
  std::string word;
  while (file >> word) {
    if (word != "Private_Clean:" && word != "Private_Dirty:") continue;
    std::int64_t kilobytes = 0;
    file >> kilobytes;
    sum += kilobytes;
  }
  return sum;
}

void ImportDays(Night& night, int days) {
  for (int day = 1; day <= days; ++day) {
    if (day > 1) {
      night.SkipDay();
      night.ImportDay();
    }
    if (day != 1 && day % kDaysBetweenFigures != 0) continue;
    fmt::print("private {} {}\n", day, PrivateKilobytes());
  }
}

struct Options {
  std::string directory;
  bool trends = false;
  int days = 1;
};

std::optional<Options> ReadOptions(int argumentCount, char** arguments) {
  Options options;
  if (argumentCount < 2) return std::nullopt;
  options.directory = arguments[1];
  for (int i = 2; i < argumentCount; ++i) {
    const std::string_view option = arguments[i];
    if (option == "--trends") {
      options.trends = true;
    } else if (option == "--days" && i + 1 < argumentCount) {
      const std::string_view number = arguments[++i];
      const char* end = number.data() + number.size();
      if (std::from_chars(number.data(), end, options.days).ptr != end) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

void Run(const Options& options) {
  Night night(options.directory);
  const Milliseconds work = night.ImportDay();
  fmt::print("work {:.1f}\npauses {}\n", work.count(), night.slept().count());
  if (options.trends) fmt::print("trends {:.1f}\n", night.FixTrends().count());
  ImportDays(night, options.days);
  fmt::print("imported\n");
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::optional<Options> options = ReadOptions(argumentCount, arguments);
  if (!options) {
    fmt::print(stderr, "usage: import_night DIRECTORY [--trends] [--days N]\n");
    return 2;
  }
  try {
    Run(*options);
  } catch (const std::exception& failure) {
    fmt::print(stderr, "import_night: {}\n", failure.what());
    return 1;
  }
  return 0;
}
