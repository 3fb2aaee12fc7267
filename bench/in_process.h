// What the programs share that time work of the service inside themselves.
#pragma once

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/clock.h"
#include "service/settings.h"

namespace quillon {

// The machine's clock, which only counts the sleeps: what a wait costs then is its work.
class SleeplessClock : public SystemClock {
 public:
  void Sleep(std::chrono::milliseconds duration) override { slept_ += duration; }

  std::chrono::milliseconds slept() const { return slept_; }

 private:
  std::chrono::milliseconds slept_{0};
};

using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

template <typename Work>
std::chrono::steady_clock::duration TimeOf(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::steady_clock::now() - start;
}

// What the start reads for an installation, as far as queries and imports need it.
inline Settings SettingsOf(const std::string& directory) {
  const std::string source = "Provider=SQLite;Data Source=" + directory;
  Settings settings;
  settings.AppPath = directory;
  settings.ConnReports = source + "/Reports.mdb";
  settings.ConnHistory = source + "/History.mdb";
  settings.DatumFormat = "YYYY-MM-DD";
  settings.CharSet = "ISO-8859-1";
  return settings;
}

// Throws where anything was reported: figures of work that failed mean nothing.
inline void ExpectNoEvent(const Settings& settings) {
  const std::string file = settings.AppPath + "/Debug/AppEventWeb.txt";
  if (std::filesystem::exists(file)) throw std::runtime_error("see " + file);
}

}  // namespace quillon
