// Lives many days of the whole cycle in this process, with the clock of the tests: each night a
// report of the management product, and an hourly pass in each hour, of which one imports the day,
// builds all pages and sends the mails. The mails really go to the server of the installation's
// settings.
//
//   many_days DIRECTORY DAYS WARM_UP
//
// The installation has a report of today, which the first day begins with. Prints "memory
// <private KB>" and "descriptors <number>" behind WARM_UP days and at the end. Fails where a day is
// not imported exactly once, leaves no page, or reports anything.
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include "support/open_descriptors.h"
#include "support/sql_rows.h"
#include "support/whole_service.h"

namespace {

using namespace quillon;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;

constexpr std::int16_t kReportHour = 3;
constexpr int kHours = 24;

DateTime MidnightOf(DateTime moment) {
  return std::chrono::floor<days>(moment);
}

// One day from midnight to midnight; how often it was imported.
int Live(WholeService& service, DateTime midnight) {
  int imports = 0;
  service.onEnd = [&](std::string_view job) { imports += job == "imported" ? 1 : 0; };
  for (int hour = 0; hour < kHours; ++hour) {
    // The work of the hour before may have lasted longer than that.
    service.clock.Set(std::max(service.clock.Now(), midnight + hours(hour) + minutes(1)));
    if (hour == kReportHour) service.EndReport(kReportHour);
    service.Pass();
  }
  return imports;
}

std::int64_t CountPages(const std::string& directory) {
  const std::filesystem::directory_iterator files(directory + "/WebReports/Cache");
  return std::distance(begin(files), end(files));
}

// The statistics of the next day, as the management product writes them.
void RenewStatistics(const std::string& directory) {
  SqlRows(directory + "/Reports.mdb",
          "UPDATE VLAN SET InOctetsDate = datetime(InOctetsDate, '+1 day'),"
          " LastUpdate = datetime(LastUpdate, '+1 day');"
          "UPDATE HostDiskInfo SET LastUpdate = datetime(LastUpdate, '+1 day')");
}

std::int64_t KilobytesOf(std::string_view field) {
  std::ifstream file("/proc/self/smaps_rollup");
  std::int64_t kilobytes = 0;
  for (std::string word; file >> word;) {
    if (word == field && file >> kilobytes) return kilobytes;
  }
  throw std::runtime_error("smaps_rollup lacks a field");
}

// What this process wrote itself, in memory or swapped out. Pages of files are nothing of its own:
// they come and go by what else runs on the machine.
std::int64_t PrivateKilobytes() {
  return KilobytesOf("Anonymous:") + KilobytesOf("Swap:");
}

void PrintState() {
  fmt::print("memory {}\ndescriptors {}\n", PrivateKilobytes(), OpenDescriptors());
}

void ExpectNoEvent(const std::string& directory) {
  const std::string file = directory + "/Debug/AppEventWeb.txt";
  if (std::filesystem::exists(file)) throw std::runtime_error("see " + file);
}

void Run(const std::string& directory, int count, int warmUp) {
  const DateTime first = MidnightOf(SystemClock().Now());
  WholeService service(directory, first);
  for (int day = 0; day < count; ++day) {
    if (day > 0) RenewStatistics(directory);
    const int imports = Live(service, first + days(day));
    ExpectNoEvent(directory);
    if (imports != 1) throw std::runtime_error(fmt::format("day {}: {} imports", day, imports));
    if (CountPages(directory) == 0) throw std::runtime_error(fmt::format("day {}: no page", day));
    if (day + 1 == warmUp) PrintState();
  }
  PrintState();
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 4) {
    fmt::print(stderr, "usage: many_days DIRECTORY DAYS WARM_UP\n");
    return 2;
  }
  try {
    Run(arguments[1], std::stoi(arguments[2]), std::stoi(arguments[3]));
  } catch (const std::exception& failure) {
    fmt::print(stderr, "many_days: {}\n", failure.what());
    return 1;
  }
  return 0;
}
