// Receivers and charsets.
#include "quillondb/check_settings.h"

#include <fmt/format.h>
#include <iconv.h>

#include <algorithm>
#include <cstdint>

namespace quillon {
namespace {

// Reading a receiver beyond these fails, and the mails of all of them with it.
constexpr std::int64_t kMostReceivers = 100;

void CheckReceivers(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings) {
  const std::int64_t rows = file.Count("SELECT COUNT(*) FROM Settings_RepReceiver");
  if (rows <= kMostReceivers) return;
  findings.push_back(
      fmt::format("{}Settings_RepReceiver has {} rows; beyond {} nobody gets mail, so delete some",
                  place, rows, kMostReceivers));
}

bool IsKnownCharset(const std::string& name) {
  if (name.empty()) return false;  // iconv would take the charset of the environment
  iconv_t conversion = iconv_open(name.c_str(), "UTF-8");
  // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv tells an unknown charset by the pointer -1.
  if (conversion == reinterpret_cast<iconv_t>(-1)) return false;
  iconv_close(conversion);
  return true;
}

void CheckCharset(const SqliteFile& file, const std::string& place, const std::string& table,
                  std::vector<std::string>& findings) {
  SqliteStatement rows =
      file.Prepare("SELECT CharSet FROM " + table + " WHERE CharSet IS NOT NULL");
  while (rows.Step()) {
    const std::string name = rows.Text(0);
    if (IsKnownCharset(name)) continue;
    findings.push_back(fmt::format(
        "{}CharSet in {} is {}, which this machine does not know; write a name out of 'iconv -l'",
        place, table, name.empty() ? "empty" : "'" + name + "'"));
  }
}

}  // namespace

void CheckSettings(const SqliteFile& file, const std::string& place, const TableShape& table,
                   std::vector<std::string>& findings) {
  if (table.name == "Settings_RepReceiver") CheckReceivers(file, place, findings);
  if (std::ranges::find(table.columns, "CharSet", &ColumnShape::name) != table.columns.end()) {
    CheckCharset(file, place, table.name, findings);
  }
}

}  // namespace quillon
