// Runs the production of a day inside this process, in an installation whose figures are of today.
// Its pauses are counted and not slept, so that what is left is its work.
//
//   production_run DIRECTORY           the pre-generation alone
//   production_run DIRECTORY --cycle   the import, which has to be due, the pre-generation and the
//                                      mails, then both of these once more; the mails really go to
//                                      the server of the installation's settings
//
// Prints of the pre-generation "work <ms>", "pauses <ms>", "stretch <ms>", the longest work without
// a pause, and "files <number>"; with --cycle, in their place, "memory <step> <private KB>
// <anonymous KB> <peak KB>" at the start and behind each step: what the process shares with no
// other, how much of that is no page of a file, and the most it shared with no other inside the
// step. Fails where anything was reported.
#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "import/import.h"
#include "import/report_marks.h"
#include "in_process.h"
#include "platform/free_memory.h"
#include "platform/mail_module.h"
#include "platform/program_path.h"
#include "production/auto_create.h"
#include "production/mail_reports.h"
#include "reports.h"
#include "service/stored_settings.h"
#include "web/static_resources.h"

namespace {

using namespace quillon;

constexpr std::int16_t kReportHour = 3;

// --- memory ---------------------------------------------------------------------------------

struct Memory {
  std::int64_t privateKilobytes = 0;    // that no other process shares, pages of files among them
  std::int64_t anonymousKilobytes = 0;  // heap, stacks and data
};

// The number behind a field's name, "Private_Dirty:     1234 kB".
std::int64_t FieldOf(std::string_view text, std::string_view name) {
  const std::size_t place = text.find(name);
  if (place == std::string_view::npos) throw std::runtime_error("smaps_rollup lacks a field");
  text.remove_prefix(place + name.size());
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  std::int64_t kilobytes = 0;
  std::from_chars(text.data(), text.data() + text.size(), kilobytes);
  return kilobytes;
}

// Takes nothing from the heap: it is called again and again beside the work that it watches, and a
// second thread that allocates would get a heap of its own.
Memory MemoryNow() {
  std::array<char, 4096> buffer;
  const int file = open("/proc/self/smaps_rollup", O_RDONLY | O_CLOEXEC);
  const ssize_t size = file < 0 ? -1 : read(file, buffer.data(), buffer.size());
  if (file >= 0) close(file);
  if (size < 0) throw std::runtime_error("/proc/self/smaps_rollup cannot be read");
  const std::string_view text(buffer.data(), static_cast<std::size_t>(size));
  return {FieldOf(text, "\nPrivate_Clean:") + FieldOf(text, "\nPrivate_Dirty:"),
          FieldOf(text, "\nAnonymous:")};
}

// Looks at the private memory about each millisecond, beside the work, as long as it lives.
class PeakWatch {
 public:
  std::int64_t Stop() {
    thread_.request_stop();
    thread_.join();
    return std::max(peak_, MemoryNow().privateKilobytes);
  }

 private:
  std::int64_t peak_ = 0;
  std::jthread thread_{[this](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      peak_ = std::max(peak_, MemoryNow().privateKilobytes);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }};
};

void PrintMemory(std::string_view step, std::int64_t peak) {
  const Memory memory = MemoryNow();
  fmt::print("memory {} {} {} {}\n", step, memory.privateKilobytes, memory.anonymousKilobytes,
             std::max(peak, memory.privateKilobytes));
}

template <typename Step>
void WatchMemory(std::string_view name, Step&& step) {
  PeakWatch watch;
  step();
  PrintMemory(name, watch.Stop());
}

// --- production -----------------------------------------------------------------------------

// Keeps the longest time from one sleep to the next: so long is nobody else served.
class StretchClock : public SleeplessClock {
 public:
  void Sleep(std::chrono::milliseconds duration) override {
    EndStretch();
    SleeplessClock::Sleep(duration);
  }

