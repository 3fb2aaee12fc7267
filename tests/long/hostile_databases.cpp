// Databases with values that nobody has written there: nulls, long texts, numbers beyond every
// range, broken characters, in each column of each table. All that the service does with them is
// done: start, hourly pass, stop; lists, charts, searches, import, pages, mails. It tells its
// failures, and with databases as they should be it answers as before.
//
//   hostile_databases COUNT SEED
//
// Prints what it did. The exit status is 1 where a rule does not hold.
#include <fmt/core.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "asking_client.h"
#include "hostile_arguments.h"
#include "hostile_start.h"
#include "import/import.h"
#include "import/report_marks.h"
#include "made_files.h"
#include "platform/files.h"
#include "production/auto_create_fixture.h"
#include "production/mail_reports.h"
#include "support/temporary_folder.h"
#include "targets.h"

namespace {

using namespace quillon;
using fuzz::Require;
namespace fs = std::filesystem;

constexpr int kEnough = 20;  // databases: in fewer, some kind may be missing by chance
constexpr std::string_view kDevice = "sw7";

const std::vector<std::string> kDatabases = {"Quillon.mdb", "Reports.mdb", "History.mdb"};

// A number that stands nowhere else, and becomes one that no statement can store.
constexpr double kBecomesNaN = 1234567.0009765625;
constexpr std::uint64_t kNaN = 0x7FF8'0000'0000'0001;

std::vector<std::string> HostileValues() {
  return {"NULL",
          "''",
          "printf('%.*c', 1048576, 'x')",
          "CAST(zeroblob(1048576) AS TEXT)",
          "zeroblob(1048576)",
          "x'00FF'",
          "9223372036854775807",
          "-9223372036854775808",
          "9223372036854775808.0",
          "'9223372036854775808'",
          "2147483648",
          "-2147483649",
          "-1",
          "0.5",
          "1e308",
          "9e999",
          "-9e999",
          fmt::format("{}", kBecomesNaN),
          "'NaN'",
          "CAST(x'C3FF41' AS TEXT)",
          "CAST(x'80C08000F8888080809F' AS TEXT)",
          "CAST(x'EDA080F4908080' AS TEXT)",
          "'a' || char(0) || 'b'",
          "char(13, 10, 9, 27)",
          "'/../' || char(92) || '..'",
          "'</table>''\"&'",
          "'2024-13-45 99:99:99'",
          "'0001-01-01 00:00:00'",
          "'9999-12-31 23:59:59'",
          "'2024-05-02 03:10:00'"};
}

std::string BigEndian(std::uint64_t number) {
  std::string bytes;
  for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

class HostileDatabases : private AutoCreateTest {
 public:
  explicit HostileDatabases(unsigned seed) : random_(seed) {
    AddNetwork();
    Reports(InsertStorage() +
            "INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen) VALUES"
            " (7, 4, '02 00 00 00 00 07', '10.1.0.7', '2024-05-01 10:00:00');");
    Settings(
        "UPDATE Settings_General SET SnmpcDir = '.';"
        "UPDATE Settings_WebServer SET TcpPort = '0';"
        "INSERT INTO Settings_RepReceiver VALUES ('Anna', 'anna@example.org', 1, '',"
        " 'Access InVolume', 'Trunk InErrors', 'None', 'None', 'None', TRUE, 7, 4, TRUE, TRUE,"
        " TRUE)");
    UpdateHistory_Db(site.imports, 3);  // a report that waits for its import
    for (const std::string& name : kDatabases) {
      fs::copy_file(PathOf(name), pristine_.path() + "/" + name);
      NoteColumns(name);
    }
    marks_ = Marks();
    answer_ = CleanAnswer();
  }

  void Run(int count) {
    for (int number = 0; number < count; ++number) {
      const std::size_t failuresBefore = failures_;
      for (const std::string& name : kDatabases) Spoil(name);
      StartService();
      UseAll();
      CheckEvents(site.Events());
      if (failures_ == failuresBefore) ++silent_;
      TidyUp();
      Require(CleanAnswer() == answer_, fmt::format("another answer behind database {}", number));
    }
  }

  std::size_t columns() const { return columns_.size(); }
  long starts() const { return starts_; }
  long imports() const { return imports_; }
  long silent() const { return silent_; }
  std::size_t failures() const { return failures_; }
  long notNumbers() const { return notNumbers_; }

 private:
  void TestBody() override {}

  struct Column {
    std::string database;
    std::string table;
    std::string name;
  };

  std::string PathOf(const std::string& name) const {
    return site.installation.path() + "/" + name;
  }
  unsigned Below(std::size_t count) { return static_cast<unsigned>(random_() % count); }

  // Those of tables that have rows.
  void NoteColumns(const std::string& database) {
    const Installation& files = site.installation;
    for (const std::string& table :
         files.Select(database, "SELECT name FROM sqlite_master WHERE type = 'table'")) {
      if (files.Select(database, "SELECT 1 FROM " + table + " LIMIT 1").empty()) continue;
      for (const std::string& name :
           files.Select(database, "SELECT name FROM pragma_table_info('" + table + "')")) {
        columns_.push_back({database, table, name});
      }
    }
  }

  // Half of the columns stay, so that what reads them does not end at the first one.
  void Spoil(const std::string& database) {
    std::string statements = "BEGIN;";
    for (const Column& column : columns_) {
      if (column.database != database || Below(2) == 0) continue;
      statements += fmt::format("UPDATE {} SET {} = {} WHERE rowid % {} = 0;", column.table,
                                column.name, values_[Below(values_.size())], 1 + Below(3));
    }
    site.installation.Sql(database, statements + "COMMIT;");
    PutNaN(database);
  }

  void PutNaN(const std::string& database) {
    std::string bytes = ReadFileBytes(PathOf(database));
    const std::string from = BigEndian(std::bit_cast<std::uint64_t>(kBecomesNaN));
    for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos;) {
      bytes.replace(at, from.size(), BigEndian(kNaN));
      ++notNumbers_;
    }
    site.installation.Write(database, bytes);
  }

  void StartService() {
    HostileStart start(PathOf("Quillon.mdb"));
    if (start.Run()) ++starts_;
    CheckEvents(start.Events());
  }

  std::vector<std::string> Marks() const {
    return site.installation.Select("History.mdb",
                                    "SELECT LastReport, LastImport FROM General_Info");
  }

  // Where it does not come to its end it tells why, unless its own marks keep it back.
  void ImportDay() {
    const bool isDue = Marks() == marks_;
    bool done = false;
    bool told = false;
    site.watch.event = [&told](int, std::string_view, std::string_view) { told = true; };
    Import(site.imports, done);
    site.watch.event = nullptr;
    Require(done || told || !isDue, "an import that ends without a word");
    if (done) ++imports_;
  }

  void UseAll() {
    AskForAll();
    ImportDay();
    AutoCreate(production);
    MailReports(production);
    AskForAll();
  }

  void AskForAll() {
    for (const char* kind : {"access", "trunk"}) {
      for (const char* metric :
           {"involume", "outvolume", "inbroadcast", "inmulticast", "inerrors", "outerrors"}) {
        Get(fmt::format("switch-{}-port-top10-{}.htm", kind, metric));
      }
      Get(fmt::format("switch-{}-port-summary.htm", kind));
    }
    for (const char* url :
         {"hist45-7-4-switch-access-port-top10-involume.htm", "hist45-8-5-", "DeviceId=7",
          "DeviceId=900", "disk-windows-top10-usedpercent-desc.htm", "disk-mem-summary.htm",
          "histdisk45-900-C_-disk-windows-top10-usedpercent-desc.htm"}) {
      Get(url);
    }
    Post("search-mac-ip", "MacIpName=*\r\n");
    Post("search-device-port-name", "DeviceName=*\r\nPortName=*\r\n");
    Post("search-device-port-alias", "DeviceName=*\r\nPortName=*\r\n");
    for (const char* order : {"usedpercent-desc", "freebytes-asc", "trend14d-desc"}) {
      Post("search-device-disk",
           fmt::format("DeviceName=*\r\nDiskName=*\r\nOrderBy={}\r\n", order));
    }
  }

  std::string Get(std::string_view url) { return client_.Ask({Site::Request(url)}); }
  std::string Post(std::string_view action, std::string_view body) {
    return client_.Ask({fmt::format("POST /{} HTTP/1.1\r\nHost: test\r\n\r\n{}", action, body)});
  }

  std::string CleanAnswer() {
    std::string all;
    for (const std::string& answer :
         {Get("switch-access-port-top10-involume.htm"),
          Get("hist45-7-4-switch-access-port-top10-involume.htm"),
          Post("search-device-port-name", "DeviceName=*\r\nPortName=*\r\n")}) {
      Require(answer.find(kDevice) != std::string::npos, "an answer without its device");
      all += answer;
    }
    Require(site.Events().empty(), "a failure with databases as they should be");
    made_.Remove();
    return all;
  }

  // Each is one line of its own; a mail that is not taken is one of the second kind.
  void CheckEvents(const std::vector<std::string>& events) {
    for (const std::string& event : events) {
      const bool isFailure = event.starts_with("1\t") || event.starts_with("2\t");
      const std::string_view source =
          std::string_view(event).substr(std::min<std::size_t>(2, event.size()));
      Require((isFailure || event.starts_with("3\t")) &&
                  (source.starts_with("mod") || source.starts_with("frm")),
              "an event: " + event);
      if (isFailure) ++failures_;
    }
  }

  void TidyUp() {
    for (const std::string& name : kDatabases) {
      for (const char* sideFile : {"-wal", "-shm"}) fs::remove(PathOf(name) + sideFile);
      fs::copy_file(pristine_.path() + "/" + name, PathOf(name),
                    fs::copy_options::overwrite_existing);
    }
    made_.Remove();
    mails.operations.clear();
    site.settings = settings_;
    site.period = {};
    site.clock.Set("2024-05-02 12:00:00");
  }

  std::mt19937 random_;
  const std::vector<std::string> values_ = HostileValues();
  const quillon::Settings settings_ = site.settings;
  TemporaryFolder pristine_;
  std::vector<Column> columns_;
  fuzz::AskingClient client_{site};
  fuzz::MadeFiles made_{site.installation};
  std::vector<std::string> marks_;  // of a day that waits for its import
  std::string answer_;
  long starts_ = 0;
  long imports_ = 0;
  long notNumbers_ = 0;
  long silent_ = 0;  // without any failure that was told
  std::size_t failures_ = 0;
};

void RequireAllKinds(const HostileDatabases& databases) {
  Require(databases.failures() > 0, "no failure was told");
  Require(databases.notNumbers() > 0, "no value became no number");
  Require(databases.starts() > 0, "no service started on the settings");
  Require(databases.imports() > 0, "no import came to its end");
}

void RunAll(int count, unsigned seed) {
  const auto start = std::chrono::steady_clock::now();
  HostileDatabases databases(seed);
  databases.Run(count);
  if (count >= kEnough) RequireAllKinds(databases);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  fmt::print(
      "{} hostile databases of {} columns in {:.0f} s: {} values became no number, {} services "
      "started on the settings, {} imports came to their ends, {} failures were told, with {} "
      "databases none, and behind each the answers are those of before\n",
      count, databases.columns(), took.count(), databases.notNumbers(), databases.starts(),
      databases.imports(), databases.failures(), databases.silent());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const auto count = NumberIn(argumentCount == 3 ? arguments[1] : "");
  const auto seed = NumberIn(argumentCount == 3 ? arguments[2] : "");
  if (!count || !seed) {
    fmt::print(stderr, "usage: hostile_databases COUNT SEED\n");
    return 2;
  }
  try {
    RunAll(*count, static_cast<unsigned>(*seed));
    return 0;
  } catch (const std::exception& failure) {
    fmt::print("hostile databases of seed {}: {}\n", *seed, failure.what());
    return 1;
  }
}
