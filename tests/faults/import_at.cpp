// The work of one night in one installation at a given moment, in a process of its own that can be
// killed. Its clock stands at that moment, and its waits cost nothing.
//
//   import_at DIRECTORY "YYYY-MM-DD HH:MM:SS"            the daily import
//   import_at DIRECTORY "YYYY-MM-DD HH:MM:SS" --whole    the hourly pass: pages and mails as well
//
// Prints "not due", or each job in a line when it has ended: "imported", and "pages" and "mails".
// With --steps behind --whole it waits for a line of its standard input, or the end of that, before
// each of the three jobs. Failures stand in Debug/AppEventWeb.txt of the directory.
#include <fmt/core.h>

#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/whole_service.h"

namespace {

using namespace quillon;

using Options = std::vector<std::string_view>;

int Usage() {
  fmt::print(stderr, "usage: import_at DIRECTORY \"YYYY-MM-DD HH:MM:SS\" [--whole [--steps]]\n");
  return 2;
}

// At once: whoever kills the process wants to know how far it has come.
void Tell(std::string_view job) {
  fmt::print("{}\n", job);
  std::fflush(stdout);
}

void AwaitLine() {
  std::string line;
  std::getline(std::cin, line);
}

void Run(const std::string& directory, DateTime moment, bool isWhole, bool inSteps) {
  WholeService service(directory, moment);
  bool isDue = false;
  service.onEnd = [&](std::string_view job) {
    isDue = true;
    Tell(job);
    if (inSteps) AwaitLine();
  };
  if (inSteps) AwaitLine();
  isWhole ? service.Pass() : service.ImportDay();
  if (!isDue) Tell("not due");
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3) return Usage();
  const std::optional<DateTime> moment = ParseDateTime(arguments[2]);
  const Options options(arguments + 3, arguments + argumentCount);
  const bool inSteps = options == Options{"--whole", "--steps"};
  const bool isWhole = inSteps || options == Options{"--whole"};
  if (!moment || (!isWhole && !options.empty())) return Usage();
  Run(arguments[1], *moment, isWhole, inSteps);
  return 0;
}