  void StartStretch() { start_ = std::chrono::steady_clock::now(); }

  void EndStretch() {
    longest_ = std::max<Milliseconds>(longest_, std::chrono::steady_clock::now() - start_);
    StartStretch();
  }

  Milliseconds longest() const { return longest_; }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Milliseconds longest_{0};
};

Settings SiteSettings(const std::string& directory) {
  Settings settings = SettingsOf(directory);
  settings.ConnMain = "Provider=SQLite;Data Source=" + directory + "/Quillon.mdb";
  ReadGeneralSettings(settings);
  return settings;
}

class Production {
 public:
  explicit Production(const std::string& directory) : reports_(clock_, SiteSettings(directory)) {
    tcpServer_.SetLocalHost("127.0.0.1");
    ReadLangWord(Events(), reports_.words);
    ReadHelpText(Events(), reports_.words);
    ExpectNoEvent(reports_.settings);
  }

  // The management product's part, before the day begins.
  void MarkReportDone() { UpdateHistory_Db(imports_, kReportHour); }

  void ImportDay() {
    bool imported = false;
    Import(imports_, imported);
    ExpectNoEvent(reports_.settings);
    if (!imported) throw std::runtime_error("the import was not due");
  }

  void BuildPages() {
    AutoCreate(context_);
    ExpectNoEvent(reports_.settings);
  }

  void SendMails() {
    MailReports(context_);
    ExpectNoEvent(reports_.settings);
  }

  std::int64_t CountFiles() const {
    const std::filesystem::directory_iterator files(reports_.settings.AppPath +
                                                    "/WebReports/Cache");
    return std::distance(begin(files), end(files));
  }

  StretchClock& clock() { return clock_; }

 private:
  const Diagnostics& Events() const { return reports_.reporting.diagnostics(); }

  StretchClock clock_;
  Reports reports_;
  Listener tcpServer_{reports_.loop};  // closed; its address stands in the links of mails
  ImportContext imports_{Events(), reports_.settings, clock_, reports_.loop, reports_.period};
  // A mail on its way waits for a real server.
  SystemClock mailClock_;
  EventLoop mailLoop_{mailClock_};
  RepReceivers receivers_;
  ProductionContext context_{
      Events(),         reports_.settings,
      clock_,           reports_.loop,
      tcpServer_,       reports_.render,
      reports_.queries, reports_.records,
      receivers_,       [this] { return NewSmtp(ProgramDirectory(), mailLoop_); }};
};

void TimePages(Production& production) {
  StretchClock& clock = production.clock();
  clock.StartStretch();
  const Milliseconds work = TimeOf([&] { production.BuildPages(); });
  clock.EndStretch();
  fmt::print("work {:.1f}\npauses {}\nstretch {:.1f}\nfiles {}\n", work.count(),
             clock.slept().count(), clock.longest().count(), production.CountFiles());
}

void WatchCycle(Production& production) {
  production.MarkReportDone();
  PrintMemory("start", 0);
  WatchMemory("import", [&] { production.ImportDay(); });
  WatchMemory("pages", [&] { production.BuildPages(); });
  WatchMemory("mails", [&] { production.SendMails(); });
  // What a second time adds is no first use of anything.
  WatchMemory("again", [&] {
    production.BuildPages();
    production.SendMails();
  });
  // What then goes was free, and only kept for later.
  ReturnFreeMemory();
  PrintMemory("trimmed", 0);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const bool isCycle = argumentCount == 3 && std::string_view(arguments[2]) == "--cycle";
  if (argumentCount != 2 && !isCycle) {
    fmt::print(stderr, "usage: production_run DIRECTORY [--cycle]\n");
    return 2;
  }
  try {
    Production production(arguments[1]);
    isCycle ? WatchCycle(production) : TimePages(production);
  } catch (const std::exception& failure) {
    fmt::print(stderr, "production_run: {}\n", failure.what());
    return 1;
  }
  return 0;
}
