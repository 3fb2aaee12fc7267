// The daily import of one installation at a given moment, in a process of its own that can be
// killed. Its clock stands at that moment, and its waits cost nothing.
//
//   import_at DIRECTORY "YYYY-MM-DD HH:MM:SS"
//
// Prints "imported" or "not due". Failures stand in Debug/AppEventWeb.txt of the directory.
#include <fmt/core.h>

#include <cstdio>
#include <optional>
#include <string>

#include "import/import.h"
#include "service/connection_strings.h"
#include "support/reporting.h"
#include "support/test_clock.h"

namespace {

using namespace quillon;

class Night {
 public:
  Night(const std::string& directory, DateTime moment) : clock_(moment) {
    settings_.AppPath = directory;
    settings_.ConnReports = ConnectionString(settings_, "\\Reports.mdb");
    settings_.ConnHistory = ConnectionString(settings_, "\\History.mdb");
    settings_.DatumFormat = "YYYY-MM-DD";
    settings_.CharSet = "ISO-8859-1";
  }

  bool Pass() {
    bool imported = false;
    Import(context_, imported);
    return imported;
  }

 private:
  Settings settings_;
  TestClock clock_;
  EventLoop loop_{clock_};
  ReportPeriod period_;
  Reporting reporting_{settings_, clock_};
  ImportContext context_{reporting_.diagnostics(), settings_, clock_, loop_, period_};
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::optional<DateTime> moment =
      argumentCount == 3 ? ParseDateTime(arguments[2]) : std::nullopt;
  if (!moment) {
    fmt::print(stderr, "usage: import_at DIRECTORY \"YYYY-MM-DD HH:MM:SS\"\n");
    return 2;
  }
  fmt::print("{}\n", Night(arguments[1], *moment).Pass() ? "imported" : "not due");
  return 0;
}
