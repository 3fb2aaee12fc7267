// The program quillondb, started as a user starts it, on a directory of the test's own.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/reserved_port.h"
#include "support/sql_rows.h"

namespace quillon {

namespace fs = std::filesystem;

using Row = SqlRow;

// While this lives, the process and those that it starts are in a zone in which it is mid-day
// now, so that no test runs across midnight.
class MiddayZone {
 public:
  MiddayZone() {
    if (const char* zone = std::getenv("TZ")) before_ = zone;
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    setenv("TZ", fmt::format("MID{}", utc.tm_hour - 12).c_str(), 1);
    tzset();
  }
  ~MiddayZone() {
    if (before_) {
      setenv("TZ", before_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  MiddayZone(const MiddayZone&) = delete;
  MiddayZone& operator=(const MiddayZone&) = delete;

 private:
  std::optional<std::string> before_;
};

struct Outcome {
  int status = -1;
  std::string out;
  std::string error;
};

// Runs the program in a directory that is removed at the end.
class Quillondb : public testing::Test {
 protected:
  Quillondb() {
    std::string name = (fs::temp_directory_path() / "quillondb-XXXXXX").string();
    root_ = mkdtemp(name.data());
    home_ = root_ / "home";
  }
  ~Quillondb() override { fs::remove_all(root_); }

  // "{}" in the arguments stands for the installation directory.
  Outcome Run(const std::string& arguments) const {
    const std::string out = (root_ / "out").string();
    const std::string error = (root_ / "error").string();
    const int status = std::system(
        fmt::format("'{}' {} >'{}' 2>'{}'", QUILLONDB_PATH,
                    fmt::format(fmt::runtime(arguments), "'" + home_.string() + "'"), out, error)
            .c_str());
    return {WEXITSTATUS(status), Content(out), Content(error)};
  }

  // The files that an installation gets with the program.
  void CopyWebFiles() const {
    fs::copy(fs::path(SHARE_PATH) / "WebReports", home_ / "WebReports",
             fs::copy_options::recursive);
  }

  // An installation of which nothing is missing.
  void CreateWhole() const {
    ASSERT_EQ(Run("create {}").status, 0);
    CopyWebFiles();
  }

  // Moves the site to a port that nobody else has: a check would find that another program of this
  // machine listens on the usual one.
  void UseFreePort() const {
    Sql("Quillon.mdb", fmt::format("UPDATE Settings_WebServer SET TcpPort = {}", port_.number()));
  }

  // An installation of which nothing is missing, and in which a check finds nothing.
  void CreateForCheck() const {
    CreateWhole();
    UseFreePort();
  }

  void CreateWithDemo() const {
    ASSERT_EQ(Run("create {}").status, 0);
    const Outcome demo = Run("demo {}");
    ASSERT_EQ(demo.status, 0) << demo.error;
  }

  static std::string Content(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  // All rows of one or more statements; a null reads as "NULL".
  std::vector<Row> Sql(const std::string& file, const std::string& sql) const {
    return SqlRows((home_ / file).string(), sql);
  }

  std::string Text(const std::string& file, const std::string& sql) const {
    const std::vector<Row> rows = Sql(file, sql);
    return rows.size() == 1 && rows[0].size() == 1 ? rows[0][0] : "no single value: " + sql;
  }

  long Number(const std::string& file, const std::string& sql) const {
    return std::strtol(Text(file, sql).c_str(), nullptr, 10);
  }

  MiddayZone zone_;
  ReservedPort port_;
  fs::path root_;
  fs::path home_;  // the installation; made by the program, not by this
};

// The wall clock so many hours ago, by a pattern of strftime.
inline std::string HoursAgo(int hours, const char* pattern) {
  const std::time_t moment = std::time(nullptr) - hours * 3600;
  std::tm local{};
  localtime_r(&moment, &local);
  char text[32];
  std::strftime(text, sizeof text, pattern, &local);
  return text;
}

}  // namespace quillon
